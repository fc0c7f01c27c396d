#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "data/catalogue.h"
#include "data/value.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// What the fields of the record say, in the form in which it goes to the database.
struct TypedAccount {
  std::string title;  ///< without the blanks at its ends
  std::string code;   ///< the parent's part and the own one, each without the blanks at its ends
  std::string notes;  ///< as typed
  data::Money maxDebit;
  data::Money maxCredit;
};

/// The ID in txtID.
[[nodiscard]] std::int32_t accountOnScreen(const mainform::MainScreen& screen);
/// The whole code that the two fields make: each without the blanks at its ends.
[[nodiscard]] std::string wholeCode(const mainform::MainScreen& screen);

/// Reads the fields for a procedure, which may change nothing before that. A text with more characters than
/// its parameter takes, or with one that no database can keep, and a ceiling past the range of money are
/// refused: a notice names the field and its limit, and the focus goes there. Nothing then.
[[nodiscard]] std::optional<TypedAccount> readTypedAccount(mainform::MainScreen& screen, shell::Shell& shell,
                                                           const data::Procedure& procedure);

}  // namespace ledgertree::accounts
