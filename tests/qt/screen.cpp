#include "screen.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QRegularExpression>
#include <QTableView>
#include <QTextEdit>
#include <QTreeView>

#include "qt/tree_model.h"
#include "support/steps.h"

namespace ledgertree::test {

using qt::fromQt;

namespace {

void doAt(QWidget& widget, const QString& doing) {
  static const QRegularExpression token("<([^>]+)>|(.)");
  for (const auto& match : token.globalMatch(doing)) {
    const QString key = match.captured(1);
    const QString letter = match.captured(2);
    if (key == "click") {
      QTest::mouseClick(&widget, Qt::LeftButton);
    } else if (!key.isEmpty()) {
      const QKeyCombination chord = QKeySequence(key)[0];
      QTest::keyClick(&widget, chord.key(), chord.keyboardModifiers());
    } else if (letter[0].unicode() < 0x80) {
      QTest::keyClicks(&widget, letter);
    } else {
      QTest::sendKeyEvent(QTest::Click, &widget, static_cast<Qt::Key>(letter[0].unicode()), letter, {});
    }
  }
}

std::string linesOf(const QTreeView& view) {
  std::string lines;
  for (QModelIndex line = view.model()->index(0, 0); line.isValid(); line = view.indexBelow(line)) {
    const std::string text = fromQt(line.data().toString());
    lines += (lines.empty() ? "" : " ") + (line == view.currentIndex() ? "[" + text + "]" : text);
  }
  return lines;
}

std::string lineOf(const QLineEdit& line) {
  const auto* tag = line.findChild<QLabel*>();
  const auto* list = line.findChild<QTreeView*>();
  QString text = line.text();
  text.insert(line.cursorPosition(), '^');
  std::string seen = tag != nullptr && tag->isVisible() ? fromQt(tag->text()) + ": " : "";
  seen += fromQt(text);
  if (list == nullptr || !list->isVisible()) return seen;
  const std::string picked = fromQt(list->currentIndex().data().toString());
  return seen + " / " + std::to_string(list->model()->rowCount()) + " [" + picked + "]";
}

}  // namespace

void Screen::go(const std::string& section) {
  const ui::Control* at = nullptr;
  ::ledgertree::testing::walk(
      "qt/steps.txt", section,
      [&](const std::string& step) {
        const std::size_t end = step.find(' ');
        at = form->find(step.substr(0, end));
        doAt(widget(*at), qt::toQt(step.substr(end + 1)));
      },
      [&] {
        if (const auto* field = dynamic_cast<const ui::TextField*>(at)) {
          const QVariant shown = widget(*at).property(field->multiline() ? "plainText" : "text");
          EXPECT_EQ(qt::toQt(field->text()).replace(QChar::Nbsp, ' '), shown.toString());
        }
        return seen(*at);
      },
      [&] {
        std::string all;
        for (const std::string& one : std::exchange(form->said, {})) all += one + "; ";
        return all;
      });
}

std::string Screen::seen(const ui::Control& control) const {
  const QWidget& drawn = widget(control);
  if (const auto* line = qobject_cast<const QLineEdit*>(&drawn)) return lineOf(*line);
  if (const auto* editor = qobject_cast<const QTextEdit*>(&drawn)) {
    QString text = qt::toQt(dynamic_cast<const ui::TextField&>(control).text());
    text.insert(editor->textCursor().position(), '^');
    return fromQt(text.replace('\n', "//").replace(QChar::Nbsp, '~'));
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&drawn))
    return button->isCheckable() ? (button->isChecked() ? "on" : "off") : fromQt(button->text());
  if (const auto* combo = qobject_cast<const QComboBox*>(&drawn))
    return fromQt("[" + combo->currentText() + "]");
  if (const auto* tree = qobject_cast<const QTreeView*>(&drawn)) return linesOf(*tree);
  const auto& view = dynamic_cast<const QAbstractItemView&>(drawn);
  std::string rows;
  for (const QModelIndex& row : view.selectionModel()->selectedRows(view.model()->columnCount() - 1))
    rows += (rows.empty() ? "" : " ") + std::to_string(row.row());
  return rows;
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
  lblMessage.setStrong(true);
  cmdSave.setShortcut(ui::KeyChord::ctrlAnd('S'));
  cmdSave.setHint("ثبت حساب");
  addShortcut(ui::KeyChord::ctrlAnd('F'), [this] { sltParent.focus(); });
  setCancelButton(cmdExit);
  for (int id = 1; id <= 60; ++id)
    sltParent.all.push_back({id, "حساب " + std::to_string(id), std::to_string(1000 + id)});
  addMenu(mnuFile.add(mnuNew).add(mnuLine).add(mnuMark).add(mnuHidden));
  for (const char* period : {"1402", "1403", "1404"}) lstPeriod.addItem(period);
  for (const char* branch : {"مركزي", "شيراز", "تبريز"}) lstBranches.addItem(branch);
  grid.setColumns({{"شناسه", 0}, {"كلاس", 3000}, {"سطح", 900}});
  for (int row = 1; row <= 8; ++row) grid.addRow({std::to_string(row), "كلاس " + std::to_string(row), "1"});
}

}  // namespace ledgertree::test
