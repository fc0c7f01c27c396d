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

/// The main screen, put together: decides what happens when it starts, is resized and ends. Its owner creates
/// it, calls load, shows it, and destroys it in onClosed.
class FormMain : public MainScreen {
 public:
  explicit FormMain(shell::Shell& shell);

  /// Reads the settings, binds the selectors, blanks the record and builds the integrated tree. Throws
  /// data::DataError if the database fails, and std::range_error for a setting out of range; then the form
  /// must not be shown.
  void load();
  /// Shows the form as it is: modeless, or modal if the desktop accepts no modeless form; after a modal
  /// showing the form may no longer exist. Throws ui::DesktopError for any other refusal.
  void ClearShow();
  /// Shows one account, read-only; an empty record for an ID below 1. Throws data::DataError.
  void View(std::int32_t accountID) { record_.showAccount(accountID); }
  /// Whether unsaved input may be dropped: asks the user if there is any, like cmdExit.
  [[nodiscard]] bool mayLeave() { return commands_.mayLeave(); }
  /// The connection text of the database whose chart was loaded.
  [[nodiscard]] const std::string& loadedFrom() const { return loadedFrom_; }
  /// The own part proposed for the code of a new account below a parent, -1 for the top; see
  /// coding::CodeProposal.
  [[nodiscard]] std::string getNewAccountCode(std::int32_t parentID) { return rules_.proposedCode(parentID); }

 protected:
  /// Never throws: what can't be ended is left alone.
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
  /// The size for which the layout was last computed.
  ui::Size baseline_;
};

}  // namespace ledgertree::mainform
