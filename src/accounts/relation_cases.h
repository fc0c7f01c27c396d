#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "accounts/save_validation.h"
#include "data/account.h"
#include "data/dten.h"
#include "data/system_parameters.h"

namespace ledgertree::accounts {

/// What an account loses if it turns out to be the same as another one.
enum class Reset { None, Group, GroupAndEntity };

struct RelationOutcome {
  Reset reset = Reset::None;  ///< done in the database; the caller updates the screen
  std::string message;        ///< whose place it is, for a notice; usually empty
};

/// Writes the relation of an account, which is already saved, to its group, entity class and entity object
/// into tblAccountRelatedObjects. `way` is one of the three that write.
///
/// Two accounts are the same if they have the same group, class and object, or the same group and no class;
/// if the installation is set so, the position must be the same too. An account that turns out to be the same
/// as another one stays saved, but loses its group. An account without a group is never the same as another.
///
/// If accounts may have several entities, another screen manages the relations, and a guarded edit only
/// clears those made here.
///
/// `stored` is what the database holds of the account as far as this screen knows; each write is compared
/// with it, and updates it.
///
/// Throws data::DataError, with data::kAccountChanged if another user has changed the account in between.
/// What was written by then stays; saving the account again repairs it.
[[nodiscard]] RelationOutcome writeRelation(data::DtEn& gateway, const data::Account& account, SaveWay way,
                                            const data::SystemParameters& settings, data::Account& stored);

/// What such a write removes from an account whose class no longer has a row in tblAccountClass, worded for
/// the question to the user; empty for nothing.
[[nodiscard]] std::string_view lostWithClass(const data::Account& account, SaveWay way,
                                             const data::SystemParameters& settings);

}  // namespace ledgertree::accounts
