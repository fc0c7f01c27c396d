#include "batch/account_batch.h"

#include "shell/lookup/all_chosen.h"
#include "shell/preview.h"
#include "shell/work_progress.h"

namespace ledgertree::batch {

namespace {

constexpr ui::Size kDesignSize{7350, 2250};
constexpr std::string_view kDeletionError = "خطا در حذف";
constexpr std::string_view kChanged =
    "پس از پيش نمايش، کاربر ديگري حسابهاي زير اين حساب يا وابستگيهاي آنها را تغيير داده است. هيچ حسابي حذف "
    "نشد؛ "
    "پيش نمايش را دوباره ببينيد.";

}  // namespace

frmAccountBatch::frmAccountBatch(shell::Shell& shell)
    : ui::Form(shell.surroundings(), "frmAccountBatch", "حذف دستهاي حسابها", kDesignSize),
      lblParent(*this, "lblParent", {5700, 255, 1425, 270}, "حساب مادر:"),
      sltParent(*this, shell, "sltParent", {225, 225, 5400, 330}),
      cmdDelete(*this, "cmdDelete", {4125, 1620, 1500, 405}, "حذف"),
      cmdCancel(*this, "cmdCancel", {2475, 1620, 1500, 405}, "انصراف"),
      cmdPreview(*this, "cmdPreview", {225, 1620, 2100, 405}, "پيش نمايش..."),
      progressBar(*this, "ProgressBar", {225, 930, 6900, 330}),
      shell_(shell) {
  loadControls();
}

void frmAccountBatch::loadControls() {
  shell_.chooseKeyboardLayout();
  sltParent.setPickerConnection(shell_.context.gConnectionString);
  sltParent.setPickerPosition(shell_.context.gPositionID);
  sltParent.setClosingFlag(false);
  sltParent.setAccessibleName("حساب مادر");
  progressBar.setAccessibleName("پيشرفت کار");
  progressBar.setVisible(false);
  cmdPreview.setVisible(shell_.isOffered(Offer::Preview));
  shell_.switchLayoutAt(sltParent);
  cmdDelete.onClick = [this] { run([this] { deleteBelow(nullptr); }); };
  cmdPreview.onClick = [this] { run([this] { preview(); }); };
  cmdCancel.onClick = [this] { close(); };
  setFirstFocus(sltParent);
  // No default button: Enter must not start a deletion.
  setCancelButton(cmdCancel);
}

void frmAccountBatch::run(const std::function<void()>& command) {
  if (working_) return;
  const shell::UnderWay underWay(working_);
  if (accountIsPicked()) command();
}

bool frmAccountBatch::accountIsPicked() {
  if (!shell::allChosen(shell_, {&sltParent})) return false;
  if (!sltParent.IsEmpty()) return true;
  shell_.showErrorNotice(shell::kTitleProblem, "حساب مشخص نشده است!");
  sltParent.focus();
  return false;
}

void frmAccountBatch::preview() {
  const auto gateway = shell_.dtEn();
  Branch seen;
  {
    const shell::Hourglass hourglass(desktop());
    seen = branchBelow(*gateway, sltParent.AccountID());
  }
  const std::string mother = "«" + sltParent.AccountTitle() + "» با کد " + sltParent.AccountCode();
  if (shell::showPreview(shell_, previewOf(gateway, sltParent.AccountID(), mother, seen))) deleteBelow(&seen);
}

void frmAccountBatch::deleteBelow(const Branch* seen) {
  if (!shell_.confirms("حذف دسته اي", "آيا مطمئن هستيد؟")) return;
  ChangedFlag = true;
  const std::string below =
      "Select ChildID From tblAccountParent Where ID = " + std::to_string(sltParent.AccountID());
  const shell::Hourglass hourglass(desktop());
  const auto gateway = shell_.dtEn();
  if (seen != nullptr && branchBelow(*gateway, sltParent.AccountID()) != *seen)
    return shell_.showErrorNotice(kDeletionError, kChanged);
  if (gateway->rssqlViewTrans.State() != 0) gateway->rssqlViewTrans.Close();
  const data::OpenRows documents(
      gateway->rssqlViewTrans, "Select * From tblAccountDocumentDetail Where AccountID In ( " + below + ")");
  if (documents->RecordCount() != 0) {
    shell_.showErrorNotice(kDeletionError,
                           "از آنجايي كه يك يا چند حساب از حسابهاي زير مجموعه داراي سند حسابداري متناظر "
                           "ميباشند، امكان حذف دستهاي حسابهاي فوق وجود ندارد.");
    return;
  }
  deleteAll(*gateway, below);
}

void frmAccountBatch::deleteAll(data::DtEn& gateway, const std::string& below) {
  const auto operation = shell_.operation(gateway, data::OperationKind::DeleteInBatch);
  const data::OpenRows accounts(gateway.rssqlAccounts,
                                "Select * From tblAccount Where ID in (" + below + ") order by Nolevel desc");
  shell::WorkProgress progress(*this, progressBar, accounts->RecordCount());
  for (std::int32_t done = 0; !accounts->Eof(); accounts->MoveNext(), progress.advance(++done)) {
    const std::int32_t account = accounts->Fields("ID").toInt32();
    if (gateway.spAccountDeleteAccount(account) != 0) {
      shell_.news.add(ChartEvent::Kind::Deleted, {account});
      continue;
    }
    shell_.showErrorNotice(shell::kTitleError, "حساب " + accounts->Fields("title").toText() + " به كد " +
                                                   accounts->Fields("Code").toText() +
                                                   " به دليل وابستگي حذف نشد. ");
  }
}

bool showNDelete(shell::Shell& shell) {
  frmAccountBatch form(shell);
  shell.desktop().showModal(form);
  return form.ChangedFlag;
}

}  // namespace ledgertree::batch
