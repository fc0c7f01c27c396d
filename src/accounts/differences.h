#pragma once

#include <vector>

#include "data/account.h"

namespace ledgertree::accounts {

/// What belongs together in an account: it comes from one person as a whole, or two halves that nobody typed
/// would make a third thing.
struct FieldGroup {
  std::vector<data::AccountMember> members;
  bool withRelation = false;  ///< the entity class and the entity object are of it
};

/// The groups of all that an edit writes: the parent with the code; the group, class, object and cost centre;
/// every other field alone.
[[nodiscard]] const std::vector<FieldGroup>& fieldGroups();

/// A group of an account that two people have changed, each against what was read.
struct Difference {
  const FieldGroup* group = nullptr;
  bool theirs = false;  ///< the other has changed it
  bool mine = false;    ///< so has the person at this screen

  /// Whether the person has to choose.
  [[nodiscard]] bool isOpen() const { return theirs && mine; }
};

/// The groups in which the three accounts aren't one. A text of one line counts without the blanks at its
/// ends and an amount, a reference or a choice that is missing as the field of the screen has it; what both
/// have changed to the same thing is changed by nobody.
[[nodiscard]] std::vector<Difference> differences(const data::Account& read, const data::Account& theirs,
                                                  const data::Account& mine);
/// Whether the other has changed anything that this person hasn't changed to the same.
[[nodiscard]] bool othersChanged(const std::vector<Difference>& found);

/// Gives an account the group of another.
void take(data::Account& account, const FieldGroup& group, const data::Account& from);

}  // namespace ledgertree::accounts
