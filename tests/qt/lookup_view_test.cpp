#include "qt/lookup_view.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QScrollBar>
#include <QTreeView>

#include "screen.h"

namespace ledgertree::test {
namespace {

class LookupScreen : public Screen {
 public:
  LookupScreen() : field(form->sltParent) {
    field.onPicked = [this] { form->said.push_back("picked " + std::to_string(field.heldId())); };
    show();
    field.focus();
    line = &widget<QLineEdit>(field);
    list = line->findChild<QTreeView*>();
  }
  [[nodiscard]] QString row(int place) const { return list->model()->index(place, 0).data().toString(); }

  MemoryLookup& field;
  QLineEdit* line = nullptr;
  QTreeView* list = nullptr;
};

TEST(LookupView, APersonFindsByTypingAndPicksByKeys) {
  LookupScreen screen;
  auto& field = screen.field;
  screen.type(field, "105");
  EXPECT_TRUE(screen.list->isVisible());
  EXPECT_TRUE(screen.line->hasFocus()) << "the list leaves the focus where one types";
  EXPECT_EQ(screen.list->model()->rowCount(), 10);
  EXPECT_EQ(screen.row(0), QString::fromUtf8("حساب 50"));
  EXPECT_EQ(screen.list->model()->index(0, 1).data().toString(), QStringLiteral("1050"));
  screen.press(field, Qt::Key_Down);
  screen.press(field, Qt::Key_Down);
  EXPECT_EQ(screen.list->currentIndex().row(), 2);
  screen.press(field, Qt::Key_Return);
  EXPECT_EQ(field.heldId(), 52);
  EXPECT_EQ(screen.line->text(), QString::fromUtf8("حساب 52"));
  EXPECT_FALSE(screen.list->isVisible());

  // What is typed next takes the place of the row held; Escape brings it back.
  screen.type(field, "7");
  EXPECT_EQ(screen.line->text(), QStringLiteral("7"));
  screen.press(field, Qt::Key_Escape);
  EXPECT_EQ(screen.line->text(), QString::fromUtf8("حساب 52"));
  EXPECT_EQ(screen.form->said, (std::vector<std::string>{"picked 52"}));

  // In the middle of what one types, the keys of the line work as in every line.
  screen.type(field, "103");
  screen.press(field, Qt::Key_Left);
  screen.press(field, Qt::Key_Backspace);
  EXPECT_EQ(field.text(), "13");
  EXPECT_EQ(screen.line->cursorPosition(), 1);
  screen.press(field, Qt::Key_Delete);
  EXPECT_EQ(field.text(), "1");
  EXPECT_EQ(field.heldId(), 52);

  // Leaving gives up what was typed; Delete on a row held empties the field.
  screen.form->txtCode.focus();
  EXPECT_FALSE(screen.list->isVisible());
  EXPECT_EQ(screen.line->text(), QString::fromUtf8("حساب 52"));
  field.focus();
  screen.press(field, Qt::Key_Delete);
  EXPECT_EQ(field.heldId(), -1);
  EXPECT_EQ(screen.line->text(), QString());
}

TEST(LookupView, TheMouseOpensScrollsAndPicks) {
  LookupScreen screen;
  auto& field = screen.field;
  screen.form->txtCode.focus();
  screen.click(field);
  ASSERT_TRUE(screen.list->isVisible());
  EXPECT_EQ(screen.list->model()->rowCount(), 20);
  screen.list->verticalScrollBar()->setValue(screen.list->verticalScrollBar()->maximum());
  EXPECT_EQ(screen.list->model()->rowCount(), 40);
  EXPECT_GT(screen.list->verticalScrollBar()->value(), 0)
      << "more rows leave the list where it was scrolled to";
  const QModelIndex wanted = screen.list->model()->index(21, 0);
  screen.list->scrollTo(wanted);
  QTest::mouseClick(screen.list->viewport(), Qt::LeftButton, {}, screen.list->visualRect(wanted).center());
  EXPECT_EQ(field.heldId(), 22);
  EXPECT_FALSE(screen.list->isVisible());

  screen.press(field, Qt::Key_Down, Qt::AltModifier);
  EXPECT_TRUE(field.listOpen());
  screen.press(field, Qt::Key_Up, Qt::AltModifier);
  EXPECT_FALSE(field.listOpen());

  screen.type(field, "nothing");
  EXPECT_EQ(screen.list->model()->rowCount(), 1);
  EXPECT_EQ(screen.row(0), QString::fromUtf8("موردي پيدا نشد"));
  QTest::mouseClick(screen.list->viewport(), Qt::LeftButton, {}, QPoint(20, 5));
  EXPECT_EQ(field.heldId(), 22);
}

TEST(LookupView, AFieldOutOfReachTakesNothing) {
  LookupScreen screen;
  screen.form->record.setEnabled(false);
  screen.type(screen.field, "105");
  screen.click(screen.field);
  EXPECT_EQ(screen.field.text(), "");
  EXPECT_FALSE(screen.field.listOpen());
}

}  // namespace
}  // namespace ledgertree::test
