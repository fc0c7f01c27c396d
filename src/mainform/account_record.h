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

/// A whole code as the record shows it: the parent's part, and the account's own.
struct SplitCode {
  std::string mother;
  std::string own;
  bool operator==(const SplitCode&) const = default;
};

/// Splits a code after the code of its parent, or after the number that the parent's code begins with, so
/// that leading zeros which the child doesn't repeat don't prevent the split. A code that begins with neither
/// is entirely the account's own. Joining the two parts always gives the code.
[[nodiscard]] SplitCode splitCode(std::string_view code, std::string_view parentCode);

/// The query for the row of an entity class.
[[nodiscard]] std::string classStatement(std::int32_t classID);

/// The query for the place of a parent.
[[nodiscard]] std::string placeStatement(std::int32_t parentID);
/// Stores on the screen the place of the parent in sltParent; nothing if there is none.
void readPlaceOfParent(MainScreen& screen, data::DtEn& gateway);

/// The account on the screen, and the screen's four modes. Reads vwAccount and tblAccountRelatedObjects
/// through the handle rssqlvwAccount, which is closed on every path. It writes nothing.
///
/// If the database fails halfway, the caller gets the exception; the screen is then in ModeView with blank
/// fields, as for an account that doesn't exist.
class AccountRecord {
 public:
  /// Reads what a class offers, and returns what makes the entity selector offer it.
  using ClassRule = std::function<std::function<void()>(std::int32_t classID)>;
  AccountRecord(MainScreen& screen, shell::Shell& shell, ClassRule classRule);

  /// Called with the account, or -1 for none, after another one was shown, whoever did so.
  std::function<void(std::int32_t accountID)> onShown;

  /// Whether the record is from another database than the one that is open now, which is reported: changes
  /// would go to a different account.
  [[nodiscard]] bool refusedElsewhere();

  /// Shows an account, read-only; clears the screen for an ID below 1, and shows blank fields for one without
  /// a row.
  void showAccount(std::int32_t id);
  /// Clears the screen.
  void goIdle();
  /// Starts a new account: debit, temporary, open, created today, without a parent.
  void startNewAccount();
  /// Starts to edit an account, read again from the database.
  void startEditAccount(std::int32_t id);

  /// Clears the record but for the ID, the parent's code, the ceilings and the radio groups: cancelling a new
  /// account returns to that ID.
  void clearAccountFields();
  /// Fills the fields from the database; for an ID without a row leaves them as they are and returns false.
  /// Doesn't change the mode.
  [[nodiscard]] bool loadAccount(std::int32_t id);
  /// The queries that showing an account will make, to be sent ahead (see data::Ahead) by a caller that knows
  /// what is stored of it.
  [[nodiscard]] std::vector<data::Command> questionsOf(const data::Account& account);
  /// The account as it is stored now; nothing if it has no row. Doesn't show it.
  [[nodiscard]] std::optional<data::Account> readAgain(std::int32_t id);
  /// Shows an account, in the current mode, as if it had been typed over what is `stored`.
  void goOnWith(const data::Account& typed, const data::Account& stored);
  /// Enables and shows what the mode allows.
  void applyFormMode();

 private:
  void addLookUps(const data::Account& account, std::vector<data::Command>& questions);
  void fill(const data::Account& account, const std::function<void()>& showClass);
  void blankForNewAccount();
  void beginRecord(std::int32_t accountID);
  void tellShown();
  /// Loads the account of a mode just entered.
  void loadInto(std::int32_t id);

  MainScreen& screen_;
  shell::Shell& shell_;
  ClassRule classRule_;
};

}  // namespace ledgertree::mainform
