#pragma once

#include <vector>

#include "data/account.h"

namespace ledgertree::accounts {

/// Fields that belong together: all of them come from one user, since half of one and half of the other would
/// make a combination that nobody typed.
struct FieldGroup {
  std::vector<data::AccountMember> members;
  bool withRelation = false;  ///< includes the entity class and the entity object
};

/// The groups of everything that an edit writes: the parent with the code; the group, class, object and cost
/// centre; each of the other fields alone.
[[nodiscard]] const std::vector<FieldGroup>& fieldGroups();

/// A group of an account that two users have changed, each relative to what was read.
struct Difference {
  const FieldGroup* group = nullptr;
  bool theirs = false;  ///< the other user has changed it
  bool mine = false;    ///< so has the user of this screen

  /// Whether the user has to choose.
  [[nodiscard]] bool isOpen() const { return theirs && mine; }
};

/// The groups that differ in the three accounts. A single-line text is compared without blanks at its ends,
/// and a missing amount, reference or choice as the screen's field has it. What both have changed to the same
/// value counts as unchanged.
[[nodiscard]] std::vector<Difference> differences(const data::Account& read, const data::Account& theirs,
                                                  const data::Account& mine);
/// Whether the other user has changed anything that this one hasn't changed to the same value.
[[nodiscard]] bool othersChanged(const std::vector<Difference>& found);

/// Copies a group from one account to another.
void take(data::Account& account, const FieldGroup& group, const data::Account& from);

}  // namespace ledgertree::accounts
