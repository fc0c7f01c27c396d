#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/packet.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// A whole code as the record shows it: the part of the parent, and the account's own.
struct SplitCode {
  std::string mother;
  std::string own;
  bool operator==(const SplitCode&) const = default;
};

/// Splits a code behind the code of its parent, or behind the number that the parent's code begins with, so
/// that leading zeros which the child doesn't repeat don't keep them together. A code that begins with
/// neither is the account's own as a whole. The two parts joined are always the code again.
[[nodiscard]] SplitCode splitCode(std::string_view code, std::string_view parentCode);

/// What asks for the row of an entity class.
[[nodiscard]] std::string classStatement(std::int32_t classID);

/// The account on the screen, and the four modes in which the screen works: vwAccount and
/// tblAccountRelatedObjects through the handle rssqlvwAccount, which is closed on every path. It writes
/// nothing.
///
/// Where the database fails in the middle, the error goes to the caller; the screen is then in ModeView with
/// blank fields, as for an account that is gone.
class AccountRecord {
 public:
  /// Reads what a class offers, and gives what makes the entity selector offer it.
  using ClassRule = std::function<std::function<void()>(std::int32_t classID)>;
  AccountRecord(MainScreen& screen, shell::Shell& shell, ClassRule classRule);

  /// Told after another account was put on the record to be looked at, or none (-1), whoever did it.
  std::function<void(std::int32_t accountID)> onShown;

  /// Whether the record belongs to another database than the one that is open now, which is told: what would
  /// be changed there is another account.
  [[nodiscard]] bool refusedElsewhere();

  /// Shows an account, read-only; nothing is on the screen for an ID below 1, and blank fields for one that
  /// has no row.
  void showAccount(std::int32_t id);
  /// Nothing is on the screen.
  void goIdle();
  /// Starts a new account: debit, temporary, open, of today, without a parent.
  void startNewAccount();
  /// Starts the change of an account, read anew from the database.
  void startEditAccount(std::int32_t id);

  /// Empties what the record shows but for the ID, the parent's code, the ceilings and the radio groups: the
  /// ID is what a cancelled new account returns to.
  void clearAccountFields();
  /// Fills the fields from the database; an ID without a row leaves them as they are, and gives false. It
  /// doesn't change the mode.
  [[nodiscard]] bool loadAccount(std::int32_t id);
  /// What showing an account will ask, for who asks ahead (see data::Ahead) and knows what is stored of it.
  [[nodiscard]] std::vector<data::Command> questionsOf(const data::Account& account);
  /// The account as it is stored now; nothing where it has no row. It shows nothing of it.
  [[nodiscard]] std::optional<data::Account> readAgain(std::int32_t id);
  /// Puts an account on the record, in the mode that it has, as if it had been typed over what is `stored`.
  void goOnWith(const data::Account& typed, const data::Account& stored);
  /// Enables and shows what the mode allows.
  void applyFormMode();

 private:
  void addLookUps(const data::Account& account, std::vector<data::Command>& questions);
  void fill(const data::Account& account, const std::function<void()>& showClass);
  void blankForNewAccount();
  void beginRecord(std::int32_t accountID);
  void tellShown();
  /// Loads the account of a mode that was just entered.
  void loadInto(std::int32_t id);

  MainScreen& screen_;
  shell::Shell& shell_;
  ClassRule classRule_;
};

}  // namespace ledgertree::mainform
