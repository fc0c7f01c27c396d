#pragma once

#include <cstdint>
#include <string_view>

#include "accounts/save_validation.h"
#include "data/dten.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// Writes the relation of an account, which is saved already, to the group, entity class and entity object on
/// the screen, into tblAccountRelatedObjects. `way` is one of the three that write.
///
/// Two accounts are the same where they have the same group, class and object, or the same group and no
/// class; where the installation wants it, the same position besides. An account that turns out to be the
/// same as another one stays saved, without a group, and a notice tells whose place it is. An account without
/// a group is the same as no other.
///
/// With several entities an account, relations are the business of another screen, and a guarded edit only
/// clears those that this one made.
///
/// Throws data::DataError; what was written by then stays, and another save of the account mends it.
void writeRelation(mainform::MainScreen& screen, shell::Shell& shell, data::DtEn& gateway,
                   std::int32_t accountID, SaveWay way);

/// What such a write takes off the account because the class on the screen has no row in tblAccountClass any
/// more, in words for the person who is to be asked; empty for nothing.
[[nodiscard]] std::string_view lostWithClass(const mainform::MainScreen& screen, SaveWay way);

}  // namespace ledgertree::accounts
