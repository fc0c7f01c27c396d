#include "mainform/form/secondary_screens.h"

#include <utility>
#include <vector>

#include "batch/account_batch.h"
#include "batch/hand_over.h"
#include "coding/recoding/auto_codding.h"
#include "data/ahead.h"
#include "entities/rel_classes.h"

namespace ledgertree::mainform {

using data::Permission;

SecondaryScreens::SecondaryScreens(MainScreen& screen, shell::Shell& shell, AccountTree& tree)
    : screen_(screen), shell_(shell), tree_(tree), periods_(shell) {
  screen_.cmdPeriodBranch.onClick = [this] {
    showPeriods(Permission::PeriodsOfAccount,
                [this] { return periods_.ShowPeriodBranch(accountToWorkOn()); });
  };
  screen_.cmdCopyPeriod.onClick = [this] {
    showPeriods(Permission::CopyPeriod, [this] { return periods_.showCopyPeriod(); });
  };
  screen_.cmdDeletePeriod.onClick = [this] {
    showPeriods(Permission::HidePeriod, [this] { return periods_.showDeletePeriod(); });
  };
  screen_.cmdRelClasses.onClick = [this] {
    if (!screen_.settings.MultiEntityMode) return;
    entities::showRelClasses(shell_, accountToWorkOn());
  };
  screen_.mnuSameCoding.onClick = [this] { recode(); };
  screen_.mnuAccountBatch.onClick = [this] { deleteInBatch(); };
  screen_.mnuExcelCode.onClick = [this] { batch::exportChart(shell_, screen_.settings.BasePath); };
  screen_.mnuFonc5.onClick = [this] { batch::editCostCenters(shell_, screen_.settings.BasePath); };
}

/// The ID remains after its account is deleted; a blank record means that no account is chosen.
std::int32_t SecondaryScreens::accountToWorkOn() const {
  const bool blank = screen_.formMode == FormMode::ModeView && screen_.AccountOnRecord < 1;
  return blank ? -1 : screen_.accountID();
}

/// The tree is read again whatever was done there, even nothing, so that it shows what is stored.
void SecondaryScreens::recode() {
  if (!shell_.permits(Permission::RecodeAccounts) || refusedWhileTyping(screen_, shell_)) return;
  coding::showAutoCodding(shell_);
  const auto gateway = shell_.dtEn();
  std::vector<data::Command> questions;
  screen_.sltAccount.addQuestion(screen_.accountID(), questions);
  for (data::Command& question : tree_.questionsOfRefresh(screen_.AccountOnRecord))
    questions.push_back(std::move(question));
  const data::Ahead ahead(gateway->cnMainData, std::move(questions));
  screen_.sltAccount.setAccountID(screen_.accountID());
  // The ID remains after its account is deleted: then nothing may be shown.
  if (screen_.sltAccount.unlisted()) screen_.sltAccount.ClearAccount();
  tree_.refreshTree();
}

void SecondaryScreens::deleteInBatch() {
  if (!shell_.permits(Permission::DeleteInBatch) || refusedWhileTyping(screen_, shell_)) return;
  if (batch::showNDelete(shell_)) tree_.refreshTree();
}

/// The record holds codes and a parent from when the editing began: saving it would undo a recoding, or write
/// below a deleted account.
bool refusedWhileTyping(const MainScreen& screen, shell::Shell& shell) {
  if (!screen.isTyping()) return false;
  shell.showErrorNotice(shell::kTitleProblem,
                        "حسابي در حال ثبت يا اصلاح است. نخست آن را ثبت کنيد يا از آن انصراف دهيد.");
  return true;
}

void SecondaryScreens::showPeriods(Permission permission, const std::function<bool()>& show) {
  if (!shell_.permits(permission)) return;
  if (show() && screen_.optPeriodic.value()) tree_.refreshTree();
}

}  // namespace ledgertree::mainform
