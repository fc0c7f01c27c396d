#include "accounts/account_differences.h"

#include <algorithm>
#include <utility>

namespace ledgertree::accounts {

namespace {

constexpr ui::Size kSize{12000, 6150};
constexpr ui::Bounds kGrid{225, 810, 11550, 2700};
/// Extra room goes to the grid.
constexpr ui::Twips kBelowGrid = 3645;

constexpr std::string_view kMoved =
    "پس از آن که شما اين حساب را خوانديد، کاربر ديگري آن را جابجا کرده يا کد آن را تغيير داده است.";
constexpr std::string_view kChanged =
    "پس از آن که شما اين حساب را خوانديد، کاربر ديگري آن را تغيير داده است.";
constexpr std::string_view kChoose =
    " براي آنچه هر دو تغيير داديد يکي از دو مقدار را انتخاب کنيد و سپس ثبت کنيد.";
constexpr std::string_view kNothingToChoose = " آنچه ثبت خواهد شد در ستون آخر آمده است.";

}  // namespace

frmAccountDifferences::frmAccountDifferences(shell::Shell& shell)
    : ui::Form(shell.surroundings(), "frmAccountDifferences", "تغيير همزمان حساب", kSize),
      lblTold(*this, "lblTold", {225, 150, 11550, 600}),
      flxGroups(*this, "flxGroups", kGrid),
      lblRead(*this, "lblRead", {8025, 3600, 3750, 240}, "خوانده شده:"),
      txtRead(*this, "txtRead", {8025, 3870, 3750, 1350}),
      lblTheirs(*this, "lblTheirs", {4125, 3600, 3750, 240}, "کاربر ديگر:"),
      txtTheirs(*this, "txtTheirs", {4125, 3870, 3750, 1350}),
      lblMine(*this, "lblMine", {225, 3600, 3750, 240}, "شما:"),
      txtMine(*this, "txtMine", {225, 3870, 3750, 1350}),
      cmdTheirs(*this, "cmdTheirs", {9675, 5445, 2100, 405}, "از کاربر ديگر"),
      cmdMine(*this, "cmdMine", {7425, 5445, 2100, 405}, "از من"),
      cmdOk(*this, "cmdOk", {2175, 5445, 1800, 405}, "ثبت"),
      cmdCancel(*this, "cmdCancel", {225, 5445, 1800, 405}, "انصراف"),
      shell_(shell) {
  dressControls();
}

void frmAccountDifferences::dressControls() {
  setResizable(true);
  lblTold.setWraps(true);
  lblTold.setStrong(true);
  flxGroups.setColumns({{.header = "مشخصه", .width = 2550},
                        {.header = "خوانده شده", .width = 2200},
                        {.header = "کاربر ديگر", .width = 2200},
                        {.header = "شما", .width = 2200},
                        {.header = "ثبت ميشود", .width = 2300}});
  flxGroups.setAccessibleName("تغييرات دو کاربر");
  const std::pair<ui::TextField*, const char*> texts[] = {
      {&txtRead, "خوانده شده"}, {&txtTheirs, "کاربر ديگر"}, {&txtMine, "شما"}};
  for (const auto& [field, name] : texts) {
    field->setMultiline(true);
    field->setLocked(true);
    field->setAccessibleName(name);
  }
  cmdTheirs.setHint("مقدار کاربر ديگر ثبت شود");
  cmdMine.setHint("مقداري که من نوشتم ثبت شود");
  cmdTheirs.setShortcut(ui::KeyChord::ctrlAnd('O'));
  cmdMine.setShortcut(ui::KeyChord::ctrlAnd('M'));
  cmdOk.setShortcut(ui::KeyChord::ctrlAnd('S'));
  setCancelButton(cmdCancel);
  setFirstFocus(flxGroups);
  flxGroups.onSelectionChange = [this] { showCurrent(); };
  cmdTheirs.onClick = [this] { choose(Choice::Theirs); };
  cmdMine.onClick = [this] { choose(Choice::Mine); };
  cmdOk.onClick = [this] { accept(); };
  cmdCancel.onClick = [this] { hide(); };
}

void frmAccountDifferences::resized() {
  const int higher = std::max(size().height - kSize.height, 0);
  const int wider = std::max(size().width - kSize.width, 0);
  lblTold.setBounds({225, 150, 11550 + wider, 600});
  flxGroups.setBounds({kGrid.left, kGrid.top, kGrid.width + wider, kGrid.height + higher});
  const ui::Twips labels = kBelowGrid - 45 + higher;
  const auto move = [](ui::Control& control, ui::Twips left, ui::Twips top) {
    ui::Bounds bounds = control.bounds();
    bounds.left = left;
    bounds.top = top;
    control.setBounds(bounds);
  };
  const std::pair<ui::Control*, ui::Control*> columns[] = {
      {&lblMine, &txtMine}, {&lblTheirs, &txtTheirs}, {&lblRead, &txtRead}};
  ui::Twips left = 225 + wider;
  for (const auto& [label, field] : columns) {
    move(*label, left, labels);
    move(*field, left, labels + 270);
    left += 3900;
  }
  move(cmdTheirs, 9675 + wider, labels + 1845);
  move(cmdMine, 7425 + wider, labels + 1845);
  move(cmdOk, 2175, labels + 1845);
  move(cmdCancel, 225, labels + 1845);
}

std::optional<data::Account> frmAccountDifferences::merge(const data::Account& read,
                                                          const data::Account& theirs,
                                                          const data::Account& mine,
                                                          const AccountTexts& texts,
                                                          std::string_view written) {
  lines_.clear();
  int first = -1;
  for (const Difference& difference : differences(read, theirs, mine)) {
    if (difference.isOpen() && first == -1) first = static_cast<int>(lines_.size());
    const Choice choice = difference.isOpen() ? Choice::Open
                          : difference.theirs ? Choice::Theirs
                                              : Choice::Mine;
    lines_.push_back({.difference = difference,
                      .choice = choice,
                      .name = texts.nameOf(*difference.group),
                      .read = texts.textOf(*difference.group, read),
                      .theirs = texts.textOf(*difference.group, theirs),
                      .mine = texts.textOf(*difference.group, mine)});
  }
  const bool moved = theirs.parentID != read.parentID || theirs.code != read.code;
  lblTold.setCaption(std::string(moved ? kMoved : kChanged) + std::string(written) +
                     std::string(first == -1 ? kNothingToChoose : kChoose));
  fill(std::max(first, 0));
  accepted_ = false;
  desktop().showModal(*this);
  if (!accepted_) return std::nullopt;
  data::Account merged = mine;
  for (const Line& line : lines_)
    if (line.choice == Choice::Theirs) take(merged, *line.difference.group, theirs);
  return merged;
}

std::string frmAccountDifferences::outcomeOf(const Line& line) {
  if (line.choice == Choice::Open) return "؟ انتخاب کنيد";
  return line.choice == Choice::Theirs ? line.theirs : line.mine;
}

void frmAccountDifferences::fill(int current) {
  flxGroups.clearRows();
  for (const Line& line : lines_)
    flxGroups.addRow({line.name, line.read, line.theirs, line.mine, outcomeOf(line)});
  flxGroups.selectRow(current);
  showCurrent();
}

void frmAccountDifferences::showCurrent() {
  const int row = flxGroups.currentRow();
  if (row < 0 || row >= static_cast<int>(lines_.size())) return;
  const Line& line = lines_[static_cast<std::size_t>(row)];
  txtRead.setText(line.read);
  txtTheirs.setText(line.theirs);
  txtMine.setText(line.mine);
  cmdTheirs.setEnabled(line.difference.isOpen());
  cmdMine.setEnabled(line.difference.isOpen());
}

void frmAccountDifferences::choose(Choice choice) {
  const auto row = static_cast<std::size_t>(flxGroups.currentRow());
  if (row >= lines_.size() || !lines_[row].difference.isOpen()) return;
  lines_[row].choice = choice;
  const auto open = std::find_if(lines_.begin(), lines_.end(),
                                 [](const Line& line) { return line.choice == Choice::Open; });
  fill(open == lines_.end() ? static_cast<int>(row) : static_cast<int>(open - lines_.begin()));
  if (open == lines_.end()) {
    cmdOk.focus();
  } else {
    flxGroups.focus();
  }
}

void frmAccountDifferences::accept() {
  const auto open = std::find_if(lines_.begin(), lines_.end(),
                                 [](const Line& line) { return line.choice == Choice::Open; });
  accepted_ = open == lines_.end();
  if (accepted_) return hide();
  shell_.showErrorNotice(shell::kTitleProblem,
                         "يکي از دو مقدار را انتخاب کنيد: «" + open->name + "» را هر دو تغيير داديد.");
  flxGroups.selectRow(static_cast<int>(open - lines_.begin()));
  flxGroups.focus();
}

}  // namespace ledgertree::accounts
