#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "accounts/save_validation.h"
#include "data/account.h"
#include "data/dten.h"
#include "data/system_parameters.h"

namespace ledgertree::accounts {

/// What an account loses that turns out to be the same as another one.
enum class Reset { None, Group, GroupAndEntity };

struct RelationOutcome {
  Reset reset = Reset::None;  ///< done in the database; the screen is the caller's
  std::string message;        ///< whose place it is, for a notice; mostly empty
};

/// Writes the relation of an account, which is saved already, to its group, entity class and entity object
/// into tblAccountRelatedObjects. `way` is one of the three that write.
///
/// Two accounts are the same where they have the same group, class and object, or the same group and no
/// class; where the installation wants it, the same position besides. An account that turns out to be the
/// same as another one stays saved, without a group. An account without a group is the same as no other.
///
/// With several entities an account, relations are the business of another screen, and a guarded edit only
/// clears those that this one made.
///
/// `stored` is what the database holds of the account as far as this screen knows; each write is compared
/// with it, and it follows each write.
///
/// Throws data::DataError, with data::kAccountChanged where somebody came in between; what was written by
/// then stays, and another save of the account mends it.
[[nodiscard]] RelationOutcome writeRelation(data::DtEn& gateway, const data::Account& account, SaveWay way,
                                            const data::SystemParameters& settings, data::Account& stored);

/// What such a write takes off an account whose class has no row in tblAccountClass any more, in words for
/// the person who is to be asked; empty for nothing.
[[nodiscard]] std::string_view lostWithClass(const data::Account& account, SaveWay way,
                                             const data::SystemParameters& settings);

}  // namespace ledgertree::accounts
