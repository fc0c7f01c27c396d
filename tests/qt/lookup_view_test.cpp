#include "qt/lookup_view.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QScrollBar>
#include <QTreeView>

#include "qt/found_row.h"
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

  MemoryLookup& field;
  QLineEdit* line = nullptr;
  QTreeView* list = nullptr;
};

TEST(LookupView, APersonFindsByTypingAndPicksByKeys) {
  LookupScreen screen;
  screen.go("finding by typing");
  EXPECT_TRUE(screen.line->hasFocus()) << "the list leaves the focus where one types";
  EXPECT_EQ(screen.list->model()->index(0, 1).data().toString(), QStringLiteral("1050"));
  EXPECT_EQ(screen.list->model()->index(0, 1).data(qt::kTypedRole).value<qt::Stretches>(),
            (qt::Stretches{{0, 3}}));
  // An ambiguous text stays; Escape discards it.
  screen.form->txtCode.focus();
  EXPECT_EQ(screen.seen(screen.field), "^105");
  screen.field.focus();
  screen.press(screen.field, Qt::Key_Escape);
  EXPECT_EQ(screen.line->text() + screen.line->accessibleDescription(), QString::fromUtf8("حساب 52"));
  // Tab picks the only hit before the focus moves.
  const auto tell = std::exchange(screen.field.onPicked, [&] { EXPECT_TRUE(screen.line->hasFocus()); });
  screen.type(screen.field, "1053");
  screen.press(screen.field, Qt::Key_Tab);
  EXPECT_FALSE(screen.line->hasFocus());
  EXPECT_EQ(screen.field.heldId(), 53);
  screen.field.onPicked = tell;
  screen.field.focus();
  screen.go("at the lower edge of the screen");
  screen.go("emptying the field");
}

TEST(LookupView, TheMouseOpensScrollsAndPicks) {
  LookupScreen screen;
  auto& field = screen.field;
  screen.type(field, "1001\r");
  const auto inkOfSecondRow = [&] {
    const QImage picture = painted(*screen.list, screen.list->visualRect(screen.list->model()->index(1, 1)));
    int dark = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) dark += 255 - qGray(picture.pixel(x, y));
    return dark;
  };
  screen.press(field, Qt::Key_End);
  screen.click(field);
  EXPECT_EQ(screen.line->selectedText(), screen.line->text());
  EXPECT_EQ(screen.list->model()->rowCount(), 20);
  const int plain = inkOfSecondRow();
  screen.press(field, Qt::Key_Escape);
  screen.type(field, "100");
  EXPECT_GT(inkOfSecondRow(), plain) << "what was typed is bold in it";
  screen.press(field, Qt::Key_Escape);
  screen.click(field);
  std::vector<int> rows;
  for (int press = 0; press < 4; ++press) {
    screen.press(field, Qt::Key_PageDown);
    rows.push_back(screen.list->model()->rowCount());
  }
  EXPECT_EQ(rows, (std::vector<int>{20, 40, 40, 60})) << "rows that arrive don't ask for the next ones";
  screen.press(field, Qt::Key_Escape);
  screen.form->txtCode.focus();
  screen.click(field);
  EXPECT_EQ(screen.list->model()->rowCount(), 20);
  QScrollBar& bar = *screen.list->verticalScrollBar();
  bar.setValue(bar.maximum());
  EXPECT_EQ(screen.list->model()->rowCount(), 40);
  EXPECT_GT(bar.value(), 0) << "more rows leave the list where it was scrolled to";
  screen.go("picking by the mouse, opening by keys");
}

}  // namespace
}  // namespace ledgertree::test
