#include "screen.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTableView>
#include <QTextEdit>
#include <QTreeView>
#include <fstream>
#include <iterator>
#include <map>

#include "qt/tree_model.h"
#include "support/steps.h"
#include "support/text_table.h"

namespace ledgertree::test {

using qt::fromQt;

namespace {

/// Clicks the line of a text, or a point so far from its right end.
void clickAt(QWidget& widget, const QString& text, int beside = 0) {
  auto* view = qobject_cast<QAbstractItemView*>(&widget);
  if (view == nullptr) view = widget.findChild<QAbstractItemView*>();
  const QAbstractItemModel& model = *view->model();
  QModelIndexList lines;
  for (int column = 0; lines.empty() && column < model.columnCount(); ++column)
    lines =
        model.match(model.index(0, column), Qt::DisplayRole, text, 1, Qt::MatchExactly | Qt::MatchRecursive);
  ASSERT_FALSE(lines.empty()) << fromQt(text);
  view->scrollTo(lines[0]);
  const QRect line = view->visualRect(lines[0]);
  const int across = beside == 0 ? line.center().x() : line.right() + beside;
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, {across, line.center().y()});
}

/// What is in angle brackets and isn't a key.
const std::map<std::string, std::function<void(QWidget&, ui::Control&, const std::string&)>> kActs{
    {"click", [](auto& widget, auto&, auto&) { QTest::mouseClick(&widget, Qt::LeftButton); }},
    {"at", [](auto& widget, auto&, auto& text) { clickAt(widget, qt::toQt(text)); }},
    {"mark",
     [](auto& widget, auto&, auto& text) {
       clickAt(widget, qt::toQt(text), dynamic_cast<QTreeView&>(widget).indentation() / 2);
     }},
    {"head",
     [](auto& widget, auto&, auto&) {
       QTest::mouseClick(dynamic_cast<QTableView&>(widget).horizontalHeader()->viewport(), Qt::LeftButton);
     }},
    {"far", [](auto& widget, auto&, auto& text) { clickAt(widget, qt::toQt(text), 40); }},
    {"select",
     [](auto&, auto& control, auto& key) {
       auto& tree = dynamic_cast<ui::Tree&>(control);
       tree.select(tree.find(key));
     }},
    {"away",
     [](auto& widget, auto&, auto&) {
       QEvent left(QEvent::WindowDeactivate);
       QFocusEvent lost(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
       for (QEvent* event : {&left, static_cast<QEvent*>(&lost)}) QApplication::sendEvent(&widget, event);
     }},
    {"commit",
     [](auto& widget, auto&, auto& text) {
       QInputMethodEvent typed;
       typed.setCommitString(qt::toQt(text));
       QApplication::sendEvent(&widget, &typed);
     }},
    {"wait",
     [](auto&, auto& it, auto&) { EXPECT_TRUE(QTest::qWaitFor([&] { return it.withinReach(); }, 30000)); }},
    {"focus", [](auto&, auto& control, auto&) { control.focus(); }},
    {"down", [](auto& widget, auto&, auto& to) { widget.window()->move(90, std::stoi(to)); }},
    {"show", [](auto&, auto& control, auto& how) { control.setVisible(how == "on"); }},
    {"enable", [](auto&, auto& control, auto& how) { control.setEnabled(how == "on"); }},
    {"text", [](auto&, auto& control, auto& text) { dynamic_cast<ui::TextField&>(control).setText(text); }},
    {"caret", [](auto&, auto& control, auto& place) {
       dynamic_cast<ui::TextField&>(control).setCaret(std::stoul(place));
     }}};

void doAt(QWidget& widget, ui::Control& control, const QString& doing) {
  static const QRegularExpression token("<([^>]+)>|(.)");
  for (const auto& match : token.globalMatch(doing)) {
    const auto [name, about] = ::ledgertree::testing::cut(fromQt(match.captured(1)));
    const QString letter = match.captured(2);
    const auto chord = letter.isEmpty() ? QKeySequence(match.captured(1))[0]
                                        : QKeyCombination(static_cast<Qt::Key>(letter[0].unicode()));
    if (const auto known = kActs.find(name); known != kActs.end()) {
      known->second(widget, control, about);
    } else if (chord.key() >= 0x80 && chord.key() < Qt::Key_Escape) {
      QTest::sendKeyEvent(QTest::Click, &widget, chord.key(), letter, chord.keyboardModifiers());
    } else if (letter.isEmpty()) {
      QTest::keyClick(&widget, chord.key(), chord.keyboardModifiers());
    } else {
      QTest::keyClicks(&widget, letter);
    }
  }
}

/// The contents of a control: its widget's properties by name.
std::map<const char*, QVariant> heldBy(const ui::Control& control) {
  if (const auto* field = dynamic_cast<const ui::TextField*>(&control))
    return {{field->multiline() ? "plainText" : "text", qt::toQt(field->text()).replace(QChar::Nbsp, ' ')},
            {"readOnly", field->locked()}};
  if (const auto* field = dynamic_cast<const ui::LookupField*>(&control))
    return {{"text", qt::toQt(field->text())}, {"readOnly", !field->isActive()}};
  if (const auto* radio = dynamic_cast<const ui::RadioButton*>(&control))
    return {{"checked", radio->value()}};
  if (const auto* box = dynamic_cast<const ui::CheckBox*>(&control)) return {{"checked", box->value() == 1}};
  if (const auto* list = dynamic_cast<const ui::DropDownList*>(&control))
    return {{"currentIndex", list->selected()}, {"count", static_cast<int>(list->items().size())}};
  return {};
}

/// The row of a list or grid, or the node of a tree.
void expectPicked(const ui::Control& control, const QAbstractItemView& view) {
  const QModelIndex at = view.currentIndex();
  if (const auto* tree = dynamic_cast<const ui::Tree*>(&control)) {
    EXPECT_EQ(qt::TreeModel::nodeOf(at), tree->selected());
    EXPECT_EQ(view.selectionModel()->hasSelection(), at.isValid());
    const auto& lines = dynamic_cast<const QTreeView&>(view);
    for (QModelIndex line = view.model()->index(0, 0); line.isValid(); line = lines.indexBelow(line))
      EXPECT_EQ(lines.isExpanded(line), tree->expanded(qt::TreeModel::nodeOf(line)));
  }
  const auto* list = dynamic_cast<const ui::ListBox*>(&control);
  const auto* grid = dynamic_cast<const ui::Grid*>(&control);
  EXPECT_TRUE(list == nullptr || at.row() == list->selected());
  EXPECT_TRUE(grid == nullptr || at.row() == grid->currentRow());
}

std::string linesOf(const QTreeView& view) {
  std::string lines;
  for (QModelIndex line = view.model()->index(0, 0); line.isValid(); line = view.indexBelow(line)) {
    const std::string text = fromQt(line.data().toString());
    lines += (lines.empty() ? "" : " ") + (line == view.currentIndex() ? "[" + text + "]" : text);
  }
  return lines;
}

std::string languageOf(const QWidget& editor) {
  const auto* tag = editor.findChild<QLabel*>();
  return tag != nullptr && tag->isVisible() ? fromQt(tag->text()) + ": " : "";
}

std::string lineOf(const QLineEdit& line) {
  const auto* list = line.findChild<QTreeView*>();
  QString text = line.text();
  text.insert(line.cursorPosition(), '^');
  std::string seen = languageOf(line) + fromQt(text);
  if (list == nullptr || !list->isVisible()) return seen;
  const std::string picked = fromQt(list->currentIndex().data().toString());
  const QRect field(line.mapToGlobal(QPoint(0, 0)), line.size());
  const QRect& open = list->window()->geometry();
  const bool whole = list->verticalScrollBar()->isVisible() == (list->model()->rowCount() > 10);
  const bool below = open.top() == field.bottom() + 1;
  const bool beside = open.right() == field.right() || open.left() == line.screen()->geometry().left();
  const bool near = beside && (below || open.bottom() == field.top() - 1);
  seen += !near || !whole ? " ? " : below ? " / " : " \\ ";
  return seen + std::to_string(list->model()->rowCount()) + " [" + picked + "]";
}

}  // namespace

void Desk::go(ui::Form& form, const std::string& section, const std::function<std::string()>& told) const {
  ui::Control* at = nullptr;
  const ui::Control* before = nullptr;
  ::ledgertree::testing::walk(
      "qt/steps.txt", section,
      [&](const std::string& step) {
        at = form.find(::ledgertree::testing::cut(step).first);
        before = form.focused();
        act(form, step);
        const auto* field = dynamic_cast<const ui::LookupField*>(at);
        EXPECT_TRUE(field == nullptr || QTest::qWaitFor([&] { return !field->searching(); }, 30000));
        settle();
      },
      [&] {
        expectShown(form);
        const ui::Control* focused = form.focused();
        if (focused == before || focused == nullptr) return seen(*at);
        return ::ledgertree::testing::trimmed(seen(*at) + " -> " + focused->name());
      },
      told);
}

void Desk::expectShown(const ui::Form& form) const {
  for (const ui::Control* control : form.controls()) {
    SCOPED_TRACE(control->name());
    const QWidget& drawn = widget(*control);
    EXPECT_EQ(drawn.isVisible(), control->shown());
    EXPECT_EQ(drawn.isVisible() && drawn.isEnabled(), control->withinReach());
    for (const auto& [name, value] : heldBy(*control)) EXPECT_EQ(drawn.property(name), value) << name;
    const auto* view = qobject_cast<const QAbstractItemView*>(&drawn);
    if (view != nullptr) expectPicked(*control, *view);
    if (control != form.focused() || !drawn.isActiveWindow()) continue;
    EXPECT_EQ(QApplication::focusWidget(), &drawn);
    const auto* editor = qobject_cast<const QTextEdit*>(&drawn);
    const bool tree = dynamic_cast<const ui::Tree*>(control) != nullptr;  // may be below a closed one
    const bool picked = view != nullptr && view->currentIndex().isValid();
    const auto* area = qobject_cast<const QAbstractScrollArea*>(&drawn);
    if (picked || editor != nullptr) {
      const QRect at = picked ? view->visualRect(view->currentIndex()) : editor->cursorRect();
      EXPECT_TRUE(area->viewport()->rect().contains(at.center()) || (tree && at.isEmpty()));
    }
    // The language is shown where it doesn't cover the scroll bar.
    const auto* tag = drawn.findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    EXPECT_TRUE(editor == nullptr || tag->isHidden() ||
                !tag->geometry().intersects(editor->verticalScrollBar()->parentWidget()->geometry()));
  }
}

void Desk::act(ui::Form& form, const std::string& step) const {
  const auto [name, doing] = ::ledgertree::testing::cut(step);
  ui::Control& control = *form.find(name);
  doAt(widget(control), control, qt::toQt(doing));
}

void Screen::go(const std::string& section) {
  Desk::go(*form, section, [&] {
    std::string all;
    for (const std::string& one : std::exchange(form->said, {})) all += one + "; ";
    return all;
  });
}

std::string Desk::seen(const ui::Control& control) const {
  const QWidget& drawn = widget(control);
  if (const auto* line = qobject_cast<const QLineEdit*>(&drawn)) return lineOf(*line);
  if (const auto* editor = qobject_cast<const QTextEdit*>(&drawn)) {
    QString text = qt::toQt(dynamic_cast<const ui::TextField&>(control).text());
    text.insert(editor->textCursor().position(), '^');
    return languageOf(drawn) + fromQt(text.replace('\n', "//").replace(QChar::Nbsp, '~'));
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&drawn))
    return button->isCheckable() ? (button->isChecked() ? "on" : "off") : fromQt(button->text());
  if (const auto* combo = qobject_cast<const QComboBox*>(&drawn))
    return fromQt("[" + combo->currentText() + "]");
  if (const auto* tree = qobject_cast<const QTreeView*>(&drawn)) return linesOf(*tree);
  if (const auto* label = qobject_cast<const QLabel*>(&drawn)) return fromQt(label->text());
  const auto* view = qobject_cast<const QAbstractItemView*>(&drawn);
  std::string rows;
  if (view == nullptr) return rows;
  for (const QModelIndex& row : view->selectionModel()->selectedRows(view->model()->columnCount() - 1))
    rows += (rows.empty() ? "" : " ") + std::to_string(row.row());
  return rows;
}

QImage painted(QWidget& widget, QRect part) {
  if (part.isEmpty()) part = widget.rect();
  return widget.grab(part).toImage().scaled(part.size());
}

QRect ink(const QImage& picture, const QRect& part) {
  QRegion found;
  for (int y = part.top(); y <= part.bottom(); ++y)
    for (int x = part.left(); x <= part.right(); ++x)
      if (picture.pixel(x, y) != picture.pixel(0, 0)) found += QRect(x, y, 1, 1);
  return found.boundingRect();
}

void expectTable(const std::string& name, const std::string& description) {
  std::ifstream table(LEDGERTREE_SOURCES "/tests/qt/screens/" + name + ".txt");
  EXPECT_EQ(description, std::string(std::istreambuf_iterator<char>(table), {})) << name;
}

Screen::Form::Form(ui::Surroundings surroundings)
    : ui::Form(std::move(surroundings), "FormTest", "سرفصل حسابها", {13620, 4560}) {
  setResizable(true);
  txtCode.setMaximumLength(20);
  txtCode.setLeftToRight(true);
  txtCode.setLatinDigits(true);
  txtMother.setLeftToRight(true);
  txtMother.setLocked(true);
  txtNotes.setMultiline(true);
  lblNotes.setWraps(true);
  lblNotes.setStrong(true);
  cmdSave.setShortcut(ui::KeyChord::ctrlAnd('S'));
  addShortcut(ui::KeyChord::ctrlAnd('F'), [this] { sltParent.focus(); });
  setCancelButton(cmdExit);
  for (int id = 1; id <= 60; ++id)
    sltParent.all.push_back({id, "حساب " + std::to_string(id), std::to_string(1000 + id)});
  addMenu(mnuFile.add(mnuNew).add(mnuMark).add(mnuHidden));
  for (const char* period : {"1402", "1403", "1404"}) lstPeriod.addItem(period);
  for (const char* branch : {"مركزي", "شيراز", "تبريز"}) lstBranches.addItem(branch);
  for (ui::PushButton* button : {&cmdNew, &cmdSave, &cmdExit}) button->onClick = saying(*button);
  for (ui::RadioButton* button : {&optAll, &optPeriodic}) button->onClick = saying(*button);
  lstPeriod.onSelect = [this] { said.push_back(lstPeriod.selectedText()); };
  grid.onSelectionChange = [this] {
    said.push_back(std::to_string(grid.currentRow()) + ".." + std::to_string(grid.selectionEnd()));
  };
  grid.setColumns({{"شناسه", 0}, {"كلاس", 3000}, {"سطح", 900}});
  for (int row = 1; row <= 8; ++row) grid.addRow({std::to_string(row), "كلاس " + std::to_string(row), "1"});
}

}  // namespace ledgertree::test
