#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "data/account.h"
#include "data/system_parameters.h"
#include "shell/lookup/account_picker.h"
#include "shell/lookup/date_field.h"
#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/divider.h"
#include "ui/form.h"
#include "ui/menu.h"
#include "ui/text_field.h"
#include "ui/timer.h"
#include "ui/tree.h"

namespace ledgertree::mainform {

/// What the screen is doing with its account.
enum class FormMode : std::int16_t {
  ModeView = 0,  ///< an account is shown, read-only
  ModeEdit = 1,  ///< the account shown is being edited
  ModeNew = 2,   ///< a new account is being typed
  ModeIdle = 3,  ///< nothing is shown
};

/// The place of a chosen parent.
struct PlaceOfParent {
  std::int32_t id = -1;        ///< of the parent
  std::int32_t parentID = -1;  ///< of its own parent; below 1 at the top
};

/// The main screen: its controls at their design bounds, its menu, and the few variables that the commands
/// share. It has no behaviour of its own; the tree, the record and the commands handle its controls' events.
class MainScreen : public ui::Form {
 public:
  explicit MainScreen(shell::Shell& shell);

  // Read once, when the screen loads.
  data::SystemParameters settings;

  // The state of the record.
  /// The account whose fields are on the record, -1 while they are blank; txtID keeps the last one.
  std::int32_t AccountOnRecord = -1;
  /// Counts the records shown, blank ones included: after a question to the user it tells whether the record
  /// is still the one that the question was about.
  std::uint32_t RecordTurn = 0;
  /// The account as it was read, or as this screen has written it since; nothing for a blank record. Each
  /// write is compared with it, so that no other user's change is lost.
  std::optional<data::Account> AsRead;
  /// The place of the parent in sltParent when it was read for typing.
  std::optional<PlaceOfParent> ParentAsRead;
  /// The connection text of the database that the record was read from, or is typed for.
  std::string RecordSource;
  FormMode formMode = FormMode::ModeIdle;
  /// Whether an account is being created or edited.
  [[nodiscard]] bool isTyping() const {
    return formMode == FormMode::ModeNew || formMode == FormMode::ModeEdit;
  }
  std::int16_t NatureValue = 0;     ///< 0 debit, 1 credit, 2 both
  std::int16_t PermanentValue = 0;  ///< 0 temporary, 1 permanent
  std::int16_t ClosedValue = 0;     ///< 0 open, 1 closed
  std::int16_t BranchValue = 0;
  std::int16_t PositionValue = 0;
  std::int16_t GroupValue = -1;
  std::int16_t EntityTypeValue = -1;
  /// tblAccountClass has no row for the class in sltEntityType: there are no entities to pick.
  bool ClassIsGone = false;
  // Each radio group sets one of these numbers: the functions store the number and turn its button on. A
  // value without a button changes nothing.
  void chooseNature(std::int64_t value);
  void choosePermanent(std::int64_t value);
  void chooseClosed(std::int64_t value);

  /// The ID in txtID, of the account shown last; -1 for none.
  [[nodiscard]] std::int32_t accountID() const;

  /// The parent of the last new account when it was saved; 0 before the first.
  std::int32_t LastNewParentID = 0;

  // The command bar, from right to left.
  ui::Frame Frame1;
  ui::PushButton cmdNew;
  ui::PushButton cmdEdit;
  ui::PushButton cmdDelete;
  ui::PushButton cmdSave;
  ui::PushButton cmdCancel;
  ui::PushButton cmdExit;
  ui::PushButton cmdTools;
  ui::PushButton cmdOperations;
  ui::PushButton cmdi12;
  ui::PushButton cmdEditTree;
  ui::ProgressBar progressBar;

  // The record.
  ui::Frame frameMain;
  ui::Label lblTitle;
  shell::AccountPicker sltAccount;
  ui::TextField txtTitle;
  ui::TextField txtID;
  ui::Label lblParent;
  shell::AccountPicker sltParent;
  ui::Label lblCode;
  ui::TextField txtMotherCode;
  ui::TextField txtCode;
  ui::PushButton cmdAutoCode;
  ui::Label lblGroup;
  shell::Selector sltGroup;
  ui::Label lblBranch;
  shell::Selector sltBranch;
  ui::Label lblPosition;
  shell::Selector sltPosition;
  ui::Label lblRelClass;
  shell::Selector sltEntityType;
  ui::Label lblRelObject;
  shell::Selector sltEntity;
  shell::DateField datCreate;
  ui::Label lblMaxDebit;
  ui::TextField txtMaxDebit;
  ui::Label lblMaxCredit;
  ui::TextField txtMaxCredit;
  ui::Label lblNotes;
  ui::TextField txtNotes;
  ui::Frame FrameRemanedType;
  ui::RadioButton optDebit;
  ui::RadioButton OptCredit;
  ui::RadioButton OptDebitAndCredit;
  ui::Frame FrameAccountType;
  ui::RadioButton OptReg;
  ui::RadioButton OptNotReg;
  ui::Frame FrameAccountStatus;
  ui::RadioButton OptOpen;
  ui::RadioButton OptClose;
  ui::Frame Frm7;
  ui::PushButton cmdRelClasses;
  ui::PushButton cmdPeriodBranch;

  // The tree.
  ui::Frame FrameViewType;
  ui::RadioButton optPeriodic;
  ui::RadioButton optPeriodAll;
  ui::PushButton cmdRefreshAccountTree;
  ui::PushButton cmdCopyPeriod;
  ui::PushButton cmdDeletePeriod;
  ui::Tree treeAccount;
  ui::Label lblMessage;
  ui::Label lblOthers;
  ui::Divider divider;

  ui::Timer Timer1;

  // The menu.
  ui::MenuEntry mnuFonc;
  ui::MenuEntry mnuFonc1, mnuFonc2, mnuFonc4, mnuTakeBack, ppp, mnuFonc5, ppp1, mnuFonc6, mnuFonc7, mnuFonc8,
      iii, mnuFonc9;
  ui::MenuEntry i12;
  ui::MenuEntry mnuFunc57, mnuFunc56, mnuRefreshAccFromDB, i9999, mnuExcelCode, mnuExcelLevel, i342,
      mnuShublonError, mnuSameCoding, mnuAccountBatch, mnuHistory;
  ui::MenuEntry mnuOperations;
  ui::MenuEntry mnuName, mnuCode, mnuNameAndCode, nlkjkfj, mnuView1, mnuView2, i2344, mnuViewCode,
      mnuViewCodeComplete;
  ui::MenuEntry mnuHelp, mnuGuide;
  /// The context menu of an account in the tree, and the entry in that of the title's picker.
  ui::MenuEntry mnuAccount;
  ui::MenuEntry mnuNewBelow, mnuEditAccount, mnuDeleteAccount, mnuPeriodsOfAccount, mnuHistoryOfAccount,
      mnuAccountLine, mnuCopyCode;
  ui::MenuEntry mnuShowInTree;

 private:
  void buildMenu();
  void dressControls();
  void setShortcuts();
  void nameControls();
};

/// A typed field, and the member of the account that it shows.
struct TypedField {
  ui::TextField MainScreen::*control;
  data::AccountMember holds;
  /// The others are amounts.
  [[nodiscard]] constexpr bool isText() const {
    return std::holds_alternative<std::string data::Account::*>(holds);
  }
};

/// The typed fields of the record, in the order in which a save checks them. Used by everything that locks,
/// clears, fills, reads and checks the record's texts. txtCode is only the account's own part of the code;
/// txtMotherCode, before it, isn't included.
[[nodiscard]] std::span<const TypedField> typedFields();

}  // namespace ledgertree::mainform
