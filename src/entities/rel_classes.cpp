#include "entities/rel_classes.h"

#include <algorithm>
#include <chrono>
#include <set>

#include "data/data_error.h"
#include "data/numbers.h"
#include "entities/rel_objects.h"
#include "shell/lookup/all_chosen.h"

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

/// The level of a line; a number beyond 16 bits is an error.
std::int16_t getItemLevel(const std::string& text) {
  return data::roundToInt16(data::leadingNumber(text.substr(0, text.find(kLevelMark))));
}

std::string setItemLevel(std::string text, int level) {
  const std::string old = itemText(std::to_string(getItemLevel(text)), "");
  for (auto place = text.find(old); place != std::string::npos; place = text.find(old, place))
    text.erase(place, old.size());
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

/// Runs a statement whose failure the save expects, the insert of a row that is there already above all.
void runSkippingFailure(data::RecordHandle& handle, const std::string& statement) {
  try {
    handle.Open(statement);
  } catch (const data::DataError&) {
    return;  // the next statement runs all the same
  }
}

}  // namespace

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
      shell_(shell) {
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
  mptEntityType.onGotFocus = [this] { desktop().chooseKeyboardLayout(shell_.context.gKeyboardLayout); };
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
  const auto gateway = shell_.dtEn();
  lstClasses.clearItems();
  const data::OpenRows classes(gateway->rssqlAccCostCenter,
                               "Select ID, isnull(Code,'') + '_' +  Name as Name,Sequence from "
                               "tblAccountClass , tblAccountRelatedClasses Where ID=ClassID and AccountID=" +
                                   std::to_string(accountID) + " Order by Sequence");
  for (; !classes->Eof(); classes->MoveNext()) {
    lstClasses.addItem(itemText(classes->Fields("Sequence").toText(), classes->Fields("Name").toText()),
                       classes->Fields("ID").toInt32());
  }
}

void frmAccountRelClasses::add() {
  if (!shell::allChosen(shell_, {&mptEntityType}) || mptEntityType.IsEmpty()) return;
  const std::string text = itemText(cmbLevel.selectedText(), mptEntityType.SelectedText());
  const auto& items = lstClasses.items();
  if (std::any_of(items.begin(), items.end(), [&](const ui::Item& item) { return item.text == text; })) {
    shell_.showErrorNotice(shell::kTitleError, "اطلاعات وارد شده تکراري است.");
    return;
  }
  lstClasses.addItem(text, mptEntityType.SelectedID());
}

void frmAccountRelClasses::remove() {
  if (lstClasses.selected() != ui::ListBox::kNone) lstClasses.removeItem(lstClasses.selected());
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
  writeClasses(accountID);
  shell_.showErrorNotice("اتمام عمليات", "عمليات ثبت با موفقيت انجام شد.");
  saved_ = true;
}

bool frmAccountRelClasses::repeatsClass() const {
  std::set<std::int32_t> classes;
  const auto& items = lstClasses.items();
  return std::any_of(items.begin(), items.end(),
                     [&](const ui::Item& item) { return !classes.insert(item.data).second; });
}

bool frmAccountRelClasses::leavesLevelEmpty() const {
  std::set<int> levels;
  for (const ui::Item& item : lstClasses.items()) levels.insert(getItemLevel(item.text));
  return std::any_of(levels.begin(), levels.end(),
                     [&](int level) { return level >= 2 && !levels.contains(level - 1); });
}

/// Updates or inserts each line, then deletes the classes that left the list. A list that has a class on two
/// levels goes without updates: an update finds a row by its class, and would bring both to one level.
void frmAccountRelClasses::writeClasses(std::int32_t accountID) {
  const shell::Hourglass hourglass(desktop());
  const auto gateway = shell_.dtEn();
  data::RecordHandle& handle = gateway->rssqlAccCostCenter;
  const std::string account = std::to_string(accountID);
  const bool repeats = repeatsClass();
  std::string classes = "(";
  for (const ui::Item& item : lstClasses.items()) {
    const std::string classID = std::to_string(item.data);
    const std::string level = std::to_string(getItemLevel(item.text));
    classes.append(classID).append(",");
    if (!repeats) runSkippingFailure(handle, updateOfLevel(account, classID, level));
    runSkippingFailure(handle, insertOfClass(account, classID, level));
  }
  if (classes == "(") {
    classes = "(-1)";
  } else {
    classes.back() = ')';
  }
  runSkippingFailure(handle, "Delete tblAccountRelatedClasses Where AccountID = " + account +
                                 " and ClassID not in " + classes);
}

bool showRelClasses(shell::Shell& shell, std::int32_t inAccountID) {
  frmAccountRelClasses form(shell);
  form.open(inAccountID);
  shell.desktop().showModal(form);
  return form.saved();
}

}  // namespace ledgertree::entities
