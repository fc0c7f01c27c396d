#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTableView>
#include <QToolButton>
#include <QTreeView>
#include <algorithm>
#include <map>
#include <stdexcept>

#include "entities/rel_objects.h"
#include "mainform/form/form_main.h"
#include "pactkit/cost_centers.h"
#include "qt/folder_icons.h"
#include "qt/reading_order.h"
#include "qt/text_view.h"
#include "screen.h"
#include "support/test_house.h"

namespace ledgertree::test {
namespace {

using qt::fromQt;

/// A control's state as its widget shows it: " hidden disabled locked".
std::string reachOf(const ui::Control& control, const qt::FormWindow& window) {
  const QWidget& widget = *window.widgetOf(control);
  const auto* date = dynamic_cast<const shell::DateField*>(&control);
  std::string words = widget.isVisibleTo(&window) ? "" : " hidden";
  if (!widget.isEnabledTo(&window)) words += " disabled";
  if (date != nullptr ? date->locked() : widget.property("readOnly").toBool()) words += " locked";
  return words;
}

std::string placeOf(const ui::Control& control) {
  const ui::Bounds& place = control.bounds();
  return std::to_string(place.left) + "," + std::to_string(place.top) + "," + std::to_string(place.width) +
         "," + std::to_string(place.height);
}

std::string detailsOf(const ui::Control& control, const QWidget& widget) {
  std::string words;
  const auto* line = dynamic_cast<const qt::LineEditor*>(&widget);
  const auto* field = dynamic_cast<const ui::TextField*>(&control);
  const auto* tree = dynamic_cast<const ui::Tree*>(&control);
  const auto* selector = dynamic_cast<const shell::Selector*>(&control);
  if (line != nullptr && line->limit > 0) words += " limit=" + std::to_string(line->limit);
  if (field != nullptr && field->latinDigits()) words += " digits";
  if (widget.layoutDirection() == Qt::LeftToRight) words += " left-to-right";
  if (widget.findChild<QToolButton*>({}, Qt::FindDirectChildrenOnly) != nullptr) words += " list";
  if (widget.property("verticalScrollBarPolicy") == Qt::ScrollBarAlwaysOn) words += " scrolls";
  if (widget.font().bold()) words += " bold";
  if (widget.property("wordWrap").toBool()) words += " wraps";
  if (widget.property("flat").toBool()) words += " borderless";
  if (widget.property("checked").toBool()) words += " on";
  if (tree != nullptr && tree->checkBoxes()) words += " ticks";
  if (selector != nullptr) words += " view=" + selector->MajorView();
  const auto* list = qobject_cast<const QComboBox*>(&widget);
  for (int row = 0; list != nullptr && row < list->count(); ++row)
    words += (row == list->currentIndex() ? " *" : " ") + fromQt(list->itemText(row));
  const auto* table = qobject_cast<const QTableView*>(&widget);
  for (int column = 0; table != nullptr && column < table->model()->columnCount(); ++column) {
    const auto& told = dynamic_cast<const ui::Grid&>(control).columns()[static_cast<std::size_t>(column)];
    words += " " + fromQt(table->model()->headerData(column, Qt::Horizontal).toString()) + "=";
    words += table->isColumnHidden(column) ? "hidden" : std::to_string(told.width);
  }
  return words;
}

std::string lineOf(const ui::Control& control, const qt::FormWindow& window) {
  const QWidget& widget = *window.widgetOf(control);
  const bool whole = fromQt(widget.objectName()) == control.name();
  const auto text = widget.property(widget.property("text").isValid() ? "text" : "title");
  const std::string caption = fromQt(text.toString());
  const std::string spoken = fromQt(widget.accessibleName());
  QString tip = (whole ? widget : *widget.parentWidget()).toolTip().remove("<span>").remove("</span>");
  tip.remove(QChar(0x2066)).remove(QChar(0x2069));
  std::string line = std::string(widget.metaObject()->className() + 1) + " " + control.name();
  if (!caption.empty()) line += " «" + caption + "»";
  if (spoken != caption && (control.takesFocus() || !spoken.empty())) line += " (" + spoken + ")";
  if (!tip.isEmpty()) line += " [" + fromQt(tip) + "]";
  const auto* label = qobject_cast<const QLabel*>(&widget);
  const QWidget* named = label != nullptr ? label->buddy() : nullptr;
  if (named != nullptr && named->objectName().isEmpty()) named = named->parentWidget();
  if (named != nullptr) line += " for " + fromQt(named->objectName());
  return line + reachOf(control, window) + detailsOf(control, widget) + " @" + placeOf(control);
}

struct Line {
  ui::Control& control;
  std::string text;
};

/// The controls of a frame, or of the form itself, in reading order.
void readBlock(const ui::Frame* frame, const std::string& indent, const qt::FormWindow& window,
               std::vector<Line>& lines) {
  std::vector<ui::Control*> inside;
  std::vector<QRect> places;
  for (ui::Control* control : window.form()->controls()) {
    if (control->frame() != frame) continue;
    const ui::Bounds& place = control->bounds();
    inside.push_back(control);
    places.emplace_back(place.left, place.top, place.width, place.height);
  }
  for (const std::size_t at : qt::readingOrder(places)) {
    lines.push_back({*inside[at], indent + lineOf(*inside[at], window)});
    if (auto* inner = dynamic_cast<ui::Frame*>(inside[at])) readBlock(inner, indent + " ", window, lines);
  }
}

std::string headOf(const ui::Form& form, qt::FormWindow& window) {
  const QColor ground = painted(window).pixelColor(1, window.height() - 2);
  std::string text = form.name() + " «" + fromQt(window.windowTitle()) + "» " +
                     std::to_string(form.designSize().width) + "x" +
                     std::to_string(form.designSize().height) + " " + fromQt(ground.name()) + " " +
                     fromQt(window.font().families().value(0));
  if (form.resizable()) text += " resizable";
  if (form.wantsMaximised()) text += " maximised";
  for (const ui::Timer* timer : form.timers())
    text += " " + timer->name() + "=" + std::to_string(timer->interval().count());
  return form.firstFocus() == nullptr ? text : text + " focus=" + form.firstFocus()->name();
}

/// A whole screen in words, as its widgets show it: the form, then one control per line, with the contents of
/// a frame indented: kind name «caption» (accessible name, if different) [tooltip] other fixed properties
/// @left,top,width,height. Then the keyboard layout that the focus selects, reported by `layouts`, and the
/// bounds in a larger form, if they differ. Disables the form's buttons.
std::string described(ui::Form& form, std::vector<std::string>& layouts) {
  qt::QtDesktop desktop;
  qt::FormWindow window(form, desktop);
  window.resize(2000, 1500);
  std::string head = headOf(form, window);
  std::vector<Line> lines;
  readBlock(nullptr, "", window, lines);
  std::vector<QWidget*> eye;
  std::vector<QWidget*> tabs;
  for (Line& line : lines) {
    if (line.control.takesFocus()) eye.push_back(window.widgetOf(line.control));
    layouts.clear();
    form.focusMoved(&line.control);
    for (const std::string& layout : layouts) line.text += " " + layout;
    if (auto* button = dynamic_cast<ui::PushButton*>(&line.control))
      button->onClick = [&head, button] { head += button->name(); };
  }
  form.focusMoved(nullptr);
  for (QWidget* at = window.nextInFocusChain(); at != &window; at = at->nextInFocusChain())
    if (std::find(eye.begin(), eye.end(), at) != eye.end()) tabs.push_back(at);
  if (tabs != eye) head += ", where the Tab key goes another way than the eye";
  for (const auto& [key, word] : {std::pair(ui::Key::Enter, " enter="), {ui::Key::Escape, " escape="}}) {
    head += word;
    form.press(ui::KeyChord::of(key));
  }
  form.resize({form.designSize().width + 1000, form.designSize().height + 2000});
  std::string text = head + "\n";
  for (const Line& line : lines) {
    const std::string place = placeOf(line.control);
    text += line.text + (line.text.find("@" + place) == std::string::npos ? " -> " + place : "") + "\n";
  }
  window.detach();
  return text;
}

/// The screens as they open on the demo chart, whose nine groups are of each nature, open and closed.
class Screens : public ::ledgertree::testing::TestHouse {
 protected:
  Screens() {
    useDemoChart();
    database.execute(
        "update tblAccount set AccountNatureID = (Code + 2) % 3, Title = Code,"
        " IsClosed = (case when Code > '3' then 1 else 0 end) where ParentID is null");
    start();
  }
  ~Screens() override { window->detach(); }

  void start() {
    if (window != nullptr) window->detach();
    form = std::make_unique<mainform::FormMain>(shell);
    form->load();
    desktop.show(*form);
    window = std::make_unique<qt::FormWindow>(*form, drawing);
  }
  std::int32_t idOf(const std::string& code) {
    return static_cast<std::int32_t>(
        database.number("select ID from tblAccount where Code = '" + code + "'"));
  }
  void expectScreen(ui::Form& screen) { expectTable(screen.name(), described(screen, desktop.layouts)); }
  /// Describes the screen that opens next.
  void expectNext(const char* name) {
    desktop.inModal(name, [this](ui::Form& screen) { expectScreen(screen); });
  }

  qt::QtDesktop drawing;
  std::unique_ptr<mainform::FormMain> form;
  std::unique_ptr<qt::FormWindow> window;
};

TEST_F(Screens, HaveWhatTheirTablesSay) {
  expectScreen(*form);
  database.execute("delete from tblTarvoSystemParameters where ID = 311");
  database.execute("insert into tblTarvoSystemParameters (ID, Value) values (311, '1')");
  shell.offers = {Offer::History};
  start();
  form->View(idOf("9"));
  expectNext("FormPeriodBranch");
  form->cmdPeriodBranch.click();
  expectNext("FormCopyPeriodAccount");
  form->cmdCopyPeriod.click();
  expectNext("FormDeletePeriod");
  form->cmdDeletePeriod.click();
  expectNext("frmAutoCodding");
  form->mnuSameCoding.click();
  expectNext("frmAccountBatch");
  form->mnuAccountBatch.click();
  expectNext("FormHistory");
  form->mnuHistory.click();
  desktop.inModal("frmAccountRelClasses", [this](ui::Form& screen) {
    expectNext("frmAccountRelObjects");
    dynamic_cast<ui::PushButton&>(*screen.find("cmdSelectObjects")).click();
    expectScreen(screen);
  });
  form->cmdRelClasses.click();
  database.execute("update tblAccCostCenter set Name = Code");
  pactkit::CostCenters costCenters(shell);
  costCenters.open();
  expectScreen(costCenters);

  form->View(idOf("9"));
  form->cmdEdit.click();
  form->txtTitle.paste("نو");
  database.execute("update tblAccount set Title = 'او' where Code = '9'");
  expectNext("frmAccountDifferences");
  form->cmdSave.click();
}

TEST_F(Screens, EachEntryOfTheMenuDoesItsOwn) {
  std::string menu;
  const auto notes = [&menu](const char* what) {
    return [&menu, what] { menu += std::string(" -> ") + what; };
  };
  for (const char* name : {"frmAutoCodding", "frmAccountBatch"})
    desktop.inModal(name, [&, name](ui::Form&) { notes(name)(); });
  shell.components.add("PactKit.PactEditor", [&]() -> std::unique_ptr<shell::OutsideComponent> {
    notes("PactKit.PactEditor")();
    throw std::runtime_error("it was asked for");
  });
  form->View(idOf("9"));
  form->onClosed = notes("closes");
  form->cmdNew.onClick = notes("cmdNew");
  form->cmdEdit.onClick = notes("cmdEdit");
  form->cmdDelete.onClick = notes("cmdDelete");
  const std::function<void(const QWidget&, const std::string&)> read = [&](const QWidget& from,
                                                                           const std::string& indent) {
    for (QAction* action : from.actions()) {
      menu += indent + fromQt(action->objectName());
      if (!action->isSeparator()) menu += " «" + fromQt(action->text()) + "»";
      if (!action->isVisible() || !action->isEnabled()) menu += action->isVisible() ? " disabled" : " hidden";
      if (action->isChecked()) menu += " checked";
      menu += fromQt(action->shortcut().toString());
      action->trigger();
      if (!shell.hasDtEn()) shell.resetDataConnection();  // it was Exit
      menu += "\n";
      if (action->menu() != nullptr) read(*action->menu(), indent + " ");
    }
  };
  read(*window->findChild<QMenuBar*>(), "");
  expectTable("FormMain.menu", menu);
}

TEST_F(Screens, EachModeOffersWhatItNeeds) {
  std::map<std::string, std::string> reach;
  std::string modes;
  const auto look = [&](const std::string& mode) {
    modes += mode + " «" + form->lblMessage.caption() + "», ";
    const auto note = [&](const std::string& name, const std::string& words) {
      reach[name] += (words.empty() ? " usable" : words) + ",";
    };
    for (const ui::Control* control : form->controls())
      if (control->takesFocus()) note(control->name(), reachOf(*control, *window));
    for (const QAction* action : window->findChild<QMenuBar*>()->findChildren<QAction*>())
      note(fromQt(action->objectName()), action->isEnabled() ? "" : " disabled");
  };
  look("idle");
  for (const char* code : {"103010101", "9"}) {  // with an entity class and without
    form->View(idOf(code));
    look("view");
    form->cmdEdit.click();
    look("edit");
  }
  form->View(idOf("9"));
  form->cmdNew.click();
  look("new");
  EXPECT_TRUE(form->txtID.hasFocus());
  form->View(-1);
  look("idle");
  std::map<std::string, std::string> rows;
  for (const auto& [name, words] : reach) rows[words] += " " + name;
  for (const auto& [words, names] : rows) modes.append("\n").append(words).append(names);
  expectTable("FormMain.modes", modes);
}

/// The lines of a tree as painted: the colour of each folder, and whether it has the dark badge.
std::string folders(qt::FormWindow& window, const ui::Tree& tree) {
  window.resize(1400, 900);
  const QImage screen = painted(window);
  const auto& view = dynamic_cast<const QTreeView&>(*window.widgetOf(tree));
  const int side = view.iconSize().width();
  const int box =
      tree.checkBoxes() ? view.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &view) + 4 : 0;
  std::string lines;
  for (QModelIndex line = view.model()->index(0, 0); line.isValid(); line = view.indexBelow(line)) {
    const QRect item = view.visualRect(line);
    const QPoint corner =
        view.viewport()->mapTo(&window, QPoint(item.right() - side - box - 2, item.center().y() - side / 2));
    const QColor folder = screen.pixelColor(corner + QPoint(side / 4, side * 3 / 4));
    const auto dark = [&](int place) {
      return screen.pixelColor(corner + QPoint(side * 3 / 4, place)).lightness() < 80;
    };
    const char* colour = folder.red() < 128 ? "blue" : folder.green() < 128 ? "red" : "yellow";
    lines += folder.hsvSaturation() < 99 ? "none" : colour;
    lines += dark(side * 5 / 8) || dark(side * 9 / 16) ? "* " : " ";
  }
  return lines;
}

TEST_F(Screens, FoldersTellNatureAndStateByTheirColours) {
  EXPECT_TRUE(qt::folderIcon(0).isNull() && qt::folderIcon(7).isNull());
  const QImage drawn = qt::folderIcon(4).pixmap(32, 32).toImage().scaled(32, 32);
  for (const auto& [height, inked] : {std::pair{7, false}, {9, true}, {26, true}, {28, false}})
    EXPECT_EQ(drawn.pixelColor(6, height).alpha() > 128, inked) << height;
  const QImage faint = qt::folderIcon(4).pixmap(32, 32, QIcon::Disabled).toImage().scaled(32, 32);
  EXPECT_LT(faint.pixelColor(6, 20).alpha(), drawn.pixelColor(6, 20).alpha() * 3 / 4);
  const char* const groups = "red red yellow blue red* yellow* blue* red* yellow* blue* ";
  EXPECT_EQ(folders(*window, form->treeAccount), groups);
  form->treeAccount.click(form->treeAccount.children(form->treeAccount.roots().front())[2]);
  EXPECT_EQ(folders(*window, form->treeAccount), groups);
  form->optPeriodic.click();
  EXPECT_EQ(folders(*window, form->treeAccount), "red red red red red ") << "the root, and the periods";
  desktop.inModal("frmAccountRelObjects", [this](ui::Form& screen) {
    qt::FormWindow objects(screen, drawing);
    dynamic_cast<ui::DropDownList&>(*screen.find("cmbClass")).choose(0);
    EXPECT_EQ(folders(objects, dynamic_cast<ui::Tree&>(*screen.find("treeObjects"))),
              "yellow yellow yellow yellow yellow blue blue ");
    objects.detach();
  });
  entities::showRelObjects(shell, idOf("10105"));
}

}  // namespace
}  // namespace ledgertree::test
