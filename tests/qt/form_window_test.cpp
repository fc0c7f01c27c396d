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

#include "screen.h"

namespace ledgertree::test {
namespace {

TEST(FormWindow, APersonTypesThroughTheFilterAndTheCaretStaysWhereItIs) {
  Screen screen;
  auto& form = *screen.form;
  form.txtCode.onKeyPress = [](ui::KeyPress& key) {
    if (key.character == U'x') key.character = 0;
    if (key.character == U'-') key.character = U'/';
  };
  form.txtCode.onChange = [&] { form.said.push_back("change " + form.txtCode.text()); };
  form.txtCode.onKeyUp = [&] { form.said.push_back("up " + std::to_string(form.txtCode.caret())); };
  screen.show();
  form.txtCode.focus();
  screen.go("typing through a filter");
  // What a program puts in keeps its length; what a person puts in stops at the limit, a paste included.
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
  // The form may overrule what the person did: the screen shows what the control holds.
  form.chkDeep.onClick = [&] { form.chkDeep.setValue(0); };
  screen.show();
  EXPECT_EQ(screen.seen(form.optAll) + screen.seen(form.optPeriodic), "offoff");
  screen.go("one of two");
  form.optAll.setValue(true);
  EXPECT_EQ(screen.seen(form.optAll) + screen.seen(form.optPeriodic), "onoff");
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(&screen.widget(form.optAll))->state().checked)
      << "to a screen reader";

  QTest::mouseClick(&screen.widget(form.chkDeep), Qt::LeftButton, {},
                    QPoint(screen.widget(form.chkDeep).width() - 8, 8));
  EXPECT_FALSE(screen.widget<QCheckBox>(form.chkDeep).isChecked());

  EXPECT_EQ(screen.seen(form.lstPeriod), "[]") << "nothing is selected until somebody selects";
  screen.go("a drop-down list");
  form.lstPeriod.removeItem(1);
  EXPECT_EQ(screen.seen(form.lstPeriod), "[]");
  EXPECT_EQ(screen.widget<QComboBox>(form.lstPeriod).count(), 2);
  EXPECT_EQ(screen.widget<QComboBox>(form.lstPeriod).itemText(1), QStringLiteral("1404"));

  auto& table = screen.widget<QTableView>(form.grid);
  const auto cell = [&](int row) { return table.visualRect(table.model()->index(row, 1)).center(); };
  EXPECT_TRUE(table.isColumnHidden(0));
  EXPECT_EQ(table.horizontalHeader()->length(), table.viewport()->width())
      << "the last column takes the rest";
  ui::Bounds tall = form.grid.bounds();
  tall.height = 3000;  // for all rows
  form.grid.setBounds(tall);
  screen.go("lists and grids");
  QTest::mouseClick(screen.widget<QListView>(form.lstBranches).viewport(), Qt::RightButton, {}, {9, 9});
  EXPECT_EQ(screen.seen(form.lstBranches), "1");
  QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::ShiftModifier, cell(3));
  QTest::mousePress(table.viewport(), Qt::LeftButton, {}, cell(1));
  QMouseEvent drawn(QEvent::MouseMove, cell(2), table.viewport()->mapToGlobal(cell(2)), Qt::NoButton,
                    Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(table.viewport(), &drawn);
  EXPECT_EQ(form.said, (std::vector<std::string>{"3..1", "1..1", "2..1"}));
  EXPECT_EQ(screen.seen(form.grid), "1 2");
  form.grid.clearRows();
  EXPECT_EQ(table.model()->rowCount(), 0);
  form.grid.addRow({"9", "كلاس <b>9", "2"});
  EXPECT_EQ(table.model()->index(0, 1).data().toString(), QString::fromUtf8("كلاس <b>9"));
  EXPECT_EQ(table.model()->index(0, 1).data(Qt::ToolTipRole).toString(),
            QString::fromUtf8("<span>كلاس &lt;b&gt;9</span>"));
  EXPECT_TRUE(table.selectionModel()->isRowSelected(0));
}

TEST(FormWindow, WhatIsOutOfReachTakesNothing) {
  Screen screen;
  auto& form = *screen.form;
  form.record.setEnabled(false);
  form.views.setVisible(false);
  form.cmdSave.setEnabled(false);
  screen.show();
  screen.go("out of reach");
  EXPECT_FALSE(screen.widget(form.txtTitle).isEnabled());
  EXPECT_FALSE(screen.widget(form.optAll).isVisible());
  EXPECT_FALSE(form.sltParent.listOpen());
  form.record.setEnabled(true);
  screen.go("within reach");
}

TEST(FormWindow, TheFocusGoesAsTheEyeGoes) {
  Screen screen;
  auto& form = *screen.form;
  for (ui::Control* control : form.controls()) {
    control->onGotFocus = [&form, control] { form.said.push_back(control->name()); };
    control->onLostFocus = [&form, control] { form.said.push_back("-" + control->name()); };
  }
  form.lstPeriod.select(0);
  form.setFirstFocus(form.cmdExit);
  screen.show();
  EXPECT_EQ(form.focused(), &form.cmdExit);
  form.said.clear();
  form.txtCode.focus();
  form.txtCode.focus();
  EXPECT_EQ(form.said, (std::vector<std::string>{"-cmdExit", "txtCode"}));
  EXPECT_TRUE(screen.widget(form.txtCode).hasFocus());

  // A program that takes the focused control out of reach: the form hears of the move when it is done.
  form.said.clear();
  form.record.setEnabled(false);
  EXPECT_TRUE(form.said.empty());
  Screen::settle();
  EXPECT_EQ(form.said, (std::vector<std::string>{"-txtCode", "cmdNew"}));
  EXPECT_TRUE(screen.widget(form.cmdNew).hasFocus());
}

TEST(FormWindow, EveryCommandHasAKeyAndEveryLabelItsField) {
  Screen screen;
  auto& form = *screen.form;
  form.setDefaultButton(form.cmdNew);
  screen.show();
  screen.go("the keys of commands");
  for (const QKeyCombination key : {QKeyCombination(Qt::Key_Return), Qt::CTRL | Qt::Key_S}) {
    QKeyEvent held(QEvent::KeyPress, key.key(), key.keyboardModifiers(), "", true);
    QApplication::sendEvent(&screen.widget(form.cmdExit), &held);
  }
  EXPECT_TRUE(form.said.empty()) << "a key that is held down presses once";
  EXPECT_EQ(screen.widget<QLabel>(form.lblCode).buddy(), &screen.widget(form.txtCode));
}

TEST(FormWindow, ALargerWindowResizesTheFormAndASmallerOneScrolls) {
  Screen screen;
  auto& form = *screen.form;
  // As on the main screen, a small height leaves the layout as it was.
  form.onResized = [&] {
    if (form.size().height < 6000) return;
    form.tree.setBounds({7000, 1500, form.size().width - 7120, form.size().height - 1660});
  };
  screen.show();
  auto& window = screen.window();
  const auto& scroll = *window.findChild<QScrollArea*>();

  window.resize(1900, 900);
  Screen::settle();
  EXPECT_GT(form.size().width, form.designSize().width * 3 / 2);
  const QWidget& tree = screen.widget(form.tree);
  const int right = tree.mapTo(&window, QPoint(tree.width(), 0)).x();
  EXPECT_NEAR(right, 1900 - 8, 3);
  EXPECT_FALSE(scroll.horizontalScrollBar()->isVisible() || scroll.verticalScrollBar()->isVisible());

  window.resize(600, 300);
  Screen::settle();
  EXPECT_EQ(form.size(), form.designSize());
  EXPECT_TRUE(scroll.horizontalScrollBar()->isVisible() && scroll.verticalScrollBar()->isVisible());
  EXPECT_TRUE(scroll.widget()->rect().contains(tree.geometry()))
      << "what stayed out there can be scrolled to";
  // Where the focus goes the window follows.
  form.grid.focus();
  EXPECT_TRUE(scroll.viewport()->rect().contains(
      screen.widget(form.grid).mapTo(scroll.viewport(), screen.widget(form.grid).rect().bottomLeft())));

  // A font twice as large makes everything twice as large.
  const QSize small = screen.widget(form.cmdNew).size();
  const QFont font = QApplication::font();
  QFont large = font;
  large.setPointSizeF(font.pointSizeF() * 2);
  QApplication::setFont(large);
  Screen::settle();
  EXPECT_NEAR(screen.widget(form.cmdNew).width(), small.width() * 2, 2);
  EXPECT_NEAR(screen.widget(form.cmdNew).height(), small.height() * 2, 2);
  QApplication::setFont(font);
  Screen::settle();
  EXPECT_EQ(screen.widget(form.cmdNew).size(), small);
}

TEST(FormWindow, MenusShowWhatTheirEntriesSay) {
  Screen screen;
  auto& form = *screen.form;
  form.mnuMark.onClick = [&] { form.mnuNew.setEnabled(false); };
  screen.show();
  const auto action = [&](const char* name) { return screen.entry(name, form); };
  action("mnuMark")->trigger();
  EXPECT_TRUE(action("mnuMark")->isChecked()) << "the entry says whether it is marked";
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
}

}  // namespace
}  // namespace ledgertree::test
