#include "qt/lookup_view.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QScrollBar>
#include <QTreeView>
#include <atomic>

#include "data/connection_text.h"
#include "data/data_error.h"
#include "engines/sqlite/embedded_connection.h"
#include "screen.h"
#include "shell/lookup/selector.h"
#include "support/scripted_notices.h"
#include "support/temporary_database.h"

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
  // What could mean several stays and stands out, for whoever hears the screen too; Escape gives it up.
  const QColor plain = screen.line->palette().color(QPalette::Base);
  screen.form->txtCode.focus();
  EXPECT_EQ(screen.seen(screen.field), "^105");
  EXPECT_NE(screen.line->palette().color(QPalette::Base), plain);
  EXPECT_EQ(screen.line->accessibleDescription(), QString::fromUtf8("انتخاب نشده است"));
  screen.field.focus();
  screen.press(screen.field, Qt::Key_Escape);
  EXPECT_EQ(screen.line->text() + screen.line->accessibleDescription(), QString::fromUtf8("حساب 52"));
  EXPECT_EQ(screen.line->palette().color(QPalette::Base), plain);
  // Tab picks the only hit while the focus is still here.
  const auto tell = std::exchange(screen.field.onPicked, [&] { EXPECT_TRUE(screen.line->hasFocus()); });
  screen.type(screen.field, "1053");
  screen.press(screen.field, Qt::Key_Tab);
  EXPECT_FALSE(screen.line->hasFocus());
  EXPECT_EQ(screen.field.heldId(), 53);
  screen.field.onPicked = tell;
  screen.field.focus();
  screen.go("emptying the field");
}

TEST(LookupView, TheMouseOpensScrollsAndPicks) {
  LookupScreen screen;
  auto& field = screen.field;
  screen.type(field, "1001\r");
  screen.form->txtCode.focus();
  screen.click(field);
  EXPECT_EQ(screen.list->model()->rowCount(), 20);
  QScrollBar& bar = *screen.list->verticalScrollBar();
  bar.setValue(bar.maximum());
  EXPECT_EQ(screen.list->model()->rowCount(), 40);
  EXPECT_GT(bar.value(), 0) << "more rows leave the list where it was scrolled to";
  screen.go("picking by the mouse, opening by keys");
}

/// A file that answers as a server does that is far away.
class FarFile : public data::Connection {
 public:
  FarFile(const std::string& path, std::atomic<int>& failures) : file_(path), failures_(failures) {}
  [[nodiscard]] bool answersLate() const override { return true; }
  data::SearchPage search(const data::SearchRequest& request) override {
    if (failures_ == 0) return file_.search(request);
    throw data::DataError(data::DataError::Reason::Connection, ++failures_, "the line is cut");
  }
  std::optional<data::Rows> run(std::string_view statement) override { return file_.run(statement); }
  void walk(std::string_view, const std::function<bool(const data::Rows&)>&) override {}
  std::int32_t call(const data::Procedure&, std::span<const data::Value>) override { return 0; }

 private:
  engines::sqlite::EmbeddedConnection file_;
  std::atomic<int>& failures_;
};

TEST(LookupView, AFarEngineBringsPageByPageAndTellsOfItsFailureOnce) {
  ::ledgertree::testing::TemporaryDatabase database;
  database.insertMany("tblAccountBranch (ID, Code, Name)", 1, 250, [](int id) {
    return std::to_string(id) + ", '" + std::to_string(1000 + id) + "', 'x'";
  });
  Screen screen;
  shell::Shell shell(screen.desktop);
  ::ledgertree::testing::ScriptedNotices notices(shell.components);
  std::atomic<int> failures = 0;
  shell.providers.add("Far", [&](const data::ConnectionText& text) {
    return std::make_unique<FarFile>(text.require("Data Source"), failures);
  });
  ui::Form form(screen.surroundings(), "far", "", {6000, 3000});
  shell::Selector field(form, shell, "sltBranch", {3000, 300, 2400, 330});
  field.setConnectionText("Provider=Far;Data Source=" + database.file().string());
  field.setMajorView("vwAccountBranchMajor");
  screen.desktop.show(form);
  field.focus();
  field.openList();
  auto& bar = *screen.widget(field).findChild<QTreeView*>()->verticalScrollBar();
  for (const std::size_t rows : {100U, 200U, 250U}) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return field.rows().size() == rows && !field.searching(); }, 20000))
        << field.rows().size();
    EXPECT_EQ(field.rows().back().id, static_cast<int>(rows));
    bar.setValue(bar.maximum());
  }
  QTest::qWait(20);
  EXPECT_EQ(field.rows().size(), 250U);

  failures = 1;
  for (const int count : {2, 3}) {
    QTest::keyClicks(&screen.widget(field), "1");
    ASSERT_TRUE(QTest::qWaitFor([&] { return failures == count && !field.searching(); }, 20000)) << failures;
    QTest::qWait(20);
    EXPECT_EQ(notices.take().size(), count == 2 ? 1U : 0U);
    EXPECT_TRUE(field.rows().empty());
  }
  failures = 0;
  QTest::keyClick(&screen.widget(field), Qt::Key_Backspace);
  EXPECT_TRUE(QTest::qWaitFor([&] { return field.rows().size() == 100; }, 20000));
}

}  // namespace
}  // namespace ledgertree::test
