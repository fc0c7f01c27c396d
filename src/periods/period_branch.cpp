#include "periods/period_branch.h"

#include <algorithm>
#include <exception>

#include "data/numbers.h"
#include "periods/period_forms.h"
#include "shell/lookup/all_chosen.h"

namespace ledgertree::periods {

namespace {

constexpr ui::Size kSize{7800, 5280};

enum Column { kNumber, kName, kPeriodID };

using Meant = shell::RowsAsRead::Meant;

/// The documents that prevent hiding an account, without the condition on their period.
std::string documentsOf(const std::string& account) {
  return "select d.ID "
         " from tblAccountDocument d "
         " where exists(Select dd.* from tblAccountDocumentDetail dd where dd.AccountID in (Select " +
         account + " union select p.ChildID from tblAccountParent p where p.ID=" + account + "))";
}

/// `period` -1: documents of any date.
std::string documentsOf(const std::string& account, const std::string& period) {
  return documentsOf(account) +
         " and (exists(select p.* from tblAccountPeriod p where d.FarsiDocumentDate between p.FarsiBeginDate"
         " and p.FarsiEndDate and p.ID=" +
         period + ") or -1=" + period + ")";
}

std::string periodsOf(std::int32_t accountID) {
  return "select *,(select x.Name from vwAccountPeriodMajor x Where x.ID=PeriodID) as PeriodName"
         " from tblAccountPeriodAccount Where AccountID=" +
         std::to_string(accountID);
}

/// Tells whether a command on `period`, or on all of them (-1), concerns a given period.
std::function<bool(const std::string&)> about(const std::string& period) {
  return [period](const std::string& one) { return period == "-1" || one == period; };
}

std::string documentsOfAnyPeriod(const std::string& account) {
  return documentsOf(account) +
         " and (exists(select p.* from tblAccountPeriod p where d.FarsiDocumentDate between p.FarsiBeginDate"
         " and p.FarsiEndDate))";
}

}  // namespace

FormPeriodBranch::FormPeriodBranch(shell::Shell& shell)
    : ui::Form(shell.surroundings(), "FormPeriodBranch", "تنظيم دوره هاي زماني و شعب قابل نمايش", kSize),
      lblAccount(*this, "lblAccount", {6450, 255, 1125, 270}, "حساب:"),
      sltAccount(*this, shell, "sltAccount", {225, 225, 6150, 330}),
      lblPeriod(*this, "lblPeriod", {6450, 720, 1125, 270}, "سال مالي:"),
      sltPeriod(*this, shell, "sltPeriod", {1275, 690, 5100, 330}),
      cmdAdd(*this, "cmdAdd", {750, 668, 450, 375}, "+"),
      cmdDel(*this, "cmdDel", {225, 668, 450, 375}, "-"),
      lblBranch(*this, "lblBranch", {6450, 1185, 1125, 270}, "شعبه:"),
      sltBranch(*this, shell, "sltBranch", {1275, 1155, 5100, 330}),
      flxPeriodBranch(*this, "flxPeriodBranch", {225, 1185, 7350, 3300}),
      cmdDeleteRows(*this, "cmdDeleteRows", {5025, 4665, 2550, 405}, "حذف رديفهاي انتخاب شده"),
      cmdDeleteAllRows(*this, "cmdDeleteAllRows", {2925, 4665, 1950, 405}, "حذف همه رديفها"),
      cmdExit(*this, "cmdExit", {225, 4665, 1500, 405}, "خروج"),
      shell_(shell),
      read_(shell) {
  loadControls();
}

void FormPeriodBranch::loadControls() {
  bind(sltAccount, shell_.context, "vwAccountMajor", "vwAccountMinor");
  bindToPeriods(sltPeriod, shell_.context);
  bind(sltBranch, shell_.context, "vwAccountBranchMajor", "vwAccountBranchMinor");
  sltBranch.setIsActive(false);
  // No command reads the branch: an unusable field would only raise questions.
  lblBranch.setVisible(false);
  sltBranch.setVisible(false);

  flxPeriodBranch.setColumns({{.header = "رديف", .width = 600},
                              {.header = "سال مالي", .width = 2000},
                              {.header = "ش.ر. سال مالي", .width = 0}});

  sltAccount.setAccessibleName("حساب");
  sltPeriod.setAccessibleName("سال مالي");
  flxPeriodBranch.setAccessibleName("سالهاي مالي حساب");
  cmdAdd.setAccessibleName("افزودن حساب به سال مالي");
  cmdAdd.setHint("افزودن حساب به سال مالي");
  cmdDel.setAccessibleName("پنهان کردن حساب از سال مالي");
  cmdDel.setHint("پنهان کردن حساب از سال مالي");

  cmdAdd.onClick = [this] { addToPeriods(); };
  cmdDel.onClick = [this] { hideFromPeriods(); };
  cmdDeleteRows.onClick = [this] { hideSelectedRows(); };
  cmdDeleteAllRows.onClick = [this] { hideAllRows(); };
  cmdExit.onClick = [this] { hide(); };
  cmdDeleteRows.setShortcut(ui::KeyChord::ctrlAnd('D'));
  setDefaultButton(cmdAdd);
  setCancelButton(cmdExit);
}

bool FormPeriodBranch::ShowPeriodBranch(std::int32_t inAccountID) {
  sltAccount.setSelectedID(inAccountID);
  refreshPeriodGrid(inAccountID);
  sltAccount.setIsActive(false);
  ChangedFlag = false;
  setCommandsInReach(!sltAccount.IsEmpty() && !sltAccount.unlisted());
  desktop().showModal(*this);
  return ChangedFlag;
}

void FormPeriodBranch::setCommandsInReach(bool inReach) {
  cmdAdd.setEnabled(inReach);
  cmdDel.setEnabled(inReach);
  cmdDeleteRows.setEnabled(inReach);
  sltPeriod.setIsActive(inReach);
  if (inReach) {
    setFirstFocus(sltPeriod);
  } else {
    setFirstFocus(cmdExit);
  }
}

void FormPeriodBranch::refreshPeriodGrid(std::int32_t accountID) { read_.keep(showPeriods(accountID)); }

shell::RowsAsRead::Rows FormPeriodBranch::showPeriods(std::int32_t accountID) {
  flxPeriodBranch.clearRows();
  // If the query fails, nothing is known about the stored rows.
  read_.forget();
  const auto gateway = shell_.dtEn();
  shell::RowsAsRead::Rows shown;
  for (const data::OpenRows periods(gateway->rssqlAccCostCenter, periodsOf(accountID)); !periods->Eof();
       periods->MoveNext()) {
    const std::string period = periods->Fields("PeriodID").toText();
    shown[period] = periods->Fields("PeriodName").toText();
    flxPeriodBranch.addRow({std::to_string(flxPeriodBranch.rowCount() + 1), shown[period], period});
  }
  return shown;
}

shell::RowsAsRead::Rows FormPeriodBranch::storedPeriods(std::int32_t accountID) {
  const auto gateway = shell_.dtEn();
  return shell::RowsAsRead::rowsOf(gateway->rssqlAccCostCenter, periodsOf(accountID), "PeriodID",
                                   "PeriodName");
}

bool FormPeriodBranch::mayWrite() {
  const std::int32_t accountID = sltAccount.SelectedID();
  if (read_.mayWrite(storedPeriods(accountID))) return true;
  refreshPeriodGrid(accountID);
  return false;
}

std::vector<FormPeriodBranch::Period> FormPeriodBranch::selectedPeriods() const {
  const int cursor = flxPeriodBranch.currentRow();
  const int otherEnd = flxPeriodBranch.selectionEnd();
  const int first = std::min(cursor, otherEnd);
  const int last = std::max(cursor, otherEnd);
  std::vector<Period> periods;
  for (int row = first; row <= last; ++row) {
    periods.push_back({.id = data::toNumber(flxPeriodBranch.text(row, kPeriodID)).asInt32(),
                       .name = flxPeriodBranch.text(row, kName)});
  }
  return periods;
}

bool FormPeriodBranch::periodsAreClear() {
  if (!shell::allChosen(shell_, {&sltPeriod})) return false;
  if (!sltPeriod.IsEmpty()) return true;
  if (shell_.confirms(kTitleQuestion,
                      "از آنجايي که سال مالي انتخاب نشده است، همه سالهاي مالي مد نظر داريد؟")) {
    return true;
  }
  shell_.showErrorNotice(shell::kTitleProblem, "سال مالي را تعيين نماييد.");
  sltPeriod.focus();
  return false;
}

void FormPeriodBranch::addToPeriods() {
  if (!periodsAreClear() || !mayWrite()) return;
  const auto gateway = shell_.dtEn();
  const std::string account = std::to_string(sltAccount.SelectedID());
  const std::string period = std::to_string(sltPeriod.SelectedID());
  const auto operation = shell_.operation(*gateway, data::OperationKind::PeriodsOfAccount);
  execute(shell_, *gateway,
          "insert into tblAccountPeriodAccount(AccountID,PeriodID) "
          " (Select " +
              account +
              ", ID"
              " from tblAccountPeriod "
              " Where (ID=" +
              period + " or -1=" + period +
              ")"
              " and not exists(select x.* from tblAccountPeriodAccount x"
              " where x.PeriodID=tblAccountPeriod.ID and x.AccountID=" +
              account + "))");
  written(about(period), Meant::Unknown);
}

void FormPeriodBranch::hideFromPeriods() {
  if (!periodsAreClear()) return;
  const auto gateway = shell_.dtEn();
  const std::string account = std::to_string(sltAccount.SelectedID());
  const std::string period = std::to_string(sltPeriod.SelectedID());
  if (const auto dependency = findDependency(shell_, *gateway, documentsOf(account, period))) {
    shell_.showErrorNotice(shell::kTitleProblem,
                           "تعداد «" + std::to_string(dependency->documents) +
                               "» از اسناد حسابداري به دوره مالي " + sltPeriod.SelectedText() +
                               " وابسته است. به عنوان مثال سند با ش.ر. «" + dependency->example + "»");
    sltPeriod.focus();
    return;
  }
  if (!mayWrite()) return;
  const auto operation = shell_.operation(*gateway, data::OperationKind::PeriodsOfAccount);
  execute(shell_, *gateway,
          "delete tblAccountPeriodAccount Where AccountID=" + account + " and (PeriodID=" + period +
              " or -1=" + period + ")");
  written(about(period), Meant::Gone);
}

void FormPeriodBranch::hideSelectedRows() {
  if (flxPeriodBranch.rowCount() < 1) return;
  if (!shell_.confirms("پرسش براي حذف", "آيا براي پنهان کردن رديف(هاي) انتخابي مطمئن هستيد؟")) return;
  const std::vector<Period> selected = selectedPeriods();
  if (!mayWrite()) return;
  const auto gateway = shell_.dtEn();
  const std::int32_t accountID = sltAccount.SelectedID();
  const auto operation = shell_.operation(*gateway, data::OperationKind::PeriodsOfAccount);
  try {
    for (const Period& period : selected) {
      hideFromPeriod(*gateway, std::to_string(accountID), period);
    }
  } catch (const data::DataError& failure) {
    refreshAfterFailure(accountID, failure);
    throw;
  }
  // Some may have stayed because of documents, which the user was told.
  written(
      [&selected](const std::string& period) {
        return std::any_of(selected.begin(), selected.end(),
                           [&](const Period& one) { return std::to_string(one.id) == period; });
      },
      Meant::Unknown);
}

void FormPeriodBranch::refreshAfterFailure(std::int32_t accountID, const data::DataError& failure) {
  // The rows before the failed one are hidden and must not stay in the grid. The user is told about the first
  // failure; a second one only leaves the grid empty, which shows nothing wrong.
  read_.forget();
  if (failure.cameLate()) return flxPeriodBranch.clearRows();
  try {
    refreshPeriodGrid(accountID);
  } catch (const std::exception&) {
    return;
  }
}

void FormPeriodBranch::hideFromPeriod(data::DtEn& gateway, const std::string& account, const Period& period) {
  const std::string periodID = std::to_string(period.id);
  if (const auto dependency = findDependency(shell_, gateway, documentsOf(account, periodID))) {
    shell_.showErrorNotice(shell::kTitleProblem, "تعداد «" + std::to_string(dependency->documents) +
                                                     "» از اسناد حسابداري به « " + period.name +
                                                     "» وابسته است. به عنوان مثال سند با ش.ر. «" +
                                                     dependency->example + "»");
    return;
  }
  execute(shell_, gateway,
          "Delete tblAccountPeriodAccount Where AccountID=" + account + " and PeriodID=" + periodID);
  ChangedFlag = true;
}

void FormPeriodBranch::hideAllRows() {
  const auto gateway = shell_.dtEn();
  const std::string account = std::to_string(sltAccount.SelectedID());
  if (const auto dependency = findDependency(shell_, *gateway, documentsOfAnyPeriod(account))) {
    shell_.showErrorNotice(
        shell::kTitleProblem,
        "تعداد «" + std::to_string(dependency->documents) +
            "» از اسناد حسابداري به دوره مالي مورد نظر وابسته است. به عنوان مثال سند با ش.ر. «" +
            dependency->example + "»");
    sltPeriod.focus();
    return;
  }
  if (!mayWrite()) return;
  const auto operation = shell_.operation(*gateway, data::OperationKind::PeriodsOfAccount);
  execute(shell_, *gateway, "delete tblAccountPeriodAccount Where AccountID=" + account);
  written(about("-1"), Meant::Gone);
}

void FormPeriodBranch::written(const std::function<bool(const std::string& period)>& about,
                               shell::RowsAsRead::Meant left) {
  // Before the query: if it fails, the caller must still learn of the change.
  ChangedFlag = true;
  shell::RowsAsRead earlier = read_;
  const shell::RowsAsRead::Rows now = showPeriods(sltAccount.SelectedID());
  read_.keep(now);
  earlier.tellBehind(now, [&](const std::string& period) { return about(period) ? left : Meant::AsItWas; });
}

}  // namespace ledgertree::periods
