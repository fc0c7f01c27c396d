#include "qt/form_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCursor>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableView>
#include <QTextEdit>
#include <QTimer>
#include <QToolTip>

#include "qt/appearance.h"
#include "screen.h"

namespace ledgertree::test {
namespace {

TEST(FormWindow, APersonTypesThroughTheFilterAndTheCaretStaysWhereItIs) {
  Screen screen;
  auto& form = *screen.form;
  form.txtCode.onKeyPress = [&form](ui::KeyPress& key) {
    if (key.character == U'x') key.character = 0;
    if (key.character == U'-') key.character = U'/';
    if (key.character == ui::kBackspaceCharacter && form.txtCode.text() == "1//") key.character = 0;
  };
  form.txtCode.onChange = [&] { form.said.push_back("change " + form.txtCode.text()); };
  form.txtCode.onKeyUp = [&] { form.said.push_back("up " + std::to_string(form.txtCode.caret())); };
  screen.show();
  form.txtCode.focus();
  screen.go("typing through a filter");
  // What a program sets keeps its length; what a user enters stops at the limit, pasted text included.
  QApplication::clipboard()->setText(QString::fromUtf8("۱\nABCDEFGHIJKLMNOP"));
  screen.go("a field of twenty characters");
  form.txtCode.onKeyUp = [&] { form.txtCode.setText("1/000/001"); };
  screen.go("a handler that rewrites the text has the last word");
  screen.go("typing into a locked field");
}

TEST(FormWindow, NotesOfSeveralLinesKeepEveryCharacter) {
  Screen screen;
  auto& form = *screen.form;
  form.txtNotes.setMaximumLength(12);
  form.txtNotes.setText("سطر يك\r\nدو\u00A0سه");
  screen.show();
  form.txtNotes.focus();
  form.txtNotes.setCaret(0);
  QApplication::clipboard()->setText(QString::fromUtf8("0123456\r\n89𝟘𝟙XYZ"));
  screen.go("notes of twelve characters");
}

TEST(FormWindow, ButtonsListsAndGridsDoWhatTheirControlsSay) {
  Screen screen;
  auto& form = *screen.form;
  // The form may overrule the user: the screen shows what the control holds.
  form.lstPeriod.onSelect = [&] {
    form.said.push_back(form.lstPeriod.selectedText());
    if (form.lstPeriod.selected() == 2) form.lstPeriod.select(0);
  };
  form.chkDeep.onClick = [&] { form.chkDeep.setValue(0); };
  screen.show();
  screen.go("more notes than there is room for");
  screen.go("one of two");
  form.optAll.setValue(true);
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(&screen.widget(form.optAll))->state().checked)
      << "to a screen reader";

  QTest::mouseClick(&screen.widget(form.chkDeep), Qt::LeftButton, {},
                    QPoint(screen.widget(form.chkDeep).width() - 8, 8));
  screen.go("a drop-down list");
  form.lstPeriod.removeItem(1);
  EXPECT_EQ(screen.widget<QComboBox>(form.lstPeriod).itemText(1), QStringLiteral("1404"));

  auto& table = screen.widget<QTableView>(form.grid);
  const auto cell = [&](int row) { return table.visualRect(table.model()->index(row, 1)).center(); };
  EXPECT_TRUE(table.isColumnHidden(0));
  EXPECT_EQ(table.horizontalHeader()->length(), table.viewport()->width())
      << "the last column takes the rest";
  ui::Bounds tall = form.grid.bounds();
  tall.height = 3000;  // high enough for all rows
  form.grid.setBounds(tall);
  screen.go("lists and grids");
  QTest::mouseClick(screen.widget<QListView>(form.lstBranches).viewport(), Qt::RightButton, {}, {9, 9});
  EXPECT_EQ(screen.seen(form.lstBranches), "1");
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::ShiftModifier, cell(3));
  QTest::mousePress(table.viewport(), Qt::LeftButton, {}, cell(1));
  QMouseEvent drawn(QEvent::MouseMove, cell(2), table.viewport()->mapToGlobal(cell(2)), Qt::NoButton,
                    Qt::LeftButton, Qt::NoModifier);
  for (int time = 0; time < 3; ++time) QApplication::sendEvent(table.viewport(), &drawn);
  EXPECT_EQ(form.said, (std::vector<std::string>{"3..1", "1..1", "2..1"}));
  EXPECT_EQ(screen.seen(form.grid), "1 2");
  form.grid.clearRows();
  EXPECT_EQ(table.model()->rowCount(), 0);
  form.grid.addRow({"9", "كلاس <b>9", "2"});
  EXPECT_EQ(table.model()->index(0, 1).data().toString(), QString::fromUtf8("كلاس <b>9"));
  EXPECT_EQ(table.model()->index(0, 1).data(Qt::ToolTipRole).toString(),
            QString::fromUtf8("<span>كلاس &lt;b&gt;9</span>"));
  EXPECT_TRUE(table.selectionModel()->isRowSelected(0));
  EXPECT_EQ(table.currentIndex().column(), 1) << "the first one is hidden";
  EXPECT_EQ(qt::literalTip(QString(501, 'x')), "<span>" + QString(500, 'x') + "...</span>");
}

TEST(FormWindow, WhatIsOutOfReachTakesNothing) {
  Screen screen;
  auto& form = *screen.form;
  form.record.setEnabled(false);
  form.views.setVisible(false);
  form.cmdSave.setEnabled(false);
  screen.show();
  screen.go("out of reach");
  EXPECT_FALSE(form.sltParent.listOpen());
  form.record.setEnabled(true);
  screen.go("within reach");
}

TEST(FormWindow, EveryCommandHasAKeyAndEveryLabelItsField) {
  Screen screen;
  auto& form = *screen.form;
  form.setDefaultButton(form.cmdNew);
  screen.show();
  screen.go("the keys of commands");
  // A new hint appears in the tooltip that is being waited for, and in no other.
  QWidget& exit = screen.widget(form.cmdExit);
  exit.setAttribute(Qt::WA_UnderMouse);
  form.cmdExit.setHint("a");
  EXPECT_FALSE(QToolTip::isVisible());
  QToolTip::showText({9, 9}, "...", &exit);
  form.cmdExit.setHint("b");
  EXPECT_TRUE(QToolTip::text().contains("b"));
  QToolTip::hideText();
  for (const QKeyCombination key :
       {QKeyCombination(Qt::Key_Return), Qt::CTRL | Qt::Key_S, QKeyCombination(Qt::Key_Escape)}) {
    QKeyEvent held(QEvent::KeyPress, key.key(), key.keyboardModifiers(), "", true);
    QApplication::sendEvent(&screen.widget(form.cmdExit), &held);
  }
  EXPECT_TRUE(form.said.empty()) << "a key that is held down presses once";
  EXPECT_EQ(screen.widget<QLabel>(form.lblCode).buddy(), &screen.widget(form.txtCode));
  // A command here is also kept from a host's window, which may have the same one.
  form.addShortcut(ui::KeyChord::of(ui::Key::F5), [] {});
  for (const auto& [key, own] : {std::pair(QKeyCombination(Qt::Key_F5), true),
                                 {Qt::CTRL | Qt::Key_S, true},
                                 {Qt::Key_F6, false},
                                 {Qt::CTRL | Qt::Key_K, false}}) {
    QKeyEvent asked(QEvent::ShortcutOverride, key.key(), key.keyboardModifiers());
    asked.ignore();
    QApplication::sendEvent(&screen.widget(form.cmdExit), &asked);
    EXPECT_EQ(asked.isAccepted(), own) << key.toCombined();
  }
}

TEST(FormWindow, TheFormHasTheRoomThatItsWindowShows) {
  Screen screen;
  auto& form = *screen.form;
  screen.show();
  auto& window = screen.window();
  const auto& scroll = *window.findChild<QScrollArea*>();
  const qt::Scale scale(window.font());
  const QSize design = scale.pixels(form.designSize());
  const QSize whole = design + QSize(0, window.height() - scroll.height());
  EXPECT_FALSE(scroll.horizontalScrollBar()->isVisible() && scroll.verticalScrollBar()->isVisible())
      << "the bar of a screen that is too small calls for no second one";
  for (const QSize change :
       {QSize(0, 0), {300, 200}, {-300, -200}, {-20, 20}, {20, -20}, {-20, 5}, {5, -20}}) {
    window.resize(whole + change);
    Screen::settle();
    const QSize shown = scroll.viewport()->size();
    const ui::Size room = scale.twips(shown);
    EXPECT_EQ(form.size().width, shown.width() <= design.width() ? form.designSize().width : room.width);
    EXPECT_EQ(form.size().height, shown.height() <= design.height() ? form.designSize().height : room.height);
    EXPECT_EQ(scroll.horizontalScrollBar()->isVisible(), design.width() > shown.width());
    EXPECT_EQ(scroll.verticalScrollBar()->isVisible(), design.height() > shown.height());
  }
  // What a program puts outside can be scrolled to, as long as it is visible.
  window.resize(whole);
  form.views.setBounds({20000, 9000, 300, 300});
  Screen::settle();
  EXPECT_EQ(scroll.widget()->size(), scale.pixels(ui::Size{20300, 9300}));
  form.views.setVisible(false);
  Screen::settle();
  EXPECT_EQ(scroll.widget()->size(), design);
}

TEST(FormWindow, TheWindowFollowsTheFocusFromFieldToField) {
  Screen screen;
  screen.show();
  const auto& ground = *screen.window().findChild<QScrollArea*>()->viewport();
  for (const QSize size : {QSize(300, 220), {700, 130}, {130, 600}}) {
    screen.window().resize(size);
    for (int step = 0; step < 40; ++step) {
      QTest::keyClick(QApplication::focusWidget(), step < 20 ? Qt::Key_Tab : Qt::Key_Backtab);
      Screen::settle();
      const QWidget& at = *QApplication::focusWidget();
      // Of a control larger than the window, its beginning.
      QRect place(at.mapTo(&ground, QPoint(0, 0)), at.size());
      place.setLeft(std::max(place.left(), place.right() - ground.width() + 1));
      place.setHeight(std::min(place.height(), ground.height()));
      EXPECT_TRUE(ground.rect().contains(place)) << at.objectName().toStdString() << step;
    }
  }
}

TEST(FormWindow, MenusShowWhatTheirEntriesSay) {
  Screen screen;
  auto& form = *screen.form;
  screen.show();
  const auto action = [&](const char* name) { return screen.entry(name, form); };
  action("mnuMark")->trigger();
  EXPECT_TRUE(action("mnuMark")->isChecked()) << "the entry says whether it is marked";
  form.mnuNew.setEnabled(false);
  EXPECT_FALSE(action("mnuNew")->isEnabled());
  form.mnuMark.setChecked(false);
  form.mnuHidden.setVisible(true);
  EXPECT_FALSE(action("mnuMark")->isChecked());
  EXPECT_TRUE(action("mnuHidden")->isVisible());

  screen.desktop.popUpMenu(form, form.mnuFile, form.tree.bounds().left, form.tree.bounds().top);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->geometry().topLeft(), screen.widget(form.tree).mapToGlobal(QPoint(0, 0)));
  QTest::keyClick(menu, Qt::Key_Escape);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  Screen::settle();
  EXPECT_TRUE(screen.window().findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly).empty())
      << "it is gone";
}

}  // namespace
}  // namespace ledgertree::test
