#include "periods/delete_period.h"

#include <string>

#include "periods/period_forms.h"
#include "shell/lookup/all_chosen.h"

namespace ledgertree::periods {

namespace {

constexpr ui::Size kSize{8100, 2250};

}  // namespace

FormDeletePeriod::FormDeletePeriod(shell::Shell& shell)
    : ui::Form(shell.surroundings(), "FormDeletePeriod", "پنهان کردن يک دوره مالي از همه سرفصلهاي حساب",
               Outlook::grown(shell, kSize)),
      Label2(*this, "Label2", {225, 180, 7650, 600},
             "براي پنهان کردن يک دوره مالي از همه سرفصلهاي حساب، دوره مالي مورد نظر را مشخص نماييد:"),
      lblPeriodFrom(*this, "lblPeriodFrom", {6450, 960, 1425, 270}, "از دوره مالي:"),
      sltPeriodFrom(*this, shell, "sltPeriodFrom", {225, 930, 6150, 330}),
      cmdDeletePossible(*this, "cmdDeletePossible", {4950, 1605, 2925, 405}, "پنهان کردن سرفصلهاي بدون سند"),
      cmdDelete(*this, "cmdDelete", {2025, 1605, 2775, 405}, "پنهان کردن همه سرفصلها"),
      cmdCancel(*this, "cmdCancel", {225, 1605, 1650, 405}, "انصراف"),
      outlook(*this, shell, kSize, [this] { return outlookInWords(); }),
      shell_(shell) {
  loadControls();
}

void FormDeletePeriod::loadControls() {
  Label2.setWraps(true);
  sltPeriodFrom.setAccessibleName("از دوره مالي");
  shell_.chooseKeyboardLayout();
  bindToPeriods(sltPeriodFrom, shell_.context);
  shell_.switchLayoutAt(sltPeriodFrom);
  sltPeriodFrom.onSelectionChange = [this] { outlook.forget(); };
  cmdDeletePossible.onClick = [this] { hideWithoutDocument(); };
  cmdDelete.onClick = [this] { hideAll(); };
  cmdCancel.onClick = [this] { cancel(); };
  setFirstFocus(sltPeriodFrom);
  // No default button: the Enter that chooses a period must not go on to empty it.
  setCancelButton(cmdCancel);
}

bool FormDeletePeriod::periodIsChosen() {
  if (!shell::allChosen(shell_, {&sltPeriodFrom})) return false;
  if (!sltPeriodFrom.IsEmpty()) return true;
  shell_.showErrorNotice(shell::kTitleProblem, "دوره مالي را بايد مشخص کنيد!");
  sltPeriodFrom.focus();
  return false;
}

std::string FormDeletePeriod::ofPeriod() const {
  return " Where PeriodID = " + std::to_string(sltPeriodFrom.SelectedID());
}

std::string FormDeletePeriod::withoutDocument() const {
  return ofPeriod() +
         " and not exists(select d.* "
         "                    from tblAccountDocument d inner join tblAccountDocumentDetail dd on "
         "d.ID=dd.DocumentID"
         "                    where dd.AccountID in (select tblAccountPeriodAccount.AccountID union select "
         "p.ChildID from tblAccountParent p Where p.ID=tblAccountPeriodAccount.AccountID) "
         "                    and exists(select p.* from tblAccountPeriod p where p.ID=" +
         std::to_string(sltPeriodFrom.SelectedID()) +
         " and d.FarsiDocumentDate between p.FarsiBeginDate and p.FarsiEndDate))";
}

std::string FormDeletePeriod::documentsOfPeriod() const {
  return "select d.ID "
         " from tblAccountDocument d "
         " where 1=1"
         " and (exists(select p.* from tblAccountPeriod p where d.FarsiDocumentDate between p.FarsiBeginDate "
         "and p.FarsiEndDate and p.ID=" +
         std::to_string(sltPeriodFrom.SelectedID()) + "))";
}

std::string FormDeletePeriod::outlookInWords() {
  if (!periodIsChosen()) return "";
  const auto gateway = shell_.dtEn();
  const std::string count = "select count(*) from tblAccountPeriodAccount";
  const std::int64_t all = countOf(shell_, *gateway, count + ofPeriod());
  const std::int64_t go = countOf(shell_, *gateway, count + withoutDocument());
  const auto documents = findDependency(shell_, *gateway, documentsOfPeriod());
  return "«" + cmdDeletePossible.caption() + "»: " + std::to_string(go) + " حساب پنهان ميشود و " +
         std::to_string(all - go) + " حساب ميماند.\n«" + cmdDelete.caption() + "»: " +
         (documents ? "به سبب " + std::to_string(documents->documents) + " سند شدني نيست."
                    : std::to_string(all) + " حساب پنهان ميشود و حسابي نميماند.");
}

void FormDeletePeriod::hideWithoutDocument() {
  if (!periodIsChosen()) return;
  if (!shell_.confirms(kTitleQuestion, "آيا مطمئن هستيد که قصد پنهان کردن سرفصلهاي بدون سند را داريد؟"))
    return;
  const auto gateway = shell_.dtEn();
  const auto operation = shell_.operation(*gateway, data::OperationKind::HidePeriod);
  execute(shell_, *gateway, "delete tblAccountPeriodAccount" + withoutDocument());
  ChangedFlag = true;
  hide();
}

void FormDeletePeriod::hideAll() {
  if (!periodIsChosen()) return;
  if (!shell_.confirms(kTitleQuestion, "آيا مطمئن هستيد که قصد پنهان کردن همه سرفصلها را داريد؟")) return;
  const auto gateway = shell_.dtEn();
  if (const auto dependency = findDependency(shell_, *gateway, documentsOfPeriod())) {
    shell_.showErrorNotice(
        shell::kTitleProblem,
        "تعداد «" + std::to_string(dependency->documents) +
            "» از اسناد حسابداري به اين دوره مالي وابسته است. به عنوان مثال سند با ش.ر. «" +
            dependency->example + "»");
    sltPeriodFrom.focus();
    return;
  }
  const auto operation = shell_.operation(*gateway, data::OperationKind::HidePeriod);
  execute(shell_, *gateway, "delete tblAccountPeriodAccount" + ofPeriod());
  ChangedFlag = true;
  hide();
}

void FormDeletePeriod::cancel() {
  ChangedFlag = false;
  hide();
}

}  // namespace ledgertree::periods
