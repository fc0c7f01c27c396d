#include "periods/copy_period.h"

#include <string>

#include "periods/period_forms.h"
#include "shell/lookup/all_chosen.h"

namespace ledgertree::periods {

namespace {

constexpr ui::Size kSize{7350, 2850};

}  // namespace

FormCopyPeriodAccount::FormCopyPeriodAccount(shell::Shell& shell)
    : ui::Form(shell.surroundings(), "FormCopyPeriodAccount",
               "کپي کردن سرفصل هاي يک دوره مالي به دوره مالي ديگر", Outlook::grown(shell, kSize)),
      Label2(*this, "Label2", {225, 180, 6900, 780},
             "براي کپي کردن تمام سرفصل حسابها، مبدا را مشخص نکنيد ولي چنانه قصد داريد از دوره مالي خاص "
             "کپي کنيد، آنرا تعيين نماييد:"),
      lblPeriodFrom(*this, "lblPeriodFrom", {5700, 1140, 1425, 270}, "از دوره مالي:"),
      sltPeriodFrom(*this, shell, "sltPeriodFrom", {225, 1110, 5400, 330}),
      lblPeriodTo(*this, "lblPeriodTo", {5700, 1605, 1425, 270}, "به دوره مالي:"),
      sltPeriodTo(*this, shell, "sltPeriodTo", {225, 1575, 5400, 330}),
      cmdAutoCodding(*this, "cmdAutoCodding", {4125, 2220, 1500, 405}, "تاييد"),
      cmdCancel(*this, "cmdCancel", {2475, 2220, 1500, 405}, "انصراف"),
      outlook(*this, shell, kSize, [this] { return outlookInWords(); }),
      shell_(shell) {
  loadControls();
}

void FormCopyPeriodAccount::loadControls() {
  Label2.setWraps(true);
  sltPeriodFrom.setAccessibleName("از دوره مالي");
  sltPeriodTo.setAccessibleName("به دوره مالي");
  shell_.chooseKeyboardLayout();
  for (shell::Selector* selector : {&sltPeriodFrom, &sltPeriodTo}) {
    bindToPeriods(*selector, shell_.context);
    shell_.switchLayoutAt(*selector);
    selector->onSelectionChange = [this] { outlook.forget(); };
  }
  cmdAutoCodding.onClick = [this] { copy(); };
  cmdCancel.onClick = [this] { cancel(); };
  setFirstFocus(sltPeriodFrom);
  setDefaultButton(cmdAutoCodding);
  setCancelButton(cmdCancel);
}

bool FormCopyPeriodAccount::targetIsChosen() {
  if (!shell::allChosen(shell_, {&sltPeriodFrom, &sltPeriodTo})) return false;
  if (!sltPeriodTo.IsEmpty()) return true;
  shell_.showErrorNotice(shell::kTitleProblem, "مقصد دوره مالي را بايد مشخص کنيد!");
  sltPeriodTo.focus();
  return false;
}

std::string FormCopyPeriodAccount::outlookInWords() {
  if (!targetIsChosen()) return "";
  const auto gateway = shell_.dtEn();
  const std::string target = std::to_string(sltPeriodTo.SelectedID());
  const std::string there = "select count(*) from tblAccountPeriodAccount Where PeriodID = " + target;
  const std::string come = sltPeriodFrom.IsEmpty()
                               ? "select count(*) from tblAccount Where not exists(select x.* from "
                                 "tblAccountPeriodAccount x Where "
                                 "x.AccountID=tblAccount.ID and x.PeriodID=" +
                                     target + ")"
                               : "select count(*) from tblAccountPeriodAccount " + newFromSource();
  // The whole chart replaces the target's rows: a row whose account is gone isn't written again.
  const std::string stay =
      sltPeriodFrom.IsEmpty() ? there + " and AccountID in (select ID from tblAccount)" : there;
  const std::int64_t before = countOf(shell_, *gateway, there);
  const std::int64_t staying = countOf(shell_, *gateway, stay);
  return "«" + sltPeriodTo.SelectedText() + "»: " + std::to_string(countOf(shell_, *gateway, come)) +
         " حساب افزوده ميشود، " + std::to_string(staying) + " حساب ميماند و " +
         std::to_string(before - staying) + " حساب ميرود.";
}

std::string FormCopyPeriodAccount::newFromSource() const {
  return " Where PeriodID=" + std::to_string(sltPeriodFrom.SelectedID()) +
         " and not exists(Select x.* from tblAccountPeriodAccount x"
         " Where x.AccountID=tblAccountPeriodAccount.AccountID and x.PeriodID=" +
         std::to_string(sltPeriodTo.SelectedID()) + ")";
}

void FormCopyPeriodAccount::copy() {
  if (!targetIsChosen()) return;
  if (sltPeriodFrom.IsEmpty()) {
    if (!shell_.confirms(kTitleQuestion, "آيا مطمئن هستيد که دوره مالي مبدا را نميخواهيد مشخص نماييد؟"))
      return;
    copyChart();
  } else {
    copyPeriod();
  }
  ChangedFlag = true;
  hide();
}

void FormCopyPeriodAccount::copyChart() {
  const auto gateway = shell_.dtEn();
  const auto operation = shell_.operation(*gateway, data::OperationKind::CopyPeriod);
  const std::string target = std::to_string(sltPeriodTo.SelectedID());
  execute(shell_, *gateway, "delete tblAccountPeriodAccount Where PeriodID = " + target);
  targetEmptied_ = true;
  execute(shell_, *gateway,
          "insert into tblAccountPeriodAccount(AccountID,PeriodID)"
          " select ID," +
              target + " from tblAccount ");
  targetEmptied_ = false;
}

void FormCopyPeriodAccount::copyPeriod() {
  const auto gateway = shell_.dtEn();
  const auto operation = shell_.operation(*gateway, data::OperationKind::CopyPeriod);
  execute(shell_, *gateway,
          "insert into tblAccountPeriodAccount(AccountID,PeriodID)"
          " select AccountID," +
              std::to_string(sltPeriodTo.SelectedID()) + " from tblAccountPeriodAccount " + newFromSource());
}

void FormCopyPeriodAccount::cancel() {
  // A copy that failed half-way left the target without its rows, and cancelling doesn't restore them.
  ChangedFlag = targetEmptied_;
  hide();
}

}  // namespace ledgertree::periods
