#include "entities/rel_objects.h"

#include <algorithm>

#include "data/view_name.h"

namespace ledgertree::entities {

namespace {

using ui::Bounds;

constexpr ui::Size kDesignSize{9000, 7800};
/// A smaller window, such as one being minimised, doesn't move the controls.
constexpr ui::Twips kLeastSize = 300;

// The controls' bounds at design size, in a frame relative to its corner.
constexpr Bounds kFrame1{90, 90, 8820, 7140};
constexpr Bounds kAccountLabel{7140, 195, 1500, 240};
constexpr Bounds kAccount{180, 150, 6870, 315};
constexpr Bounds kClassLabel{7140, 600, 1500, 240};
constexpr Bounds kClass{180, 555, 6870, 315};
constexpr Bounds kAllObjects{3600, 960, 5040, 285};
constexpr Bounds kObjects{180, 1320, 8460, 5670};
constexpr Bounds kHint{150, 300, 8160, 1260};
constexpr Bounds kTree{150, 1620, 8160, 3480};
constexpr Bounds kAllBranches{5760, 5175, 2550, 405};
constexpr Bounds kNotAllBranches{3090, 5175, 2550, 405};
constexpr Bounds kOk{1470, 7305, 1290, 405};
constexpr Bounds kCancel{90, 7305, 1290, 405};
constexpr Bounds kProgress{2970, 7335, 5940, 330};

/// Which of the bounds change with the form, twip for twip.
constexpr Bounds kGrows{0, 0, 1, 1};
constexpr Bounds kWidens{0, 0, 1, 0};
constexpr Bounds kStaysRight{1, 0, 0, 0};
constexpr Bounds kStaysRightAndLow{1, 1, 0, 0};
constexpr Bounds kStaysLow{0, 1, 0, 0};
constexpr Bounds kStaysLowAndWidens{0, 1, 1, 0};

struct Anchor {
  ui::Control& control;
  Bounds design;
  Bounds follows;
};

/// The message for a class whose tree is incomplete says what to do: read it again.
constexpr const char* kNotRead =
    "موجوديتهاي اين نوع به طور کامل خوانده نشده اند. نوع موجوديت را دوباره انتخاب کنيد.";
constexpr const char* kNoPlainView =
    "نام نماي موجوديتهاي اين نوع معتبر نيست. نام نما را در تعريف نوع موجوديت اصلاح کنيد.";
/// Stands for all objects among the keys of those that are stored.
constexpr const char* kAll = "all";
constexpr const char* kNoClass = "نوع موجوديت انتخاب نشده است. ابتدا يک نوع موجوديت را انتخاب کنيد.";
constexpr const char* kNoNodeSelected = "ابتدا يکي از گره هاي درخت را انتخاب کنيد.";
constexpr const char* kHintText =
    "با انتخاب هر يک از گره هاي مادر، تمام برگهاي واقع شده در زيرشاخه هاي فعلي آن انتخاب مي شوند. اگر "
    "هدف اين است که تمام برگهايي که در آينده اضافه مي شوند نيز منظور گردند، بايد پس از انتخاب گره "
    "مادر، دکمه انتخاب تمام زيرشاخه ها نيز فشرده شود. در اينصورت گره مادر موردنظر به رنگ آبي در خواهد "
    "آمد. براي بازگشت از اين حالت، کافي است که پس از انتخاب گره مادر، دکمه عدم انتخاب تمام زيرشاخه ها "
    "فشرده شود.";

}  // namespace

frmAccountRelObjects::frmAccountRelObjects(shell::Shell& shell)
    : Form(shell.surroundings(), "frmAccountRelObjects", "موجوديتهاي مرتبط", kDesignSize),
      Frame1(*this, "Frame1", kFrame1),
      lblAccount(*this, "lblAccount", kAccountLabel, "حساب:", &Frame1),
      sltAccount(*this, shell, "sltAccount", kAccount, &Frame1),
      lbl1(*this, "lbl1", kClassLabel, "نوع موجوديت:", &Frame1),
      cmbClass(*this, "cmbClass", kClass, &Frame1),
      chkAllObjects(*this, "chkAllObjects", kAllObjects, "شامل تمام موجوديتها", &Frame1),
      gbObjects(*this, "gbObjects", kObjects, "انتخاب موجوديتها", &Frame1),
      lblHint(*this, "lblHint", kHint, kHintText, &gbObjects),
      treeObjects(*this, "treeObjects", kTree, &gbObjects),
      cmdAllBranches(*this, "cmdAllBranches", kAllBranches, "انتخاب تمام زيرشاخه ها", &gbObjects),
      cmdNotAllBranches(*this, "cmdNotAllBranches", kNotAllBranches, "عدم انتخاب تمام زيرشاخه ها",
                        &gbObjects),
      cmdOk(*this, "cmdOk", kOk, "ثبت"),
      cmdCancel(*this, "cmdCancel", kCancel, "خروج"),
      progressBar(*this, "ProgressBar", kProgress),
      shell_(shell),
      objects_(treeObjects, shell),
      read_(shell) {
  setResizable(true);
  shell_.chooseKeyboardLayout();
  bindSelector();
  dressControls();
  listen();
  showNoClass();
}

void frmAccountRelObjects::bindSelector() {
  sltAccount.setConnectionText(shell_.context.gConnectionString);
  sltAccount.setMajorView("vwAccountMajor");
  sltAccount.setMinorView("vwAccountMinor");
}

void frmAccountRelObjects::dressControls() {
  lblHint.setWraps(true);
  sltAccount.setAccessibleName("حساب");
  cmbClass.setAccessibleName("نوع موجوديت");
  gbObjects.setAccessibleName("انتخاب موجوديتها");
  treeObjects.setAccessibleName("درخت موجوديتها");
  progressBar.setAccessibleName("پيشرفت کار");
  progressBar.setVisible(false);

  cmdAllBranches.setShortcut(ui::KeyChord::ctrlAnd('B'));
  cmdNotAllBranches.setShortcut({.ctrl = true, .shift = true, .letter = 'B'});
  cmdOk.setShortcut(ui::KeyChord::ctrlAnd('S'));
  setCancelButton(cmdCancel);
  setFirstFocus(cmbClass);
}

void frmAccountRelObjects::listen() {
  cmbClass.onSelect = [this] { chooseClass(); };
  chkAllObjects.onClick = [this] { enableObjects(); };
  treeObjects.onExpand = [this](ui::NodeId node) { openNode(node); };
  treeObjects.onNodeCheck = [this](ui::NodeId node) { objects_.checkChildren(node); };
  cmdAllBranches.onClick = [this] { markBranches(); };
  cmdNotAllBranches.onClick = [this] { unmarkBranches(); };
  cmdOk.onClick = [this] { save(); };
  cmdCancel.onClick = [this] { close(); };
}

void frmAccountRelObjects::resized() {
  if (size().width <= kLeastSize || size().height <= kLeastSize) return;
  const ui::Twips wider = size().width - designSize().width;
  const ui::Twips higher = size().height - designSize().height;
  const Anchor anchors[] = {
      {Frame1, kFrame1, kGrows},
      {gbObjects, kObjects, kGrows},
      {treeObjects, kTree, kGrows},
      {lblHint, kHint, kWidens},
      {lblAccount, kAccountLabel, kStaysRight},
      {sltAccount, kAccount, kStaysRight},
      {lbl1, kClassLabel, kStaysRight},
      {cmbClass, kClass, kStaysRight},
      {chkAllObjects, kAllObjects, kStaysRight},
      {cmdAllBranches, kAllBranches, kStaysRightAndLow},
      {cmdNotAllBranches, kNotAllBranches, kStaysRightAndLow},
      {cmdOk, kOk, kStaysLow},
      {cmdCancel, kCancel, kStaysLow},
      {progressBar, kProgress, kStaysLowAndWidens},
  };
  for (const auto& [control, design, follows] : anchors) {
    control.setBounds({design.left + follows.left * wider, design.top + follows.top * higher,
                       std::max(design.width + follows.width * wider, 0),
                       std::max(design.height + follows.height * higher, 0)});
  }
}

void frmAccountRelObjects::open(std::int32_t accountID) {
  sltAccount.setSelectedID(accountID);
  fillClassList(sltAccount.SelectedID());
  sltAccount.setIsActive(false);
  saved_ = false;
  showNoClass();
}

void frmAccountRelObjects::fillClassList(std::int32_t accountID) {
  const auto gateway = shell_.dtEn();
  cmbClass.clearItems();
  const data::OpenRows classes(gateway->rssqlAccCostCenter,
                               "Select ID, isnull(Code,'') + '_' +  Name as Name from tblAccountClass , "
                               "tblAccountRelatedClasses Where ID=ClassID and AccountID=" +
                                   std::to_string(accountID) + " Order by Sequence");
  for (; !classes->Eof(); classes->MoveNext())
    cmbClass.addItem(classes->Fields("Name").toText(), classes->Fields("ID").toInt32());
}

void frmAccountRelObjects::showNoClass() {
  cmbClass.select(ui::DropDownList::kNone);
  chkAllObjects.setValue(1);
  chkAllObjects.setEnabled(false);
  gbObjects.setEnabled(false);
  objects_.clear();
}

void frmAccountRelObjects::chooseClass() {
  if (working_) return;
  const shell::UnderWay underWay(working_);
  if (cmbClass.selected() == ui::DropDownList::kNone) return showNoClass();
  // Whatever fails from here on, the previous class's tree must not be saved for this one.
  objects_.clear();
  curClassID_ = cmbClass.items()[static_cast<std::size_t>(cmbClass.selected())].data;
  try {
    readClass();
  } catch (...) {
    showNoClass();
    throw;
  }
  const auto view = data::plainViewName(curViewMajor_);
  if (!view) {
    shell_.showErrorNotice(shell::kTitleError, kNoPlainView);
    return;
  }
  const shell::Hourglass hourglass(desktop());
  shell::WorkProgress progress(*this, progressBar, 0, shell::WorkProgress::WayOut::Escape);
  objects_.fillObjectTree(sltAccount.SelectedID(), curClassID_, *view, progress);
}

void frmAccountRelObjects::openNode(ui::NodeId node) {
  if (working_) return;
  const shell::UnderWay underWay(working_);
  shell::WorkProgress progress(*this, progressBar, 0, shell::WorkProgress::WayOut::Escape);
  objects_.fillObjectChildren(node, progress);
}

void frmAccountRelObjects::readClass() {
  const auto gateway = shell_.dtEn();
  const bool all = includesAllObjects(*gateway);
  curViewMajor_ = viewMajor(*gateway);
  read_.keep(storedObjects(all));
  chkAllObjects.setValue(all ? 1 : 0);
  chkAllObjects.setEnabled(true);
  enableObjects();
}

bool frmAccountRelObjects::includesAllObjects(data::DtEn& gateway) const {
  const data::OpenRows rows(gateway.rssqlTarvoBasePath,
                            "Select isnull(IncludeAllObjects,1) as IncludeAllObjects from "
                            "tblAccountRelatedClasses Where AccountID=" +
                                std::to_string(sltAccount.SelectedID()) +
                                " and ClassID = " + std::to_string(curClassID_));
  // A class that was removed from the account meanwhile counts as never saved here.
  return rows->Eof() || rows->Fields("IncludeAllObjects").toInt64() != 0;
}

/// The view of the class; empty if the class no longer exists.
std::string frmAccountRelObjects::viewMajor(data::DtEn& gateway) const {
  const data::OpenRows rows(
      gateway.rssqlTarvoBasePath,
      "Select ViewMajor,ViewMinor from tblAccountClass Where ID=" + std::to_string(curClassID_));
  return rows->Eof() ? std::string() : rows->Fields("ViewMajor").toText();
}

void frmAccountRelObjects::markBranches() {
  const ui::NodeId node = treeObjects.selected();
  if (node == ui::kNoNode) {
    shell_.showErrorNotice(shell::kTitleProblem, kNoNodeSelected);
  } else if (node == objects_.root()) {
    shell_.showErrorNotice(shell::kTitleError, "اين عمل را روي ريشه درخت نميتوان انجام داد.");
  } else {
    objects_.setMarked(node, true);
  }
}

void frmAccountRelObjects::unmarkBranches() {
  const ui::NodeId node = treeObjects.selected();
  if (node == ui::kNoNode) {
    shell_.showErrorNotice(shell::kTitleProblem, kNoNodeSelected);
  } else if (treeObjects.children(node).empty()) {
    shell_.showErrorNotice(shell::kTitleError, "اين گره زيرشاخه ندارد.");
  } else {
    objects_.setMarked(node, false);
  }
}

void frmAccountRelObjects::save() {
  if (working_) return;
  const shell::UnderWay underWay(working_);
  if (cmbClass.selected() == ui::DropDownList::kNone) {
    shell_.showErrorNotice(shell::kTitleProblem, kNoClass);
    return;
  }
  const bool all = chkAllObjects.value() == 1;
  if (!all && !objects_.complete()) {
    shell_.showErrorNotice(shell::kTitleError, kNotRead);
    return;
  }
  const std::int32_t accountID = sltAccount.SelectedID();
  const auto gateway = shell_.dtEn();
  if (!read_.mayWrite(storedObjects(includesAllObjects(*gateway)))) return;
  const auto operation = shell_.operation(*gateway, data::OperationKind::ObjectsOfAccount);
  // Until all of it is written, nothing is known of what is stored.
  read_.forget();
  writeIncludeAllObjects();
  const std::size_t written = saveRelObjects(accountID, curClassID_);
  if (!all && written == 0) shell_.showErrorNotice("اشكال", "هيچ مورد انتخاب شده يافت نشد!");
  shell_.showErrorNotice("اطلاع", "عمل ثبت انجام شد.");
  saved_ = true;
  tellWhatCameBetween();
}

shell::RowsAsRead::Rows frmAccountRelObjects::storedObjects(bool all) {
  const auto gateway = shell_.dtEn();
  shell::RowsAsRead::Rows stored = shell::RowsAsRead::rowsOf(
      gateway->rssqlTarvoBasePath,
      "Select ObjectID from tblAccountRelatedClassesDetail Where AccountID = " +
          std::to_string(sltAccount.SelectedID()) + " and ClassID = " + std::to_string(curClassID_),
      "ObjectID", "ObjectID");
  if (all) stored[kAll] = chkAllObjects.caption();
  return stored;
}

void frmAccountRelObjects::tellWhatCameBetween() {
  using Meant = shell::RowsAsRead::Meant;
  shell::RowsAsRead::Rows written;
  if (chkAllObjects.value() == 1) {
    written[kAll] = chkAllObjects.caption();
  } else {
    for (const std::string& object : objects_.chosenObjects()) written[object] = object;
  }
  const auto gateway = shell_.dtEn();
  const shell::RowsAsRead::Rows now = storedObjects(includesAllObjects(*gateway));
  read_.keep(written);
  read_.tellBehind(
      now, [&](const std::string& key) { return written.contains(key) ? Meant::There : Meant::Gone; });
}

void frmAccountRelObjects::writeIncludeAllObjects() {
  const auto gateway = shell_.dtEn();
  gateway->rssqlTarvoBasePath.Open("Update tblAccountRelatedClasses Set IncludeAllObjects = " +
                                   std::string(chkAllObjects.value() == 1 ? "1" : "0") +
                                   " Where AccountID = " + std::to_string(sltAccount.SelectedID()) +
                                   " and ClassID = " + std::to_string(curClassID_));
}

std::size_t frmAccountRelObjects::saveRelObjects(std::int32_t accountID, std::int32_t classID) {
  const shell::Hourglass hourglass(desktop());
  const auto gateway = shell_.dtEn();
  const std::string account = std::to_string(accountID);
  const std::string ofClass = std::to_string(classID);
  gateway->rssqlTarvoBasePath.Open("Delete tblAccountRelatedClassesDetail Where AccountID = " + account +
                                   " and ClassID = " + ofClass);
  if (chkAllObjects.value() == 1) return 0;
  const auto chosen = objects_.chosenObjects();
  const std::string insert =
      "Insert into tblAccountRelatedClassesDetail (AccountID,ClassID,ObjectID) Values (" + account + "," +
      ofClass + ",";
  shell::WorkProgress progress(*this, progressBar, static_cast<std::int32_t>(chosen.size()));
  std::int32_t done = 0;
  for (const std::string& objectID : chosen) {
    std::string statement = insert;
    gateway->rssqlAccCostCenter.Open(statement.append(objectID).append(")"));
    progress.advance(++done);
  }
  return chosen.size();
}

bool showRelObjects(shell::Shell& shell, std::int32_t inAccountID) {
  frmAccountRelObjects form(shell);
  form.open(inAccountID);
  shell.desktop().showModal(form);
  return form.saved();
}

}  // namespace ledgertree::entities
