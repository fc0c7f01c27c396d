#include "entities/rel_classes.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

#include "data/data_error.h"
#include "data/numbers.h"
#include "entities/rel_objects.h"
#include "shell/lookup/all_chosen.h"
#include "shell/lookup/lookup_search.h"
#include "shell/work_progress.h"

namespace ledgertree::entities {

namespace {

using namespace std::chrono_literals;

constexpr ui::Size kDesignSize{7500, 5220};
constexpr int kLowestLevel = 1;
constexpr int kHighestLevel = 3;
constexpr std::string_view kLevelMark = "#";

std::string itemText(std::string_view level, std::string_view classText) {
  return std::string(level).append(kLevelMark).append(classText);
}

/// The level of a line; throws for a number beyond 16 bits.
std::int16_t getItemLevel(const std::string& text) {
  return data::roundToInt16(data::leadingNumber(text.substr(0, text.find(kLevelMark))));
}

std::string setItemLevel(std::string text, int level) {
  const std::string old = itemText(std::to_string(getItemLevel(text)), "");
  for (auto at = text.find(old); at != std::string::npos; at = text.find(old, at)) text.erase(at, old.size());
  return itemText(std::to_string(level), text);
}

std::string updateOfLevel(const std::string& account, const std::string& classID, const std::string& level) {
  return "Update tblAccountRelatedClasses set Sequence = " + level + " Where AccountID = " + account +
         " and ClassID = " + classID;
}

std::string insertOfClass(const std::string& account, const std::string& classID, const std::string& level) {
  return "Insert Into tblAccountRelatedClasses (AccountID,ClassID,Sequence) Values(" + account + "," +
         classID + "," + level + ")";
}

std::string rowOnLevel(const std::string& account, const std::string& classID, const std::string& level) {
  return " Where AccountID = " + account + " and ClassID = " + classID + " and Sequence = " + level;
}

}  // namespace

/// The statements of a save, one after the other. One that fails is skipped, such as the insert of a row that
/// already exists. After a time-out none is run any more: each would wait as long.
class frmAccountRelClasses::Statements {
 public:
  enum class Outcome { Done, Refused, Failed };

  explicit Statements(data::DtEn& gateway) : handle_(gateway.rssqlAccCostCenter) {}

  Outcome run(const std::string& statement) {
    if (cameLate_) return Outcome::Failed;
    try {
      handle_.Open(statement);
      return Outcome::Done;
    } catch (const data::DataError& failure) {
      cameLate_ = failure.cameLate();
      if (failure.reason() == data::DataError::Reason::Constraint) return Outcome::Refused;
      anyFailed_ = true;
      return Outcome::Failed;
    }
  }
  bool done(const std::string& statement) { return run(statement) == Outcome::Done; }
  [[nodiscard]] bool anyFailed() const { return anyFailed_; }

 private:
  data::RecordHandle& handle_;
  bool cameLate_ = false;
  bool anyFailed_ = false;
};

frmAccountRelClasses::frmAccountRelClasses(shell::Shell& shell)
    : Form(shell.surroundings(), "frmAccountRelClasses", "انواع موجوديت مرتبط", kDesignSize),
      Label1(*this, "Label1", {5910, 195, 1440, 240}, "حساب:"),
      sltAccount(*this, shell, "sltAccount", {150, 150, 5670, 315}),
      lbl1(*this, "lbl1", {5910, 615, 1440, 240}, "نوع موجوديت:"),
      mptEntityType(*this, shell, "mptEntityType", {1140, 570, 4680, 315}),
      cmbLevel(*this, "cmbLevel", {150, 570, 900, 315}),
      cmdAdd(*this, "cmdAdd", {150, 1020, 1290, 405}, "اضافه"),
      cmdDelete(*this, "cmdDelete", {150, 1470, 1290, 405}, "حذف"),
      cmdMoveDown(*this, "cmdMoveDown", {150, 1920, 1290, 405}, "افزايش"),
      cmdMoveUp(*this, "cmdMoveUp", {150, 2370, 1290, 405}, "كاهش"),
      lstClasses(*this, "lstClasses", {1530, 1020, 5820, 3000}),
      cmdSelectObjects(*this, "cmdSelectObjects", {3750, 4110, 3600, 405}, "...انتخاب برخي از موجوديتها"),
      cmdOk(*this, "cmdOk", {1530, 4680, 1290, 405}, "ثبت"),
      cmdCancel(*this, "cmdCancel", {150, 4680, 1290, 405}, "خروج"),
      Timer1(*this, "Timer1", 30ms),
      shell_(shell),
      read_(shell) {
  shell_.chooseKeyboardLayout();
  bindSelectors();
  dressControls();
  listen();
  enableButtons();
}

void frmAccountRelClasses::bindSelectors() {
  sltAccount.setConnectionText(shell_.context.gConnectionString);
  sltAccount.setMajorView("vwAccountMajor");
  sltAccount.setMinorView("vwAccountMinor");
  mptEntityType.setConnectionText(shell_.dtEn()->cnMainData.ConnectionString());
  mptEntityType.setMajorView("vwAccountClass");
  mptEntityType.setMinorView("vwAccountClassMinor");
}

void frmAccountRelClasses::dressControls() {
  for (int level = kLowestLevel; level <= kHighestLevel; ++level) cmbLevel.addItem(std::to_string(level));
  cmbLevel.select(0);

  sltAccount.setAccessibleName("حساب");
  mptEntityType.setAccessibleName("نوع موجوديت");
  cmbLevel.setAccessibleName("سطح");
  cmbLevel.setHint("سطح");
  lstClasses.setAccessibleName("انواع موجوديت مرتبط");
  cmdMoveDown.setAccessibleName("افزايش سطح");
  cmdMoveUp.setAccessibleName("كاهش سطح");

  cmdAdd.setShortcut(ui::KeyChord::ctrlAnd('N'));
  cmdDelete.setShortcut(ui::KeyChord::ctrlAnd('D'));
  cmdMoveDown.setShortcut(ui::KeyChord::ctrlAnd('I'));
  cmdMoveUp.setShortcut(ui::KeyChord::ctrlAnd('U'));
  cmdSelectObjects.setShortcut(ui::KeyChord::ctrlAnd('O'));
  cmdOk.setShortcut(ui::KeyChord::ctrlAnd('S'));
  setCancelButton(cmdCancel);
  setFirstFocus(mptEntityType);
}

void frmAccountRelClasses::listen() {
  shell_.switchLayoutAt(mptEntityType);
  cmdAdd.onClick = [this] { add(); };
  cmdDelete.onClick = [this] { remove(); };
  cmdMoveDown.onClick = [this] { changeLevel(1); };
  cmdMoveUp.onClick = [this] { changeLevel(-1); };
  cmdSelectObjects.onClick = [this] { showRelObjects(shell_, sltAccount.SelectedID()); };
  cmdOk.onClick = [this] { save(); };
  cmdCancel.onClick = [this] { close(); };
  Timer1.onTick = [this] { enableButtons(); };
}

void frmAccountRelClasses::enableButtons() {
  const std::size_t count = lstClasses.items().size();
  cmdAdd.setEnabled(!mptEntityType.IsEmpty());
  cmdDelete.setEnabled(count >= 1);
  cmdMoveDown.setEnabled(count >= 2);
  cmdMoveUp.setEnabled(count >= 2);
}

void frmAccountRelClasses::open(std::int32_t accountID) {
  sltAccount.setSelectedID(accountID);
  fillRelClasses(sltAccount.SelectedID());
  sltAccount.setIsActive(false);
  saved_ = false;
  enableButtons();
}

void frmAccountRelClasses::fillRelClasses(std::int32_t accountID) {
  lstClasses.clearItems();
  rows_.clear();
  left_.clear();
  shell::RowsAsRead::Rows read;
  readClasses(accountID, [&](const std::string& level, const std::string& name, std::int32_t classID) {
    rows_.emplace_back(level);
    lstClasses.addItem(itemText(level, name), classID);
    read[keyOf({.classID = classID, .level = level})] = itemText(level, name);
  });
  read_.keep(std::move(read));
}

void frmAccountRelClasses::readClasses(
    std::int32_t accountID,
    const std::function<void(const std::string&, const std::string&, std::int32_t)>& visit) {
  const auto gateway = shell_.dtEn();
  {
    const data::OpenRows classes(
        gateway->rssqlAccCostCenter,
        "Select ID, isnull(Code,'') + '_' +  Name as Name,Sequence from "
        "tblAccountClass , tblAccountRelatedClasses Where ID=ClassID and AccountID=" +
            std::to_string(accountID) + " Order by Sequence");
    for (; !classes->Eof(); classes->MoveNext())
      visit(classes->Fields("Sequence").toText(), classes->Fields("Name").toText(),
            classes->Fields("ID").toInt32());
  }
  // A class that no longer exists has a line too: the next save deletes what has no line.
  const data::OpenRows gone(
      gateway->rssqlAccCostCenter,
      "Select ClassID,Sequence from tblAccountRelatedClasses Where AccountID=" + std::to_string(accountID) +
          " and not exists(Select x.* from tblAccountClass x Where "
          "x.ID=tblAccountRelatedClasses.ClassID) Order by Sequence");
  for (; !gone->Eof(); gone->MoveNext()) {
    const std::int32_t classID = gone->Fields("ClassID").toInt32();
    visit(gone->Fields("Sequence").toText(), shell::unlistedText(classID), classID);
  }
}

shell::RowsAsRead::Rows frmAccountRelClasses::storedClasses(std::int32_t accountID) {
  shell::RowsAsRead::Rows stored;
  readClasses(accountID, [&](const std::string& level, const std::string& name, std::int32_t classID) {
    stored[keyOf({.classID = classID, .level = level})] = itemText(level, name);
  });
  return stored;
}

void frmAccountRelClasses::tellWhatCameBetween(std::int32_t accountID) {
  using Meant = shell::RowsAsRead::Meant;
  shell::RowsAsRead::Rows written;
  for (std::size_t line = 0; line < rows_.size(); ++line)
    written[keyOf(shown(line))] = lstClasses.items()[line].text;
  // If reading fails, nothing is known of what is stored.
  read_.forget();
  const shell::RowsAsRead::Rows now = storedClasses(accountID);
  read_.keep(written);
  read_.tellBehind(
      now, [&](const std::string& key) { return written.contains(key) ? Meant::There : Meant::Gone; });
}

void frmAccountRelClasses::add() {
  if (!shell::allChosen(shell_, {&mptEntityType}) || mptEntityType.IsEmpty()) return;
  const std::string text = itemText(cmbLevel.selectedText(), mptEntityType.SelectedText());
  const auto& items = lstClasses.items();
  if (std::any_of(items.begin(), items.end(), [&](const ui::Item& item) { return item.text == text; })) {
    shell_.showErrorNotice(shell::kTitleError, "اطلاعات وارد شده تکراري است.");
    return;
  }
  rows_.push_back(takeRowThatLeft(mptEntityType.SelectedID(), cmbLevel.selectedText()));
  lstClasses.addItem(text, mptEntityType.SelectedID());
}

/// A class that was removed from the list and added again reuses its row, preferably that of the same level.
std::optional<std::string> frmAccountRelClasses::takeRowThatLeft(std::int32_t classID,
                                                                 const std::string& level) {
  const auto find = [&](bool anyLevel) {
    return std::find_if(left_.begin(), left_.end(), [&](const Row& row) {
      return row.classID == classID && (anyLevel || row.level == level);
    });
  };
  auto row = find(false);
  if (row == left_.end()) row = find(true);
  if (row == left_.end()) return std::nullopt;
  std::string taken = row->level;
  left_.erase(row);
  return taken;
}

void frmAccountRelClasses::remove() {
  if (lstClasses.selected() == ui::ListBox::kNone) return;
  const int selected = lstClasses.selected();
  const auto line = static_cast<std::size_t>(selected);
  if (rows_[line]) left_.push_back({.classID = lstClasses.items()[line].data, .level = *rows_[line]});
  rows_.erase(rows_.begin() + selected);
  lstClasses.removeItem(selected);
}

void frmAccountRelClasses::changeLevel(int step) {
  const int selected = lstClasses.selected();
  if (selected == ui::ListBox::kNone) return;
  const std::string& text = lstClasses.items()[static_cast<std::size_t>(selected)].text;
  const int level = getItemLevel(text);
  const bool atLimit = step > 0 ? level >= kHighestLevel : level <= kLowestLevel;
  if (!atLimit) lstClasses.setItemText(selected, setItemLevel(text, level + step));
}

void frmAccountRelClasses::save() {
  if (working_) return;
  const shell::UnderWay underWay(working_);
  if (!shell::allChosen(shell_, {&mptEntityType})) return;
  const std::int32_t accountID = sltAccount.SelectedID();
  if (sltAccount.IsEmpty() || sltAccount.unlisted()) {
    shell_.showErrorNotice(shell::kTitleProblem, "حسابي انتخاب نشده است. ابتدا يک حساب را انتخاب کنيد.");
    return;
  }
  if (shell_.hasAccountMovement(accountID)) {
    shell_.showErrorNotice("عدم امکان تغيير انواع موجوديت منتسب",
                           "به دليل اينکه سرفصل حساب گردش داشته است، امکان تغيير انواع موجوديت منتسب به آن "
                           "وجود ندارد.");
    return;
  }
  if (leavesLevelEmpty()) {
    shell_.showErrorNotice("عدم رعايت ترتيب",
                           "بين ترتيب انواع موجوديتهاي انتساب يافته فاصله وجود دارد. قبل از ثبت، لازم است كه "
                           "اين فاصله برطرف شود.");
    return;
  }
  if (!read_.mayWrite(storedClasses(accountID))) return;
  const bool all = writeClasses(accountID);
  if (!all) read_.forget();
  shell_.showErrorNotice("اتمام عمليات", "عمليات ثبت با موفقيت انجام شد.");
  saved_ = true;
  if (all) tellWhatCameBetween(accountID);
}

bool frmAccountRelClasses::repeatsClass() const {
  std::set<std::int32_t> classes;
  for (const ui::Item& item : lstClasses.items())
    if (!classes.insert(item.data).second) return true;
  return std::any_of(left_.begin(), left_.end(),
                     [&](const Row& row) { return classes.contains(row.classID); });
}

bool frmAccountRelClasses::leavesLevelEmpty() const {
  std::set<int> levels;
  for (const ui::Item& item : lstClasses.items()) levels.insert(getItemLevel(item.text));
  return std::any_of(levels.begin(), levels.end(),
                     [&](int level) { return level >= 2 && !levels.contains(level - 1); });
}

frmAccountRelClasses::Row frmAccountRelClasses::shown(std::size_t line) const {
  const ui::Item& item = lstClasses.items()[line];
  return {.classID = item.data, .level = std::to_string(getItemLevel(item.text))};
}

/// Updates or inserts each line, then deletes the classes that were removed from the list. An update finds a
/// row by its class, and would merge the rows of a class on several levels: if there is such a class, the
/// rows are first moved one by one.
bool frmAccountRelClasses::writeClasses(std::int32_t accountID) {
  const shell::Hourglass hourglass(desktop());
  const auto gateway = shell_.dtEn();
  const auto operation = shell_.operation(*gateway, data::OperationKind::ClassesOfAccount);
  Statements statements(*gateway);
  const std::string account = std::to_string(accountID);
  const bool repeats = repeatsClass();
  if (repeats) {
    deleteRowsThatLeft(statements, account);
    moveRows(statements, account);
  }
  std::string classes = "(";
  for (std::size_t line = 0; line < rows_.size(); ++line) {
    const Row row = shown(line);
    const std::string classID = std::to_string(row.classID);
    classes.append(classID).append(",");
    if (!repeats && statements.done(updateOfLevel(account, classID, row.level)) && rows_[line])
      rows_[line] = row.level;
    if (statements.run(insertOfClass(account, classID, row.level)) != Statements::Outcome::Failed)
      assignRow(line, row);
  }
  if (classes == "(") {
    classes = "(-1)";
  } else {
    classes.back() = ')';
  }
  statements.run("Delete tblAccountRelatedClasses Where AccountID = " + account + " and ClassID not in " +
                 classes);
  return !statements.anyFailed();
}

/// The row of the line exists. A previous row of the line that couldn't be moved is removed by the next save.
void frmAccountRelClasses::assignRow(std::size_t line, const Row& row) {
  if (rows_[line] == row.level) return;
  if (rows_[line]) left_.push_back({.classID = row.classID, .level = *rows_[line]});
  rows_[line].reset();
  if (!isTaken(row)) rows_[line] = row.level;
}

bool frmAccountRelClasses::isTaken(const Row& row) const {
  for (std::size_t line = 0; line < rows_.size(); ++line)
    if (rows_[line] == row.level && lstClasses.items()[line].data == row.classID) return true;
  return false;
}

/// Of several equal lines the first one keeps its row.
void frmAccountRelClasses::deleteRowsThatLeft(Statements& statements, const std::string& account) {
  std::set<std::pair<std::int32_t, std::string>> seen;
  for (std::size_t line = 0; line < rows_.size(); ++line) {
    const Row row = shown(line);
    if (seen.emplace(row.classID, row.level).second || !rows_[line]) continue;
    left_.push_back({.classID = row.classID, .level = *rows_[line]});
    rows_[line].reset();
  }
  std::erase_if(left_, [&](const Row& row) {
    return statements.done("Delete tblAccountRelatedClasses" +
                           rowOnLevel(account, std::to_string(row.classID), row.level));
  });
}

/// Each row as soon as its new level is free.
void frmAccountRelClasses::moveRows(Statements& statements, const std::string& account) {
  std::vector<std::size_t> waiting;
  for (std::size_t line = 0; line < rows_.size(); ++line)
    if (rows_[line] && *rows_[line] != shown(line).level) waiting.push_back(line);
  for (std::size_t before = 0; before != waiting.size();) {
    before = waiting.size();
    std::erase_if(waiting, [&](std::size_t line) {
      const Row row = shown(line);
      if (isTaken(row)) return false;
      if (statements.done("Update tblAccountRelatedClasses set Sequence = " + row.level +
                          rowOnLevel(account, std::to_string(row.classID), *rows_[line])))
        rows_[line] = row.level;
      return true;
    });
  }
  // Lines of one class that swapped levels remain. The rows that they need exist.
  for (const std::size_t line : waiting) rows_[line] = shown(line).level;
}

bool showRelClasses(shell::Shell& shell, std::int32_t inAccountID) {
  frmAccountRelClasses form(shell);
  form.open(inAccountID);
  shell.desktop().showModal(form);
  return form.saved();
}

}  // namespace ledgertree::entities
