#include "pactkit/cost_centers.h"

#include <utility>

#include "data/numbers.h"
#include "data/quote_text.h"
#include "text/characters.h"

namespace ledgertree::pactkit {

namespace {

constexpr ui::Size kDesignSize{7800, 5700};
constexpr std::size_t kCodeLength = 20;
constexpr std::size_t kNameLength = 100;

enum Column { kCode, kName, kID };

}  // namespace

CostCenters::CostCenters(shell::Shell& shell)
    : ui::Form(shell.surroundings(), "frmCostCenters", "مراكز هزينه", kDesignSize),
      grid(*this, "flxCostCenters", {225, 225, 7350, 3600}),
      lblCode(*this, "lblCode", {6450, 4005, 1125, 270}, "كد:"),
      txtCode(*this, "txtCode", {4650, 3975, 1725, 330}),
      lblName(*this, "lblName", {6450, 4470, 1125, 270}, "نام:"),
      txtName(*this, "txtName", {225, 4440, 6150, 330}),
      cmdNew(*this, "cmdNew", {6075, 5070, 1500, 405}, "جديد"),
      cmdSave(*this, "cmdSave", {4425, 5070, 1500, 405}, "ثبت"),
      cmdDelete(*this, "cmdDelete", {2775, 5070, 1500, 405}, "حذف"),
      cmdExit(*this, "cmdExit", {225, 5070, 1500, 405}, "خروج"),
      shell_(shell) {
  loadControls();
}

void CostCenters::loadControls() {
  shell_.chooseKeyboardLayout();
  grid.setColumns(
      {{.header = "كد", .width = 1500}, {.header = "نام", .width = 5500}, {.header = "ش.ر.", .width = 0}});
  grid.setAccessibleName("مراكز هزينه");
  txtCode.setAccessibleName("كد");
  txtName.setAccessibleName("نام");
  txtCode.setMaximumLength(kCodeLength);
  txtCode.setLatinDigits(true);
  txtCode.setLeftToRight(true);
  txtName.setMaximumLength(kNameLength);
  txtName.onGotFocus = [this] { desktop().chooseKeyboardLayout(shell_.context.gKeyboardLayout); };
  grid.onSelectionChange = [this] { showSelected(); };
  cmdNew.onClick = [this] { startNew(); };
  cmdSave.onClick = [this] { save(); };
  cmdDelete.onClick = [this] { remove(); };
  cmdExit.onClick = [this] { exit(); };
  cmdNew.setShortcut(ui::KeyChord::ctrlAnd('N'));
  cmdSave.setShortcut(ui::KeyChord::ctrlAnd('S'));
  cmdDelete.setShortcut(ui::KeyChord::ctrlAnd('D'));
  setCancelButton(cmdExit);
  setFirstFocus(grid);
}

void CostCenters::readAndSelect(std::int32_t id) {
  grid.clearRows();
  const auto gateway = shell_.dtEn();
  int row = 0;
  int selected = 0;
  for (const data::OpenRows centers(gateway->rssqlAccCostCenter,
                                    "Select ID,Code,Name From tblAccCostCenter Order By Code,Name,ID");
       !centers->Eof(); centers->MoveNext(), ++row) {
    if (centers->Fields("ID").toInt32() == id) selected = row;
    grid.addRow(
        {centers->Fields("Code").toText(), centers->Fields("Name").toText(), centers->Fields("ID").toText()});
  }
  if (row > 0) grid.selectRow(selected);
  showSelected();
}

std::int32_t CostCenters::selectedID() const {
  return grid.currentRow() == ui::Grid::kNone ? kNone
                                              : data::toNumber(grid.text(grid.currentRow(), kID)).asInt32();
}

void CostCenters::showSelected() {
  const bool any = grid.currentRow() != ui::Grid::kNone;
  show(any ? Typed{.code = grid.text(grid.currentRow(), kCode), .name = grid.text(grid.currentRow(), kName)}
           : Typed{});
  isNew_ = false;
  cmdSave.setEnabled(any);
  cmdDelete.setEnabled(any);
}

void CostCenters::show(Typed center) {
  txtCode.setText(center.code);
  txtName.setText(center.name);
  shown_ = std::move(center);
}

void CostCenters::startNew() {
  if (!mayDropTyped()) return;
  show({});
  isNew_ = true;
  cmdSave.setEnabled(true);
  cmdDelete.setEnabled(false);
  txtCode.focus();
}

bool CostCenters::mayDropTyped() {
  if (txtCode.text() == shown_.code && txtName.text() == shown_.name) return true;
  return shell_.confirms("مراكز هزينه", "آنچه نوشته ايد ثبت نشده است. آيا از آن منصرف شده ايد؟");
}

void CostCenters::exit() {
  if (mayDropTyped()) close();
}

std::int32_t CostCenters::firstID(const std::string& statement) {
  const auto gateway = shell_.dtEn();
  const data::OpenRows rows(gateway->rssqlAccCostCenter, statement);
  return rows->Eof() ? kNone : rows->Fields("ID").toInt32();
}

CostCenters::Typed CostCenters::typedFor(std::int32_t id) {
  Typed typed{.code = std::string(text::trimmed(txtCode.text())),
              .name = std::string(text::trimmed(txtName.text()))};
  std::string_view problem;
  if (typed.name.empty()) {
    problem = "نام مركز هزينه را وارد نماييد.";
  } else if (text::characterCount(typed.code) > kCodeLength ||
             text::characterCount(typed.name) > kNameLength) {
    problem = "كد بيش از 20 حرف يا نام بيش از 100 حرف دارد. آن را کوتاه نماييد.";
  } else if (!typed.code.empty() &&
             firstID("Select ID From tblAccCostCenter Where Code = " + data::quoteText(typed.code) +
                     " and ID <> " + std::to_string(id)) != kNone) {
    problem = "مركز هزينه ديگري با اين كد وجود دارد.";
  }
  if (problem.empty()) return typed;
  shell_.showErrorNotice(shell::kTitleProblem, problem);
  return {};
}

void CostCenters::save() {
  const std::int32_t id = isNew_ ? kNone : selectedID();
  const Typed typed = typedFor(id);
  if (typed.name.empty()) return;
  const auto gateway = shell_.dtEn();
  const std::string code = data::quoteText(typed.code);
  const std::string name = data::quoteText(typed.name);
  if (!isNew_) {
    gateway->cnMainData.Execute("Update tblAccCostCenter Set Code = " + code + ",Name = " + name +
                                " Where ID = " + std::to_string(id));
    return readAndSelect(id);
  }
  gateway->cnMainData.Execute("Insert Into tblAccCostCenter (Code,Name) Values(" + code + "," + name + ")");
  readAndSelect(firstID("Select ID From tblAccCostCenter Where Name = " + name + " Order By ID desc"));
}

void CostCenters::remove() {
  const std::string id = std::to_string(selectedID());
  const std::string name = grid.text(grid.currentRow(), kName);
  if (!shell_.confirms("حذف مركز هزينه", "آيا از حذف مركز هزينه «" + name + "» اطمينان داريد؟")) return;
  const auto gateway = shell_.dtEn();
  // The check is part of the statement, so that no account can take the centre in between.
  gateway->cnMainData.Execute("Delete tblAccCostCenter Where ID = " + id +
                              " and not exists(Select a.ID From tblAccount a Where a.PositionID = " + id +
                              ")");
  const bool stays = firstID("Select ID From tblAccCostCenter Where ID = " + id) != kNone;
  readAndSelect(data::toNumber(id).asInt32());
  if (stays)
    shell_.showErrorNotice(
        shell::kTitleError,
        "مركز هزينه «" + name + "» به حسابها منتسب است. بنابراين امکان حذف آن وجود ندارد.");
}

}  // namespace ledgertree::pactkit
