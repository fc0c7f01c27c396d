#include "mainform/main_screen.h"

#include "data/account.h"
#include "data/numbers.h"

namespace ledgertree::mainform {

namespace {

using namespace std::chrono_literals;
using ui::Bounds;

constexpr ui::Size kDesignSize{13620, 4560};
/// No limit: the save reports a title that is too long, so that nothing typed is lost.
constexpr std::size_t kTitleLength = 0;

/// The buttons of the command bar, in a row from right to left.
constexpr Bounds inBar(int index) { return {12330 - index * 1290, 105, 1230, 405}; }

// The record has two columns, the right one first for the reader. Row 0 is at the top of the record's frame.
constexpr int rowTop(int row) { return 120 + row * 330; }
constexpr Bounds label(int row) { return {6195, rowTop(row) + 30, 1275, 240}; }
constexpr Bounds wideField(int row) { return {90, rowTop(row), 6045, 300}; }
/// The title follows the ID, so that Tab goes from one to the other.
constexpr Bounds kTitleField{90, rowTop(0), 4950, 300};
constexpr Bounds rightField(int row) { return {3930, rowTop(row), 2205, 300}; }
constexpr Bounds leftLabel(int row) { return {2700, rowTop(row) + 30, 1170, 240}; }
constexpr Bounds leftField(int row) { return {90, rowTop(row), 2550, 300}; }
constexpr Bounds radio(int index, int width) { return {index * width + 60, 75, width - 60, 240}; }

using data::Account;
constexpr TypedField kTypedFields[] = {
    {&MainScreen::txtCode, &Account::code},           {&MainScreen::txtTitle, &Account::title},
    {&MainScreen::txtNotes, &Account::notes},         {&MainScreen::txtMaxDebit, &Account::maxDebit},
    {&MainScreen::txtMaxCredit, &Account::maxCredit},
};

}  // namespace

MainScreen::MainScreen(shell::Shell& shell)
    : Form(shell.surroundings(), "FormMain", "سرفصل حسابها", kDesignSize),
      Frame1(*this, "Frame1", {0, 0, 13620, 600}),
      cmdNew(*this, "cmdNew", inBar(0), "جديد", &Frame1),
      cmdEdit(*this, "cmdEdit", inBar(1), "اصلاح", &Frame1),
      cmdDelete(*this, "cmdDelete", inBar(2), "حذف", &Frame1),
      cmdSave(*this, "cmdSave", inBar(3), "ثبت", &Frame1),
      cmdCancel(*this, "cmdCancel", inBar(4), "انصراف", &Frame1),
      cmdExit(*this, "cmdExit", inBar(5), "خروج", &Frame1),
      cmdTools(*this, "cmdTools", inBar(6), "ساير عمليات", &Frame1),
      cmdOperations(*this, "cmdOperations", inBar(7), "مشاهده", &Frame1),
      cmdi12(*this, "cmdi12", inBar(8), "ابزار", &Frame1),
      cmdEditTree(*this, "cmdEditTree", inBar(9), "", &Frame1),
      progressBar(*this, "ProgressBar", {60, 615, 13500, 90}),
      frameMain(*this, "frameMain", {60, 720, 7560, 3300}),
      lblTitle(*this, "lblTitle", label(0), "عنوان:", &frameMain),
      sltAccount(*this, shell, "sltAccount", kTitleField, &frameMain),
      txtTitle(*this, "txtTitle", kTitleField, &frameMain),
      txtID(*this, "txtID", {5100, rowTop(0), 1035, 300}, &frameMain),
      lblParent(*this, "lblParent", label(1), "حساب مادر:", &frameMain),
      sltParent(*this, shell, "sltParent", wideField(1), &frameMain),
      lblCode(*this, "lblCode", label(2), "کد:", &frameMain),
      txtMotherCode(*this, "txtMotherCode", {90, rowTop(2), 2700, 300}, &frameMain),
      txtCode(*this, "txtCode", {2850, rowTop(2), 2820, 300}, &frameMain),
      cmdAutoCode(*this, "cmdAutoCode", {5730, rowTop(2), 405, 300}, "...", &frameMain),
      lblGroup(*this, "lblGroup", label(3), "گروه:", &frameMain),
      sltGroup(*this, shell, "sltGroup", rightField(3), &frameMain),
      lblBranch(*this, "lblBranch", leftLabel(3), "شعبه:", &frameMain),
      sltBranch(*this, shell, "sltBranch", leftField(3), &frameMain),
      lblPosition(*this, "lblPosition", label(4), "مركز هزينه/درآمد:", &frameMain),
      sltPosition(*this, shell, "sltPosition", wideField(4), &frameMain),
      lblRelClass(*this, "lblRelClass", label(5), "موجوديت:", &frameMain),
      sltEntityType(*this, shell, "sltEntityType", rightField(5), &frameMain),
      lblRelObject(*this, "lblRelObject", leftLabel(5), "موجوديت:", &frameMain),
      sltEntity(*this, shell, "sltEntity", leftField(5), &frameMain),
      datCreate(*this, "datCreate", {90, rowTop(1), 1350, 300}, &frameMain),
      lblMaxDebit(*this, "lblMaxDebit", label(6), "سقف بدهکاري:", &frameMain),
      txtMaxDebit(*this, "txtMaxDebit", rightField(6), &frameMain),
      lblMaxCredit(*this, "lblMaxCredit", leftLabel(6), "سقف بستانکاري:", &frameMain),
      txtMaxCredit(*this, "txtMaxCredit", leftField(6), &frameMain),
      lblNotes(*this, "lblNotes", label(7), "توضيحات:", &frameMain),
      txtNotes(*this, "txtNotes", {90, rowTop(7), 6045, 450}, &frameMain),
      FrameRemanedType(*this, "FrameRemanedType", {4095, 2910, 3375, 360}, "", &frameMain),
      optDebit(*this, "optDebit", radio(2, 1100), "بدهكار", &FrameRemanedType),
      OptCredit(*this, "OptCredit", radio(1, 1100), "بستانكار", &FrameRemanedType),
      OptDebitAndCredit(*this, "OptDebitAndCredit", radio(0, 1100), "هردو", &FrameRemanedType),
      FrameAccountType(*this, "FrameAccountType", {2070, 2910, 1965, 360}, "", &frameMain),
      OptReg(*this, "OptReg", radio(1, 950), "موقت", &FrameAccountType),
      OptNotReg(*this, "OptNotReg", radio(0, 950), "دائم", &FrameAccountType),
      FrameAccountStatus(*this, "FrameAccountStatus", {90, 2910, 1920, 360}, "", &frameMain),
      OptOpen(*this, "OptOpen", radio(1, 930), "باز", &FrameAccountStatus),
      OptClose(*this, "OptClose", radio(0, 930), "بسته", &FrameAccountStatus),
      Frm7(*this, "Frm7", {60, 4050, 7560, 480}),
      cmdRelClasses(*this, "cmdRelClasses", {3030, 60, 1800, 360}, "نوع موجوديت", &Frm7),
      cmdPeriodBranch(*this, "cmdPeriodBranch", {4890, 60, 2610, 360}, "تنظيم سالهاي مالي و شعب", &Frm7),
      FrameViewType(*this, "FrameViewType", {7680, 720, 5880, 390}),
      optPeriodic(*this, "optPeriodic", {3300, 75, 2490, 240}, "نمايش دوره هاي مالي", &FrameViewType),
      optPeriodAll(*this, "optPeriodAll", {630, 75, 2490, 240}, "نمايش کامل درخت", &FrameViewType),
      cmdRefreshAccountTree(*this, "cmdRefreshAccountTree", {11640, 1140, 1920, 360}, "بازسازي درخت حساب"),
      cmdCopyPeriod(*this, "cmdCopyPeriod", {9660, 1140, 1920, 360}, "کپي درخت به دوره مالي"),
      cmdDeletePeriod(*this, "cmdDeletePeriod", {7680, 1140, 1920, 360}, "پنهان از دوره مالي"),
      treeAccount(*this, "treeAccount", {7680, 1530, 5880, 2700}),
      lblMessage(*this, "lblMessage", {9600, 4260, 3960, 270}),
      lblOthers(*this, "lblOthers", {7680, 4260, 1890, 270}),
      divider(*this, "divider", {7620, 720, 60, 3810}),
      Timer1(*this, "Timer1", 200ms),
      mnuFonc(*this, "mnuFonc", "عمليات"),
      mnuFonc1(*this, "mnuFonc1", "جديد..."),
      mnuFonc2(*this, "mnuFonc2", "اصلاح..."),
      mnuFonc4(*this, "mnuFonc4", "حذف..."),
      mnuTakeBack(*this, "mnuTakeBack", "برگرداندن آخرين عمليات...", false),
      ppp(*this, "ppp", ""),
      mnuFonc5(*this, "mnuFonc5", "مراكز هزينه..."),
      ppp1(*this, "ppp1", "", false),
      mnuFonc6(*this, "mnuFonc6", "چاپ", false),
      mnuFonc7(*this, "mnuFonc7", "چاپ تمام حسابها..."),
      mnuFonc8(*this, "mnuFonc8", "چاپ حسابهاي منتخب..."),
      iii(*this, "iii", ""),
      mnuFonc9(*this, "mnuFonc9", "خروج"),
      i12(*this, "i12", "ابزار"),
      mnuFunc57(*this, "mnuFunc57", "بازيابي از ساختارهاي حسابداري نمونه", false),
      mnuFunc56(*this, "mnuFunc56", "انتقال به ساختارهاي حسابداري نمونه...", false),
      mnuRefreshAccFromDB(*this, "mnuRefreshAccFromDB", "بازيابي ساختار حسابها از ساير دورههاي مالي...",
                          false),
      i9999(*this, "i9999", "", false),
      mnuExcelCode(*this, "mnuExcelCode", "انتقال ساختار به اکسل بر اساس كدينگ", false),
      mnuExcelLevel(*this, "mnuExcelLevel", "انتقال ساختار به اکسل به صورت چند سطحي", false),
      i342(*this, "i342", "", false),
      mnuShublonError(*this, "mnuShublonError", "بررسي شابلون حسابداري...", false),
      mnuSameCoding(*this, "mnuSameCoding", "همسانسازي كدينگ و ماهيت و نوع حسابها..."),
      mnuAccountBatch(*this, "mnuAccountBatch", "حذف دستهاي حسابها..."),
      mnuHistory(*this, "mnuHistory", "سابقه حسابها...", false),
      mnuOperations(*this, "mnuOperations", "مشاهده", false),
      mnuName(*this, "mnuName", "مشاهده عنوان حساب...", false, true),
      mnuCode(*this, "mnuCode", "مشاهده شماره حساب...", false),
      mnuNameAndCode(*this, "mnuNameAndCode", "مشاهده عنوان و شماره حساب...", false),
      nlkjkfj(*this, "nlkjkfj", "", false),
      mnuView1(*this, "mnuView1", "مشاهده جزئيات...", true, true),
      mnuView2(*this, "mnuView2", "عدم مشاهده جزئيات..."),
      i2344(*this, "i2344", ""),
      mnuViewCode(*this, "mnuViewCode", "مشاهده كد حساب..."),
      mnuViewCodeComplete(*this, "mnuViewCodeComplete", "مشاهده كد كامل حساب...", true, true),
      mnuHelp(*this, "mnuHelp", "راهنما", false),
      mnuGuide(*this, "mnuGuide", "راهنماي سرفصل حسابها"),
      mnuAccount(*this, "mnuAccount", "حساب"),
      mnuNewBelow(*this, "mnuNewBelow", "حساب جديد زير اين حساب..."),
      mnuEditAccount(*this, "mnuEditAccount", "اصلاح..."),
      mnuDeleteAccount(*this, "mnuDeleteAccount", "حذف..."),
      mnuPeriodsOfAccount(*this, "mnuPeriodsOfAccount", "تنظيم سالهاي مالي و شعب..."),
      mnuHistoryOfAccount(*this, "mnuHistoryOfAccount", "سابقه اين حساب...", false),
      mnuAccountLine(*this, "mnuAccountLine", ""),
      mnuCopyCode(*this, "mnuCopyCode", "کپي کد"),
      mnuShowInTree(*this, "mnuShowInTree", "نمايش در درخت", false) {
  setResizable(true);
  buildMenu();
  dressControls();
  setShortcuts();
  nameControls();
}

void MainScreen::buildMenu() {
  mnuFonc6.add(mnuFonc7).add(mnuFonc8);
  mnuFonc.add(mnuFonc1)
      .add(mnuFonc2)
      .add(mnuFonc4)
      .add(mnuTakeBack)
      .add(ppp)
      .add(mnuFonc5)
      .add(ppp1)
      .add(mnuFonc6)
      .add(iii)
      .add(mnuFonc9);
  i12.add(mnuFunc57).add(mnuFunc56).add(mnuRefreshAccFromDB).add(i9999).add(mnuExcelCode).add(mnuExcelLevel);
  i12.add(i342).add(mnuShublonError).add(mnuSameCoding).add(mnuAccountBatch).add(mnuHistory);
  mnuOperations.add(mnuName).add(mnuCode).add(mnuNameAndCode).add(nlkjkfj);
  mnuOperations.add(mnuView1).add(mnuView2).add(i2344).add(mnuViewCode).add(mnuViewCodeComplete);
  mnuAccount.add(mnuNewBelow).add(mnuEditAccount).add(mnuDeleteAccount).add(mnuPeriodsOfAccount);
  mnuAccount.add(mnuHistoryOfAccount).add(mnuAccountLine).add(mnuCopyCode);
  sltAccount.setEntry(mnuShowInTree);
  addMenu(mnuFonc);
  addMenu(i12);
  addMenu(mnuOperations);
  addMenu(mnuHelp.add(mnuGuide));
}

void MainScreen::dressControls() {
  for (ui::Control* hidden : std::initializer_list<ui::Control*>{&cmdOperations, &cmdi12, &cmdEditTree,
                                                                 &datCreate, &divider, &lblOthers})
    hidden->setVisible(false);
  // Laid out with the window, but no command here shows progress.
  progressBar.setVisible(false);
  // The bar keeps its width when the window grows: a border would end in the middle of the screen.
  Frame1.setBordered(false);
  txtID.setLocked(true);
  txtNotes.setMultiline(true);
  lblMessage.setStrong(true);
  txtTitle.setMaximumLength(kTitleLength);
  for (ui::TextField* code : {&txtMotherCode, &txtCode}) {
    code->setMaximumLength(data::kCodeLength);
    code->setLatinDigits(true);
  }
  for (ui::TextField* ceiling : {&txtMaxDebit, &txtMaxCredit}) ceiling->setLatinDigits(true);
  for (ui::TextField* number : {&txtID, &txtMotherCode, &txtCode, &txtMaxDebit, &txtMaxCredit})
    number->setLeftToRight(true);
}

void MainScreen::setShortcuts() {
  const auto shortcut = [](ui::PushButton& button, ui::KeyChord chord) { button.setShortcut(chord); };
  shortcut(cmdNew, ui::KeyChord::ctrlAnd('N'));
  shortcut(cmdEdit, ui::KeyChord::ctrlAnd('E'));
  shortcut(cmdDelete, ui::KeyChord::ctrlAnd('D'));
  shortcut(cmdSave, ui::KeyChord::ctrlAnd('S'));
  shortcut(cmdCancel, ui::KeyChord::of(ui::Key::Escape));
  shortcut(cmdExit, ui::KeyChord::ctrlAnd('Q'));
  shortcut(cmdTools, ui::KeyChord::of(ui::Key::F10));
  shortcut(cmdRefreshAccountTree, ui::KeyChord::of(ui::Key::F5));
  // The menu entries that click a button, and the guide, whose key works on every screen.
  mnuFonc1.setKeys(cmdNew.shortcut());
  for (ui::MenuEntry* entry : {&mnuFonc2, &mnuEditAccount}) entry->setKeys(cmdEdit.shortcut());
  for (ui::MenuEntry* entry : {&mnuFonc4, &mnuDeleteAccount}) entry->setKeys(cmdDelete.shortcut());
  mnuFonc9.setKeys(cmdExit.shortcut());
  mnuTakeBack.setKeys(ui::KeyChord::ctrlAnd('Z'));
  mnuHistory.setKeys(ui::KeyChord::ctrlAnd('H'));
  mnuGuide.setKeys(ui::KeyChord::of(ui::Key::F1));
}

void MainScreen::nameControls() {
  const auto name = [](ui::Control& control, const char* text) { control.setAccessibleName(text); };
  name(sltAccount, "عنوان");
  sltAccount.setHint("جستجوي حساب (Ctrl+F)");
  name(txtTitle, "عنوان");
  name(txtID, "شناسه حساب");
  name(sltParent, "حساب مادر");
  name(txtMotherCode, "کد حساب مادر");
  name(txtCode, "کد");
  name(cmdAutoCode, "پيشنهاد کد");
  cmdAutoCode.setHint("پيشنهاد کد");
  name(sltGroup, "گروه");
  name(sltBranch, "شعبه");
  name(sltPosition, "مركز هزينه/درآمد");
  name(sltEntityType, "نوع موجوديت");
  name(sltEntity, "موجوديت");
  name(txtMaxDebit, "سقف بدهکاري");
  name(txtMaxCredit, "سقف بستانکاري");
  name(txtNotes, "توضيحات");
  name(FrameRemanedType, "ماهيت حساب");
  name(FrameAccountType, "نوع حساب");
  name(FrameAccountStatus, "وضعيت حساب");
  name(FrameViewType, "نوع نمايش");
  name(treeAccount, "درخت حسابها");
  name(progressBar, "پيشرفت کار");
  name(lblMessage, "وضعيت فرم");
  name(lblOthers, "تغييرات تازه");
  name(divider, "مرز درخت و مشخصات حساب");
  divider.setHint("تقسيم صفحه ميان درخت و مشخصات حساب");
}

std::int32_t MainScreen::accountID() const { return data::toNumber(txtID.text()).asInt32(); }

void MainScreen::chooseNature(std::int64_t value) {
  if (value < 0 || value > 2) return;
  ui::RadioButton* const buttons[] = {&optDebit, &OptCredit, &OptDebitAndCredit};
  NatureValue = static_cast<std::int16_t>(value);
  buttons[value]->setValue(true);
}

void MainScreen::choosePermanent(std::int64_t value) {
  if (value < 0 || value > 1) return;
  PermanentValue = static_cast<std::int16_t>(value);
  (value == 0 ? OptReg : OptNotReg).setValue(true);
}

void MainScreen::chooseClosed(std::int64_t value) {
  if (value < 0 || value > 1) return;
  ClosedValue = static_cast<std::int16_t>(value);
  (value == 0 ? OptOpen : OptClose).setValue(true);
}

std::span<const TypedField> typedFields() { return kTypedFields; }

}  // namespace ledgertree::mainform
