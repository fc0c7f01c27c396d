#include "history/screen/form_history.h"

#include <initializer_list>
#include <utility>

#include "data/persian_calendar.h"
#include "history/operations.h"
#include "history/screen/way_back.h"
#include "shell/lookup/all_chosen.h"
#include "shell/work_progress.h"
#include "text/characters.h"

namespace ledgertree::history {
namespace {

constexpr ui::Size kDesignSize{13200, 7380};
constexpr std::size_t kDateLength = 10;
constexpr std::size_t kExportedTogether = 1000;
constexpr std::int32_t kAll = -1;  ///< what the first line of a list stands for

}  // namespace

FormHistory::FormHistory(shell::Shell& shell, std::int32_t accountID, Doors doors)
    : ui::Form(shell.surroundings(), "FormHistory", "سابقه حسابها", kDesignSize),
      lblSince(*this, "lblSince", {225, 120, 12750, 480}),
      lblAccount(*this, "lblAccount", {11925, 690, 1050, 270}, "حساب:"),
      sltAccount(*this, shell, "sltAccount", {7500, 660, 4350, 330}),
      lblUser(*this, "lblUser", {6600, 690, 825, 270}, "کاربر:"),
      lstUser(*this, "lstUser", {4050, 660, 2475, 330}),
      lblKind(*this, "lblKind", {3075, 690, 900, 270}, "عمليات:"),
      lstKind(*this, "lstKind", {225, 660, 2775, 330}),
      lblFrom(*this, "lblFrom", {11925, 1140, 1050, 270}, "از تاريخ:"),
      txtFrom(*this, "txtFrom", {10350, 1110, 1500, 330}),
      lblUntil(*this, "lblUntil", {9150, 1140, 1050, 270}, "تا تاريخ:"),
      txtUntil(*this, "txtUntil", {7500, 1110, 1575, 330}),
      cmdShow(*this, "cmdShow", {5775, 1080, 1500, 390}, "نمايش"),
      cmdAll(*this, "cmdAll", {3300, 1080, 2325, 390}, "همه حسابها"),
      cmdOfAccount(*this, "cmdOfAccount", {225, 1080, 2925, 390}, "سابقه حساب اين رديف"),
      grdChanges(*this, "grdChanges", {225, 1560, 12750, 3600}),
      FrameThen(*this, "FrameThen", {225, 5250, 12750, 1440}, "حساب در يک روز يا سال مالي"),
      lblDay(*this, "lblDay", {11700, 360, 900, 270}, "در تاريخ:", &FrameThen),
      txtDay(*this, "txtDay", {10125, 330, 1500, 330}, &FrameThen),
      lblPeriod(*this, "lblPeriod", {8475, 360, 1425, 270}, "يا در سال مالي:", &FrameThen),
      sltPeriod(*this, shell, "sltPeriod", {5550, 330, 2850, 330}, &FrameThen),
      cmdThen(*this, "cmdThen", {3450, 300, 1875, 390}, "چه بود؟", &FrameThen),
      lblThen(*this, "lblThen", {150, 765, 12450, 570}, "", &FrameThen),
      cmdTakeBack(*this, "cmdTakeBack", {9975, 6825, 3000, 405}, "برگرداندن اين عمليات..."),
      cmdExport(*this, "cmdExport", {7575, 6825, 2250, 405}, "انتقال به اکسل"),
      cmdCancel(*this, "cmdCancel", {225, 6825, 1500, 405}, "بستن"),
      shell_(shell),
      doors_(std::move(doors)),
      words_(*shell.dtEn()),
      baseline_(kDesignSize) {
  loadControls();
  listen();
  since_ = since(*shell_.dtEn());
  lblSince.setCaption(since_ ? "سابقه حسابها از " + momentInWords(*since_) + " نگهداري ميشود."
                             : std::string(data::kNothingIsKept));
  fillKinds();
  for (ui::Control* control : controls())
    if (control != &lblSince && control != &cmdCancel) control->setEnabled(since_.has_value());
  if (!since_) return;
  fillUsers();
  if (accountID > 0) sltAccount.setAccountID(accountID);
  if (readFilter()) readAnew();
}

void FormHistory::loadControls() {
  setResizable(true);
  shell_.chooseKeyboardLayout();
  sltAccount.setPickerConnection(shell_.context.gConnectionString);
  sltAccount.setClosingFlag(false);
  sltPeriod.setConnectionText(shell_.context.gConnectionString);
  sltPeriod.setMajorView("vwAccountPeriodMajor");
  sltPeriod.setMinorView("vwAccountPeriodMinor");
  for (ui::TextField* date : {&txtFrom, &txtUntil, &txtDay}) {
    date->setMaximumLength(kDateLength);
    date->setLatinDigits(true);
    date->setLeftToRight(true);
    date->setHint("سال/ماه/روز، مانند 1405/09/02");
  }
  cmdExport.setVisible(shell_.isOffered(Offer::Export));
  lblSince.setWraps(true);
  lblThen.setWraps(true);
  grdChanges.setColumns({{.header = "زمان", .width = 1650},
                         {.header = "کاربر", .width = 1650},
                         {.header = "عمليات", .width = 1650},
                         {.header = "کد", .width = 1275},
                         {.header = "عنوان", .width = 2400},
                         {.header = "تغيير", .width = 3600}});
  nameControls();
  setFirstFocus(grdChanges);
  setDefaultButton(cmdShow);
  setCancelButton(cmdCancel);
}

void FormHistory::nameControls() {
  const auto name = [](ui::Control& control, const char* text) { control.setAccessibleName(text); };
  name(sltAccount, "حساب");
  name(lstUser, "کاربر");
  name(lstKind, "عمليات");
  name(txtFrom, "از تاريخ");
  name(txtUntil, "تا تاريخ");
  name(grdChanges, "سابقه حسابها");
  name(txtDay, "در تاريخ");
  name(sltPeriod, "سال مالي");
}

void FormHistory::listen() {
  shell_.switchLayoutAt(sltAccount);
  sltPeriod.onGotFocus = [this] {
    desktop().chooseKeyboardLayout(shell_.context.gKeyboardLayout);
    setDefaultButton(cmdThen);
  };
  // Enter asks what the field is for.
  txtDay.onGotFocus = [this] { setDefaultButton(cmdThen); };
  for (ui::Control* asked : std::initializer_list<ui::Control*>{&txtDay, &sltPeriod})
    asked->onLostFocus = [this] { setDefaultButton(cmdShow); };
  grdChanges.onReachedEnd = [this] { readMore(); };
  grdChanges.onSelectionChange = [this] {
    if (grdChanges.currentRow() == grdChanges.rowCount() - 1) readMore();
  };
  // A day or a year, never both.
  sltPeriod.onSelectionChange = [this] { txtDay.setText({}); };
  txtDay.onChange = [this] { sltPeriod.Clear(); };
  cmdShow.onClick = [this] {
    if (readFilter()) readAnew();
  };
  cmdAll.onClick = [this] { showAll(); };
  cmdOfAccount.onClick = [this] { showOfAccount(); };
  cmdThen.onClick = [this] { showThen(); };
  cmdExport.onClick = [this] { exportAll(); };
  cmdTakeBack.onClick = [this] { takeBackHighlighted(); };
  cmdCancel.onClick = [this] { close(); };
}

void FormHistory::fillKinds() {
  lstKind.addItem("همه", kAll);
  for (const data::OperationKind kind : allKinds())
    lstKind.addItem(std::string(nameOf(kind)), static_cast<std::int32_t>(kind));
  lstKind.select(0);
}

void FormHistory::fillUsers() {
  lstUser.addItem("همه", kAll);
  const std::vector<std::int32_t> users = usersOfMemory(*shell_.dtEn());
  words_.learnUsers(users);
  for (const std::int32_t user : users) lstUser.addItem(words_.user(user), user);
  lstUser.select(0);
}

/// All that isn't a grid stands where it stands from the right; what is as wide as the screen grows with it.
void FormHistory::resized() {
  const int wider = size().width - baseline_.width;
  const int higher = size().height - baseline_.height;
  baseline_ = size();
  for (ui::Control* control : controls()) {
    ui::Bounds bounds = control->bounds();
    const bool wide =
        control == &lblSince || control == &grdChanges || control == &FrameThen || control == &lblThen;
    const bool below =
        control == &FrameThen || control == &cmdTakeBack || control == &cmdExport || control == &cmdCancel;
    if (wide) bounds.width += wider;
    if (!wide && control != &cmdCancel) bounds.left += wider;
    if (control == &grdChanges) bounds.height += higher;
    if (below) bounds.top += higher;
    control->setBounds(bounds);
  }
}

bool FormHistory::readFilter() {
  if (!shell::allChosen(shell_, {&sltAccount})) return false;
  Filter filter;
  if (!readDay(txtFrom, filter.from) || !readDay(txtUntil, filter.until)) return false;
  if (filter.from) filter.from = data::toUtc(*filter.from);
  if (filter.until) filter.until = data::toUtc(data::dayAfter(*filter.until));
  if (!sltAccount.IsEmpty()) filter.accountID = sltAccount.AccountID();
  const auto chosen = [](const ui::DropDownList& list) {
    return list.selected() < 1 ? std::nullopt
                               : std::optional(list.items()[static_cast<std::size_t>(list.selected())].data);
  };
  filter.userID = chosen(lstUser);
  if (const auto kind = chosen(lstKind)) filter.kind = static_cast<data::OperationKind>(*kind);
  filter_ = filter;
  return true;
}

bool FormHistory::readDay(ui::TextField& field, std::optional<data::DateTime>& day) {
  const std::string text(text::trimmed(field.text()));
  if (text.empty()) return true;
  day = data::fromPersianDate(text);
  if (day) return true;
  shell_.showErrorNotice(shell::kTitleProblem,
                         "تاريخ «" + text + "» درست نيست. آن را مانند 1405/09/02 بنويسيد.");
  field.focus();
  return false;
}

void FormHistory::readAnew() {
  changes_.clear();
  grdChanges.clearRows();
  next_ = 0;
  atEnd_ = false;
  readMore();
}

void FormHistory::readMore() {
  if (reading_ || atEnd_) return;
  const shell::UnderWay underWay(reading_);
  const shell::Hourglass hourglass(desktop());
  const Page found = page(*shell_.dtEn(), filter_, next_);
  words_.learn(found.changes);
  next_ = found.next;
  atEnd_ = next_ == 0;
  for (const Change& change : found.changes) {
    changes_.push_back(change);
    grdChanges.addRow(rowOf(change));
  }
}

std::vector<std::string> FormHistory::rowOf(const Change& change) const {
  return {momentInWords(change.moment),
          words_.user(change.userID),
          std::string(nameOf(change.kind)),
          change.code,
          change.title,
          words_.whatChanged(change)};
}

void FormHistory::exportAll() {
  std::vector<std::vector<std::string>> rows(1);
  for (const ui::GridColumn& column : grdChanges.columns()) rows.front().push_back(column.header);
  {
    const shell::Hourglass hourglass(desktop());
    Page found;
    do {
      found = page(*shell_.dtEn(), filter_, found.next, kExportedTogether);
      words_.learn(found.changes);
      for (const Change& change : found.changes) rows.push_back(rowOf(change));
    } while (found.next != 0);
  }
  doors_.exportRows(rows);
}

void FormHistory::showAll() {
  sltAccount.ClearAccount();
  lstUser.select(0);
  lstKind.select(0);
  txtFrom.setText({});
  txtUntil.setText({});
  if (readFilter()) readAnew();
}

const Change* FormHistory::highlighted() const {
  const int row = grdChanges.currentRow();
  return row == ui::Grid::kNone ? nullptr : &changes_.at(static_cast<std::size_t>(row));
}

void FormHistory::showOfAccount() {
  const Change* const change = highlighted();
  if (change == nullptr) return;
  sltAccount.setAccountID(change->accountID);
  if (readFilter()) readAnew();
}

void FormHistory::takeBackHighlighted() {
  const Change* const change = highlighted();
  if (change == nullptr || !doors_.mayChange() || !takeBackAsked(shell_, change->operation)) return;
  ChangedFlag = true;
  sltAccount.ReloadAccounts();
  readAnew();
}

void FormHistory::showThen() {
  lblThen.setCaption({});
  if (!shell::allChosen(shell_, {&sltAccount, &sltPeriod})) return;
  if (sltAccount.IsEmpty()) {
    shell_.showErrorNotice(shell::kTitleProblem, "حساب مشخص نشده است!");
    return sltAccount.focus();
  }
  const auto gateway = shell_.dtEn();
  const std::int32_t account = sltAccount.AccountID();
  if (!sltPeriod.IsEmpty()) return showInPeriod(*gateway, account, sltPeriod.SelectedID());
  std::optional<data::DateTime> day;
  if (!readDay(txtDay, day)) return;
  if (!day) {
    shell_.showErrorNotice(shell::kTitleProblem, "تاريخ يا سال مالي را بايد مشخص کنيد!");
    return txtDay.focus();
  }
  lblThen.setCaption("در پايان " + data::toPersianDate(*day) + ": " +
                     thenInWords(*gateway, account, data::toUtc(data::dayAfter(*day))));
}

void FormHistory::showInPeriod(data::DtEn& gateway, std::int32_t accountID, std::int32_t periodID) {
  const data::OpenRows period(gateway.rssqlAccPeriodSpec,
                              "Select * From tblAccountPeriod Where ID=" + std::to_string(periodID));
  if (period->Eof()) return;
  const auto first = data::fromPersianDate(period->Fields("FarsiBeginDate").toText());
  const auto last = data::fromPersianDate(period->Fields("FarsiEndDate").toText());
  if (!first || !last) return;
  lblThen.setCaption("در آغاز " + data::toPersianDate(*first) + ": " +
                     thenInWords(gateway, accountID, data::toUtc(*first)) + "\nدر پايان " +
                     data::toPersianDate(*last) + ": " +
                     thenInWords(gateway, accountID, data::toUtc(data::dayAfter(*last))));
}

std::string FormHistory::thenInWords(data::DtEn& gateway, std::int32_t accountID,
                                     const data::DateTime& moment) const {
  if (moment < *since_) return "پيش از آغاز سابقه است";
  if (toLocalTime(moment) > data::dayAfter(shell_.clock())) return "هنوز نيامده است";
  const Then then = accountAt(gateway, accountID, moment);
  if (!then.existed) return "اين حساب نبود";
  std::string words = "کد " + then.code + "، عنوان «" + then.title + "»";
  if (!then.parentID) return words + "، در بالاترين سطح";
  const Then parent = accountAt(gateway, *then.parentID, moment);
  return words + "، زير حساب «" + parent.code + " " + parent.title + "»";
}

bool showHistory(shell::Shell& shell, std::int32_t accountID, Doors doors) {
  FormHistory form(shell, accountID, std::move(doors));
  shell.desktop().showModal(form);
  return form.ChangedFlag;
}

}  // namespace ledgertree::history
