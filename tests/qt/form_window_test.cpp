#include "qt/form_window.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCursor>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableView>
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
  auto& line = screen.widget<QLineEdit>(form.txtCode);
  form.txtCode.focus();

  screen.type(form.txtCode, "1x2-");
  EXPECT_EQ(form.txtCode.text(), "12/");
  EXPECT_EQ(form.said, (std::vector<std::string>{"change 1", "up 1", "up 1", "change 12", "up 2",
                                                 "change 12/", "up 3"}));

  // In the middle of the text, a Persian digit arrives as a Latin one.
  screen.press(form.txtCode, Qt::Key_Left);
  screen.press(form.txtCode, Qt::Key_Left);
  QTest::sendKeyEvent(QTest::Click, &line, Qt::Key_7, QString::fromUtf8("۷"), Qt::NoModifier);
  EXPECT_EQ(form.txtCode.text(), "172/");
  EXPECT_EQ(line.text(), QStringLiteral("172/"));
  EXPECT_EQ(line.cursorPosition(), 2);
  EXPECT_EQ(form.txtCode.caret(), 2u);
  screen.press(form.txtCode, Qt::Key_Backspace);
  EXPECT_EQ(form.txtCode.text(), "12/");

  // What a program puts in keeps its length; what a person puts in stops at the limit, a paste included.
  form.txtCode.setText(std::string(25, '5'));
  EXPECT_EQ(line.text().size(), 25);
  form.txtCode.setText("1234567890");
  form.txtCode.setCaret(2);
  line.insert(QString::fromUtf8("۱\nABCDEFGHIJKLMNOP"));
  EXPECT_EQ(form.txtCode.text(), "121 ABCDEFGH34567890");
  EXPECT_EQ(form.txtCode.caret(), 12u);

  // A handler that rewrites the text as it is typed has the last word.
  form.txtCode.setMaximumLength(0);
  form.txtCode.onKeyUp = [&] { form.txtCode.setText("1/000/001"); };
  screen.type(form.txtCode, "9");
  EXPECT_EQ(line.text(), QStringLiteral("1/000/001"));
  EXPECT_EQ(line.cursorPosition(), 9);

  screen.type(form.txtMother, "5");
  EXPECT_EQ(form.txtMother.text(), "") << "a locked field takes no key";
}

}  // namespace
}  // namespace ledgertree::test
