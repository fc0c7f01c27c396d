#pragma once

#include <optional>
#include <string>

#include "data/account.h"
#include "mainform/main_screen.h"

namespace ledgertree::accounts {

/// What is wrong with a field, as a notice says it. The focus goes to the control that holds the member.
struct FieldFault {
  data::AccountMember member;
  std::string message;
};

/// What the fields of the record say, in the form in which it goes to the database: code and title without
/// the blanks at their ends, the notes as typed.
struct TypedAccount {
  data::Account account;
  std::string ownCode;  ///< what `account.code` has behind the parent's part
  /// The first field that can't be stored: a text with more characters than its parameter takes, or with one
  /// that no database can keep, or a ceiling past the range of money, which is nothing in `account`.
  std::optional<FieldFault> fault;
};

/// Reads the screen for one of the two procedures; a new account has no ID yet. It fails for nothing that is
/// typed.
[[nodiscard]] TypedAccount readTypedAccount(const mainform::MainScreen& screen, data::AccountCall call);

/// Leads the person to the control of the member; to none where no control holds it.
void focusField(mainform::MainScreen& screen, const data::AccountMember& member);

}  // namespace ledgertree::accounts
