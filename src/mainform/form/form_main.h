#pragma once

#include <cstdint>
#include <string>

#include "accounts/account_deletion.h"
#include "accounts/account_saving.h"
#include "accounts/field_rules.h"
#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/form/account_menu.h"
#include "mainform/form/commands.h"
#include "mainform/form/history_commands.h"
#include "mainform/form/others_changes.h"
#include "mainform/form/secondary_screens.h"
#include "mainform/main_screen.h"

namespace ledgertree::mainform {

/// The one working screen, put together: it decides what happens at its start, when its size changes, and at
/// its end. Its owner makes it, calls load, shows it, and destroys it in onClosed.
class FormMain : public MainScreen {
 public:
  explicit FormMain(shell::Shell& shell);

  /// Reads the settings, binds the selectors, blanks the record and builds the integrated tree. Throws
  /// data::DataError where the database fails, and std::range_error for a setting past its range; the form is
  /// not to be shown then.
  void load();
  /// Brings the form up as it stands: modeless, or modal where the desktop takes no modeless form; the form
  /// may be gone when a modal showing returns. Throws ui::DesktopError for any other refusal.
  void ClearShow();
  /// Shows one account, read-only; a blank record for an ID below 1. Throws data::DataError.
  void View(std::int32_t accountID) { record_.showAccount(accountID); }
  /// Whether what is being typed may go: the person is asked where something is, as by cmdExit.
  [[nodiscard]] bool mayLeave() { return commands_.mayLeave(); }
  /// The connection text of the database whose chart was loaded.
  [[nodiscard]] const std::string& loadedFrom() const { return loadedFrom_; }
  /// The own part that is proposed for the code of a new account below a parent, -1 for the top; see
  /// coding::CodeProposal.
  [[nodiscard]] std::string getNewAccountCode(std::int32_t parentID) { return rules_.proposedCode(parentID); }

 protected:
  /// Nothing of it fails: what can't be ended is left alone.
  void unload() override;
  void resized() override;

 private:
  void nameViews();
  void connectSelectors();
  // form_layout.cpp
  void wireLayout();
  void setTreeHead();
  void showDivider();
  void giveToTree(ui::Twips width);
  void showEntityFields();

  shell::Shell& shell_;
  accounts::FieldRules rules_;
  AccountRecord record_;
  AccountTree tree_;
  Commands commands_;
  AccountMenu accountMenu_;
  accounts::AccountSaving saving_;
  accounts::AccountDeletion deletion_;
  SecondaryScreens screens_;
  OthersChanges others_;
  HistoryCommands history_;
  std::string loadedFrom_;
  /// The size at the last change of size that was followed.
  ui::Size baseline_;
};

}  // namespace ledgertree::mainform
