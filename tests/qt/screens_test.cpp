#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QTableView>
#include <QToolButton>
#include <QTreeView>
#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "entities/rel_objects.h"
#include "mainform/form_main.h"
#include "qt/reading_order.h"
#include "qt/text_view.h"
#include "screen.h"
#include "support/test_house.h"

namespace ledgertree::test {
namespace {

using qt::fromQt;

/// What a person finds of a control, told by the widget that draws it: " hidden disabled locked".
std::string reachOf(const ui::Control& control, const qt::FormWindow& window) {
  const QWidget& widget = *window.widgetOf(control);
  const auto* date = dynamic_cast<const shell::DateField*>(&control);
  std::string words = widget.isVisibleTo(&window) ? "" : " hidden";
  if (!widget.isEnabledTo(&window)) words += " disabled";
  if (date != nullptr ? date->locked() : widget.property("readOnly").toBool()) words += " locked";
  return words;
}

/// A whole screen in words, as its widgets show it: the form, then a control a line as the eye meets them,
/// the content of a frame indented below it:
///
///     kind name «caption» (spoken name, where it is another) [tooltip] what else is fixed
///     @left,top,width,height
///
/// "persian" says that the focus chooses the host's keyboard layout, which `layouts` tells; "x" and "y" that
/// the control moves with the edge of a larger form, "w" and "h" that it grows with it.
class Description {
 public:
  Description(ui::Form& form, std::vector<std::string>& layouts)
      : form_(form), layouts_(layouts), window_(form, desktop_) {
    window_.resize(2000, 1500);
    head_ = head();
    block(nullptr, "");
    followTabs();
    listenToFocus();
    enlarge();
    head_ += pressed(ui::Key::Enter, " enter=") + pressed(ui::Key::Escape, " escape=");
  }
  ~Description() { window_.detach(); }

  [[nodiscard]] std::string text() const {
    std::string text = head_ + "\n";
    for (const Line& line : lines_) text += line.text + "\n";
    return text;
  }

 private:
  struct Line {
    ui::Control& control;
    ui::Bounds before;
    std::string text;
  };

  [[nodiscard]] std::string head() {
    const auto size = form_.designSize();
    const QColor ground = window_.grab().toImage().pixelColor(1, window_.height() - 2);
    std::string text = form_.name() + " «" + fromQt(window_.windowTitle()) + "» " +
                       std::to_string(size.width) + "x" + std::to_string(size.height) + " " +
                       fromQt(ground.name()) + " " + fromQt(window_.font().families().value(0));
    if (form_.resizable()) text += " resizable";
    if (form_.wantsMaximised()) text += " maximised";
    for (const ui::Timer* timer : form_.timers())
      text += " " + timer->name() + "=" + std::to_string(timer->interval().count());
    return form_.firstFocus() == nullptr ? text : text + " focus=" + form_.firstFocus()->name();
  }

  void block(const ui::Frame* frame, const std::string& indent) {
    std::vector<ui::Control*> inside;
    std::vector<QRect> places;
    for (ui::Control* control : form_.controls()) {
      if (control->frame() != frame) continue;
      const ui::Bounds& place = control->bounds();
      inside.push_back(control);
      places.emplace_back(place.left, place.top, place.width, place.height);
    }
    for (const std::size_t at : qt::readingOrder(places)) {
      lines_.push_back({*inside[at], inside[at]->bounds(), indent + lineOf(*inside[at])});
      if (const auto* inner = dynamic_cast<const ui::Frame*>(inside[at])) block(inner, indent + " ");
    }
  }

  [[nodiscard]] std::string lineOf(const ui::Control& control) const {
    const QWidget& widget = *window_.widgetOf(control);
    const bool whole = fromQt(widget.objectName()) == control.name();
    const auto text = widget.property("text").isValid() ? widget.property("text") : widget.property("title");
    const std::string caption = fromQt(text.toString());
    const std::string spoken = fromQt(widget.accessibleName());
    QString tip = (whole ? widget : *widget.parentWidget()).toolTip().remove("<span>").remove("</span>");
    tip.remove(QChar(0x2066)).remove(QChar(0x2069));
    std::string line = std::string(widget.metaObject()->className() + 1) + " " + control.name();
    if (!caption.empty()) line += " «" + caption + "»";
    if (!spoken.empty() && spoken != caption) line += " (" + spoken + ")";
    if (!tip.isEmpty()) line += " [" + fromQt(tip) + "]";
    const ui::Bounds& b = control.bounds();
    return line + reachOf(control, window_) + detailsOf(control, widget) + " @" + std::to_string(b.left) +
           "," + std::to_string(b.top) + "," + std::to_string(b.width) + "," + std::to_string(b.height);
  }

  [[nodiscard]] static std::string detailsOf(const ui::Control& control, const QWidget& widget) {
    std::string words;
    const auto* line = dynamic_cast<const qt::LineEditor*>(&widget);
    const auto* field = dynamic_cast<const ui::TextField*>(&control);
    const auto* tree = dynamic_cast<const ui::Tree*>(&control);
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
    if (const auto* selector = dynamic_cast<const shell::Selector*>(&control))
      words += " view=" + selector->MajorView();
    if (const auto* list = qobject_cast<const QComboBox*>(&widget)) {
      for (int row = 0; row < list->count(); ++row)
        words += (row == list->currentIndex() ? " *" : " ") + fromQt(list->itemText(row));
    }
    if (const auto* grid = dynamic_cast<const ui::Grid*>(&control)) {
      for (int column = 0; column < static_cast<int>(grid->columns().size()); ++column) {
        const auto& table = dynamic_cast<const QTableView&>(widget);
        const int width = grid->columns()[static_cast<std::size_t>(column)].width;
        words += " " + fromQt(table.model()->headerData(column, Qt::Horizontal).toString()) + "=";
        words += table.isColumnHidden(column) ? "hidden" : std::to_string(width);
      }
    }
    return words;
  }

  /// The Tab key goes as the eye goes.
  void followTabs() {
    std::vector<QWidget*> wanted;
    std::vector<QWidget*> met;
    for (const Line& line : lines_)
      if (line.control.takesFocus()) wanted.push_back(window_.widgetOf(line.control));
    for (QWidget* at = window_.nextInFocusChain(); at != &window_; at = at->nextInFocusChain())
      if (std::find(wanted.begin(), wanted.end(), at) != wanted.end()) met.push_back(at);
    if (met != wanted) head_ += ", where the Tab key goes astray";
  }

  void listenToFocus() {
    for (Line& line : lines_) {
      layouts_.clear();
      form_.focusMoved(&line.control);
      for (const std::string& layout : layouts_)
        line.text += layout == "00000429" ? " persian" : " " + layout;
    }
    form_.focusMoved(nullptr);
  }

  void enlarge() {
    constexpr ui::Size kMore{1000, 2000};
    form_.resize({form_.designSize().width + kMore.width, form_.designSize().height + kMore.height});
    for (auto& [control, before, text] : lines_) {
      const auto tell = [&words = text](const char* word, int by, int whole) {
        if (by != 0) words += word + (by == whole ? "" : std::to_string(by));
      };
      tell(" x", control.bounds().left - before.left, kMore.width);
      tell(" y", control.bounds().top - before.top, kMore.height);
      tell(" w", control.bounds().width - before.width, kMore.width);
      tell(" h", control.bounds().height - before.height, kMore.height);
    }
  }

  /// The button that a key presses; it does nothing else any more.
  [[nodiscard]] std::string pressed(ui::Key key, const std::string& word) {
    std::string found;
    for (const Line& line : lines_) {
      if (auto* button = dynamic_cast<ui::PushButton*>(&line.control))
        button->onClick = [&found, word, button] { found = word + button->name(); };
    }
    form_.press(ui::KeyChord::of(key));
    return found;
  }

  ui::Form& form_;
  std::vector<std::string>& layouts_;
  qt::QtDesktop desktop_;
  qt::FormWindow window_;
  std::string head_;
  std::vector<Line> lines_;
};

/// A description is the table of that name, line by line.
void expectTable(const std::string& name, const std::string& description) {
  std::ofstream("/tmp/ts/" + name + ".txt") << description;  // DUMP
  std::ifstream table(LEDGERTREE_SOURCES "/tests/qt/screens/" + name + ".txt");
  std::istringstream screen(description);
  std::string wanted;
  std::string found;
  do {
    if (!std::getline(table, wanted)) wanted = "(the end)";
    if (!std::getline(screen, found)) found = "(the end)";
  } while (found == wanted && found != "(the end)");
  EXPECT_EQ(found, wanted) << name;
}

/// The screens as they open, on accounts of each nature, open and closed.
class Screens : public ::ledgertree::testing::TestHouse {
 protected:
  Screens() {
    database.execute(R"(
      insert into tblUser (ID, Name) values (1, 'حسابدار');
      insert into tblUserPermission (UserID, FormPermissionID) values
        (1, 301), (1, 30101), (1, 30102), (1, 30105), (1, 30108), (1, 30110), (1, 30111), (1, 30112);
      insert into tblAccountClass (ID, Code, Name, ViewMajor, ViewMinor) values
        (1, '01', 'اشخاص', 'vwEntityPerson', 'vwEntityPersonMinor');
      insert into tblAccountPeriod (ID, Name, BeginDate, EndDate, FarsiBeginDate, FarsiEndDate) values
        (5, '1403', '2024-03-20', '2025-03-20', '1403/01/01', '1403/12/30');
      insert into tblAccount (ID, Code, Title, AccountNatureID, IsClosed) values
        (1, '11', 'a', 0, 0), (2, '12', 'b', 1, 0), (3, '13', 'c', 2, 0),
        (4, '14', 'd', 0, 1), (5, '15', 'e', 1, 1), (6, '16', 'f', 2, 1);
      insert into tblAccountRelatedObjects (AccountID, RelatedClassID) values (1, 1))");
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
  void expectScreen(ui::Form& screen) {
    expectTable(screen.name(), Description(screen, desktop.layouts).text());
  }
  /// Looks at the screen that comes up next.
  void expectNext(const char* name) {
    desktop.inModal(name, [this](ui::Form& screen) { expectScreen(screen); });
  }

  qt::QtDesktop drawing;
  std::unique_ptr<mainform::FormMain> form;
  std::unique_ptr<qt::FormWindow> window;
};

TEST_F(Screens, HaveWhatTheirTablesSay) {
  expectScreen(*form);
  database.execute("insert into tblTarvoSystemParameters (ID, Value) values (311, '1')");
  start();
  form->View(1);
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
  desktop.inModal("frmAccountRelClasses", [this](ui::Form& screen) {
    expectNext("frmAccountRelObjects");
    dynamic_cast<ui::PushButton&>(*screen.find("cmdSelectObjects")).click();
    expectScreen(screen);
  });
  form->cmdRelClasses.click();
}

TEST_F(Screens, EachEntryOfTheMenuDoesItsOwn) {
  std::string done;
  const auto notes = [&done](const char* what) {
    return [&done, what] { done += std::string(" -> ") + what; };
  };
  for (const char* name : {"frmAutoCodding", "frmAccountBatch"})
    desktop.inModal(name, [&, name](ui::Form&) { notes(name)(); });
  shell.components.add("PactKit.PactEditor", [&]() -> std::unique_ptr<shell::OutsideComponent> {
    notes("PactKit.PactEditor")();
    throw std::runtime_error("it was asked for");
  });
  form->View(1);
  form->onClosed = notes("closes");
  form->cmdNew.onClick = notes("cmdNew");
  form->cmdEdit.onClick = notes("cmdEdit");
  form->cmdDelete.onClick = notes("cmdDelete");
  std::string menu;
  const std::function<void(const QList<QAction*>&, const std::string&)> describe = [&](const auto& actions,
                                                                                       const auto& indent) {
    for (QAction* action : actions) {
      menu += indent + action->objectName().toStdString();
      if (!action->isSeparator()) menu += " «" + action->text().toStdString() + "»";
      if (!action->isVisible() || !action->isEnabled()) menu += action->isVisible() ? " disabled" : " hidden";
      if (action->isChecked()) menu += " checked";
      done = action->shortcut().toString().toStdString();
      action->trigger();
      if (!shell.hasDtEn()) shell.resetDataConnection();  // it was the way out
      menu += done + "\n";
      if (action->menu() != nullptr) describe(action->menu()->actions(), indent + " ");
    }
  };
  describe(window->findChild<QMenuBar*>()->actions(), "");
  expectTable("FormMain.menu", menu);
}

TEST_F(Screens, EachModeOffersWhatItNeeds) {
  std::map<std::string, std::string> reach;
  std::string modes;
  const auto look = [&](const std::string& mode) {
    modes += mode + " «" + form->lblMessage.caption() + "», ";
    const auto note = [&](const QString& name, std::string words) {
      reach[name.toStdString()] += (words.empty() ? " usable" : words) + ",";
    };
    for (const ui::Control* control : form->controls())
      if (control->takesFocus()) note(QString::fromStdString(control->name()), reachOf(*control, *window));
    for (const QAction* action : window->findChild<QMenuBar*>()->findChildren<QAction*>())
      note(action->objectName(), action->isEnabled() ? "" : " disabled");
  };
  look("idle");
  form->View(1);
  look("view");
  form->cmdEdit.click();
  look("edit");
  notices.answer(1);
  form->cmdCancel.click();
  look("view");
  form->View(2);
  form->cmdEdit.click();
  look("edit, no class");
  form->View(2);
  form->cmdNew.click();
  look("new");
  EXPECT_TRUE(form->txtID.hasFocus());
  form->View(-1);
  look("idle");
  std::map<std::string, std::string> rows;
  for (const auto& [name, words] : reach) rows[words] += " " + name;
  for (const auto& [words, names] : rows) modes += "\n" + words + names;
  expectTable("FormMain.modes", modes);
}

/// The lines of a tree as they are painted: the colour of each folder, and whether it bears the dark badge.
std::string folders(qt::FormWindow& window, const ui::Tree& tree) {
  window.resize(1400, 900);
  const QImage screen = window.grab().toImage();
  const auto& view = dynamic_cast<const QTreeView&>(*window.widgetOf(tree));
  const int side = view.iconSize().width();
  const int box =
      tree.checkBoxes() ? view.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &view) + 4 : 0;
  std::string lines;
  for (QModelIndex line = view.model()->index(0, 0); line.isValid(); line = view.indexBelow(line)) {
    const QRect item = view.visualRect(line);
    const QPoint corner(item.right() - side - box - 2, item.center().y() - side / 2);
    const QImage icon = screen.copy(QRect(view.viewport()->mapTo(&window, corner), QSize(side, side)));
    const QColor folder = icon.pixelColor(side / 4, side * 3 / 4);
    const QColor badge = icon.pixelColor(side * 3 / 4, side * 5 / 8);
    lines += folder.hsvSaturation() < 99 ? "none"
             : folder.red() < 128        ? "blue"
             : folder.green() < 128      ? "red"
                                         : "yellow";
    lines += badge.lightness() < 80 ? "* " : " ";
  }
  return lines;
}

TEST_F(Screens, FoldersTellNatureAndStateByTheirColours) {
  EXPECT_EQ(folders(*window, form->treeAccount), "red red yellow blue red* yellow* blue* ");
  form->treeAccount.click(form->treeAccount.find("-1:3"));
  EXPECT_EQ(folders(*window, form->treeAccount), "red red yellow blue red* yellow* blue* ");
  form->optPeriodic.click();
  EXPECT_EQ(folders(*window, form->treeAccount), "red red ") << "the root, and a period";
  database.execute(
      "insert into tblEntityPerson (ID, Name) values (7, 'a'), (8, 'b');"
      "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence, IncludeAllObjects) values (1, 1, "
      "1, 0);"
      "insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) values (1, 1, 8)");
  desktop.inModal("frmAccountRelObjects", [this](ui::Form& screen) {
    qt::FormWindow objects(screen, drawing);
    dynamic_cast<ui::DropDownList&>(*screen.find("cmbClass")).choose(0);
    EXPECT_EQ(folders(objects, dynamic_cast<ui::Tree&>(*screen.find("treeObjects"))), "yellow yellow blue ");

    objects.detach();
  });
  entities::showRelObjects(shell, 1);
}

}  // namespace
}  // namespace ledgertree::test
