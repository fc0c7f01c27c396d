#pragma once

#include <optional>
#include <string>

#include "data/account.h"
#include "mainform/main_screen.h"

namespace ledgertree::accounts {

/// What is wrong with a field, worded for a notice. The focus goes to the control of the member.
struct FieldFault {
  data::AccountMember member;
  std::string message;
};

/// The contents of the record's fields in the form in which the database gets them: code and title without
/// the blanks at their ends, the notes as typed.
struct TypedAccount {
  data::Account account;
  std::string ownCode;  ///< the part of `account.code` after the parent's
  /// The first field that can't be stored: a text with more characters than its parameter takes, or with one
  /// that no database can store, or a ceiling beyond the range of money, which is left empty in `account`.
  std::optional<FieldFault> fault;
};

/// Reads the screen for one of the two procedures; a new account has no ID yet. No typed content makes it
/// fail.
[[nodiscard]] TypedAccount readTypedAccount(const mainform::MainScreen& screen, data::AccountCall call);

/// Moves the focus to the control of the member, if there is one.
void focusField(mainform::MainScreen& screen, const data::AccountMember& member);

}  // namespace ledgertree::accounts
