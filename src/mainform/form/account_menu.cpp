#include "mainform/form/account_menu.h"

#include <utility>

namespace ledgertree::mainform {

namespace {

constexpr std::string_view kNotInTree = "اين حساب در درخت نيست؛ شايد کاربر ديگري آن را حذف کرده باشد.";
constexpr std::string_view kInNoPeriod =
    "اين حساب در درخت هيچ دوره مالي ديده نميشود. «نمايش کامل درخت» را انتخاب کنيد و دوباره تلاش نماييد.";

}  // namespace

AccountMenu::AccountMenu(MainScreen& screen, shell::Shell& shell, AccountTree& tree)
    : screen_(screen), shell_(shell), tree_(tree) {
  screen_.mnuNewBelow.onClick = [this] { startBelow(); };
  screen_.mnuEditAccount.onClick = [this] { screen_.cmdEdit.click(); };
  screen_.mnuDeleteAccount.onClick = [this] { screen_.cmdDelete.click(); };
  screen_.mnuPeriodsOfAccount.onClick = [this] { screen_.cmdPeriodBranch.click(); };
  screen_.mnuCopyCode.onClick = [this] {
    if (screen_.AsRead) shell_.desktop().copyText(screen_.AsRead->code);
  };
  screen_.mnuShowInTree.onClick = [this] { showInTree(); };
  screen_.sltAccount.onMenu = [this] { screen_.mnuShowInTree.setEnabled(!screen_.sltAccount.IsEmpty()); };
}

void AccountMenu::showOffer() {
  const bool offered = shell_.isOffered(Offer::ContextMenu);
  screen_.mnuShowInTree.setVisible(offered);
  screen_.treeAccount.onMenu = nullptr;
  if (!offered) return;
  screen_.treeAccount.onMenu = [this](ui::Twips left, ui::Twips top) { popUp(left, top); };
}

void AccountMenu::popUp(ui::Twips left, ui::Twips top) {
  tree_.settle();
  // The root, a period and a deleted account have nothing to work on.
  if (screen_.AccountOnRecord < 1) return;
  for (const auto& [entry, button] : {std::pair{&screen_.mnuNewBelow, &screen_.cmdNew},
                                      {&screen_.mnuEditAccount, &screen_.cmdEdit},
                                      {&screen_.mnuDeleteAccount, &screen_.cmdDelete},
                                      {&screen_.mnuPeriodsOfAccount, &screen_.cmdPeriodBranch}})
    entry->setEnabled(button->withinReach());
  screen_.mnuCopyCode.setEnabled(screen_.AsRead && !screen_.AsRead->code.empty());
  const ui::Bounds& tree = screen_.treeAccount.bounds();
  shell_.desktop().popUpMenu(screen_, screen_.mnuAccount, tree.left + left, tree.top + top);
}

void AccountMenu::startBelow() {
  const std::int32_t parent = screen_.AccountOnRecord;
  screen_.cmdNew.click();
  if (screen_.formMode != FormMode::ModeNew) return;
  screen_.sltParent.setAccountID(parent);
  screen_.txtTitle.focus();
  screen_.sltParent.onAccountChange();
}

void AccountMenu::showInTree() {
  if (!tree_.showAccount(screen_.sltAccount.AccountID()))
    return shell_.showErrorNotice(shell::kTitleProblem,
                                  screen_.optPeriodic.value() ? kInNoPeriod : kNotInTree);
  screen_.treeAccount.focus();
  // In idle mode, finding an account leaves the commands disabled; a click enables them.
  if (screen_.formMode == FormMode::ModeIdle) screen_.treeAccount.click(screen_.treeAccount.selected());
}

}  // namespace ledgertree::mainform
