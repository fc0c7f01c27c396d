#include "mainform/form/commands.h"

#include <algorithm>

#include "data/permissions.h"

namespace ledgertree::mainform {

namespace {

/// The space above and below the tree when the details are hidden.
constexpr ui::Twips kAroundTree = 1575 + 250;
constexpr ui::Twips kTreeTop = 1530;

/// Checks one of two mutually exclusive entries.
void mark(ui::MenuEntry& chosen, ui::MenuEntry& other) {
  chosen.setChecked(true);
  other.setChecked(false);
}

}  // namespace

Commands::Commands(MainScreen& screen, shell::Shell& shell, AccountRecord& record, AccountTree& tree)
    : screen_(screen), shell_(shell), record_(record), tree_(tree) {
  wireBar();
  wireMenu();
  wireKeys();
}

void Commands::showOffers() {
  const bool hidden = shell_.isOffered(Offer::HiddenCommands);
  screen_.mnuOperations.setVisible(hidden);
  screen_.cmdOperations.setVisible(hidden);
  for (ui::MenuEntry* entry : {&screen_.mnuExcelCode, &screen_.i342})
    entry->setVisible(shell_.isOffered(Offer::Export));
  screen_.mnuHelp.setVisible(shell_.isOffered(Offer::Guide));
}

void Commands::wireBar() {
  screen_.cmdNew.onClick = [this] { startNew(); };
  screen_.cmdEdit.onClick = [this] { startEdit(); };
  screen_.cmdCancel.onClick = [this] { cancel(); };
  screen_.cmdExit.onClick = [this] { exit(); };
  screen_.cmdTools.onClick = [this] { popUp(screen_.cmdTools, screen_.i12); };
  screen_.cmdi12.onClick = [this] { popUp(screen_.cmdi12, screen_.i12); };
  screen_.cmdOperations.onClick = [this] { popUp(screen_.cmdOperations, screen_.mnuOperations); };
  screen_.cmdRefreshAccountTree.onClick = [this] { tree_.refreshTree(); };
  screen_.optPeriodic.onClick = [this] { tree_.refreshTree(); };
  screen_.optPeriodAll.onClick = [this] { tree_.refreshTree(); };
}

void Commands::wireMenu() {
  // Menu items click the buttons, so disabled ones do nothing.
  screen_.mnuFonc1.onClick = [this] { screen_.cmdNew.click(); };
  screen_.mnuFonc2.onClick = [this] { screen_.cmdEdit.click(); };
  screen_.mnuFonc4.onClick = [this] { screen_.cmdDelete.click(); };
  screen_.mnuFonc9.onClick = [this] { screen_.close(); };
  screen_.mnuView1.onClick = [this] { mark(screen_.mnuView1, screen_.mnuView2); };
  screen_.mnuView2.onClick = [this] { hideDetails(); };
  screen_.mnuGuide.onClick = [this] { shell_.desktop().openGuide(screen_); };
  screen_.mnuViewCode.onClick = [this] { showCodes(false); };
  screen_.mnuViewCodeComplete.onClick = [this] { showCodes(true); };
}

void Commands::wireKeys() {
  screen_.addShortcut(ui::KeyChord::ctrlAnd('F'), [this] { screen_.sltAccount.focus(); });
  screen_.addShortcut(ui::KeyChord::of(ui::Key::F6), [this] { changeSides(); });
}

void Commands::startNew() {
  if (shell_.permits(data::Permission::NewAccount)) record_.startNewAccount();
}

void Commands::startEdit() {
  if (!shell_.permits(data::Permission::EditAccount)) return;
  record_.startEditAccount(screen_.accountID());
  screen_.txtTitle.focus();
}

void Commands::changeSides() {
  ui::Control* const here = screen_.focused();
  if (here != &screen_.treeAccount) {
    beforeTree_ = here;
    return screen_.treeAccount.focus();
  }
  const bool back = beforeTree_ != nullptr && beforeTree_->withinReach();
  (back ? *beforeTree_ : screen_.sltAccount).focus();
}

void Commands::cancel() {
  const bool typing = screen_.isTyping();
  if (!mayGiveUp({.title = "انصراف از ثبت حساب ", .text = " آيا مطمئن هستيد؟"},
                 {.title = "انصراف از ثبت تغييرات حساب ", .text = " آيا مطمئن هستيد؟ "}))
    return;
  if (typing) {
    record_.showAccount(screen_.accountID());
  } else {
    screen_.close();
  }
}

void Commands::exit() {
  if (mayLeave()) screen_.close();
}

bool Commands::mayLeave() {
  return mayGiveUp({.title = "خروج از سرفصل حسابها ", .text = " آيا از ثبت  حساب جديد منصرف شدهايد ؟ "},
                   {.title = "خروج از سرفصل حسابها", .text = " آيا از ثبت  تغييرات منصرف شدهايد ؟ "});
}

bool Commands::mayGiveUp(const Question& ofNew, const Question& ofEdit) {
  const auto confirmed = [this](const Question& question) {
    return shell_.confirms(question.title, question.text);
  };
  if (screen_.formMode == FormMode::ModeNew) return confirmed(ofNew);
  if (screen_.formMode == FormMode::ModeEdit) return confirmed(ofEdit);
  return true;
}

void Commands::popUp(const ui::PushButton& button, ui::MenuEntry& menu) {
  ui::Twips left = button.bounds().left;
  ui::Twips top = button.bounds().top;
  for (const ui::Frame* frame = button.frame(); frame != nullptr; frame = frame->frame()) {
    left += frame->bounds().left;
    top += frame->bounds().top;
  }
  shell_.desktop().popUpMenu(screen_, menu, left, top);
}

void Commands::hideDetails() {
  ui::Bounds bounds = screen_.treeAccount.bounds();
  // In a narrow window the commands above the tree take more than one row.
  const ui::Twips more = bounds.top - kTreeTop;
  bounds.height = std::max(screen_.size().height - kAroundTree - more, 0);
  screen_.treeAccount.setBounds(bounds);
  mark(screen_.mnuView2, screen_.mnuView1);
}

void Commands::showCodes(bool complete) {
  if (complete) {
    mark(screen_.mnuViewCodeComplete, screen_.mnuViewCode);
  } else {
    mark(screen_.mnuViewCode, screen_.mnuViewCodeComplete);
  }
  screen_.settings.ShowCompleteCode = complete;
  tree_.refreshTree();
}

}  // namespace ledgertree::mainform
