#include "mainform/form/secondary_screens.h"

#include "data/persian_calendar.h"
#include "db/history.h"
#include "history/history.h"
#include "history/screen/form_history.h"
#include "mainform/screen_story.h"
#include "support/steps.h"
#include "support/told_component.h"

namespace ledgertree::testing {
namespace {

class SecondaryScreensStory : public ScreenStory {
 protected:
  SecondaryScreensStory() {
    database.execute(
        "insert into tblUserPermission (UserID, FormPermissionID) values (1, 30110), (1, 30111), (1, 30112);"
        "insert into tblAccountPeriod (ID, Name, BeginDate, EndDate, FarsiBeginDate, FarsiEndDate) values"
        " (5, 'سال 1403', '2024-03-20', '2025-03-20', '1403/01/01', '1403/12/30')");
    // "in FormPeriodBranch cmdAdd, cmdExit" is for when that screen opens.
    person.acts["in"] = [this](auto& about) {
      const auto [name, steps] = cut(about);
      desktop.inModal(name, [this, steps = steps](ui::Form&) {
        for (std::size_t begin = 0; begin < steps.size();) {
          const std::size_t end = std::min(steps.find(", ", begin), steps.size());
          person.act(steps.substr(begin, end - begin));
          begin = end + 2;
        }
      });
    };
    person.acts["about"] = [this](auto& id) {
      const ui::Control* const account = desktop.shownForms.back()->find("sltAccount");
      EXPECT_EQ(dynamic_cast<const shell::Selector&>(*account).SelectedID(), std::stoi(id));
    };
  }
  /// Seen are the account and the mode, and the open nodes of the tree.
  void walk(const std::string& section) {
    start();
    go(section);
  }
  void go(const std::string& section) {
    const auto seen = [this] {
      std::string text = form->txtID.text() + " " + form->txtTitle.text() + ", mode " +
                         std::to_string(static_cast<int>(form->formMode)) + ":";
      addOpen(form->treeAccount.roots().front(), text);
      return text;
    };
    person.go("mainform/steps.txt", section, seen);
  }

  void goIn(const history::FormHistory& screen, const std::string& section) {
    person.go(
        "mainform/steps.txt", section, [&] { return rowsOf(screen); }, [this] { return heard(); });
  }
  /// The answer about a day, behind the day; then the rows, without their moments.
  static std::string rowsOf(const history::FormHistory& screen) {
    const std::string& then = screen.lblThen.caption();
    std::string rows = then.substr(std::min(then.size(), then.find(": ") + 1));
    for (int row = 0; row < screen.grdChanges.rowCount(); ++row)
      for (int column = 1; column < 6; ++column)
        rows += (column == 1 ? "; " : ", ") + screen.grdChanges.text(row, column);
    return rows;
  }
  /// What the host will be told.
  std::string heard() {
    std::string text;
    for (const ChartEvent& event : shell.news.take()) {
      text += std::vector{"created", "changed", "deleted", "recoded", "below", "shown"}.at(
          static_cast<std::size_t>(event.kind));
      for (const std::int32_t account : event.accounts) text += " " + std::to_string(account);
      text += "; ";
    }
    return text;
  }

 private:
  void addOpen(ui::NodeId node, std::string& text) const {
    const ui::Tree& tree = form->treeAccount;
    text += " " + tree.key(node);
    if (!tree.expanded(node)) return;
    for (const ui::NodeId child : tree.children(node)) addOpen(child, text);
  }
};

TEST_F(SecondaryScreensStory, TheTreeByPeriodsFollowsWhatChangedInAPeriod) {
  walk("what changed in a period");
}

TEST_F(SecondaryScreensStory, NoScreenOpensOnAQuestionThatFails) { walk("a screen whose question fails"); }

TEST_F(SecondaryScreensStory, TheClassesOfAnAccountLeaveTheRecordAlone) {
  database.execute("insert into tblTarvoSystemParameters (ID, Value) values (311, '1')");
  walk("the classes of an account");
}

TEST_F(SecondaryScreensStory, TheMemoryIsReadAndTakenBack) {
  if (onServer()) GTEST_SKIP() << "it is about a file";
  walk("the memory isn't offered");
  shell.offers = {Offer::History, Offer::TakeBack};
  start();
  const auto inHistory = [this](const std::function<void(history::FormHistory&)>& act) {
    inScreen<history::FormHistory>("FormHistory", act);
    form->mnuHistory.click();
  };
  inHistory([this](history::FormHistory& screen) { goIn(screen, "a chart without a memory"); });
  db::switchHistory(database.other(), true);
  const data::DateTime now = data::toLocalTime(history::since(*shell.dtEn()).value());
  shell.clock = [now] { return now; };
  const std::string today = data::toPersianDate(now);
  walk("what is remembered");
  static_cast<void>(shell.news.take());
  inHistory([&](history::FormHistory& screen) {
    person.acts["today"] = [&](auto&) { screen.txtDay.paste(today); };
    goIn(screen, "the memory of an account");
    answer(true);
    std::string question = toldBy(screen.cmdTakeBack);
    question.erase(question.find(today), std::string_view("1405/09/02 14:05").size());
    EXPECT_EQ(question,
              "برگرداندن عمليات|«اصلاح حساب» (حسابدار، ) برگردانده ميشود: 1 حساب، 1 تغيير.\n"
              "«1108 بانک ها»: عنوان: بانک ها ← بانک، کد: 1108 ← 1102\nآيا مطمئن هستيد؟");
    EXPECT_EQ(heard(), "changed 3; ");
    goIn(screen, "the memory behind the way back");
  });
  go("the record behind the way back");
  answer(true);
  form->press(ui::KeyChord::ctrlAnd('Z'));
  EXPECT_TRUE(notices.taken().starts_with("برگرداندن عمليات|«حذف حساب» (حسابدار، "));
  go("a deleted account that came back");
}

TEST_F(SecondaryScreensStory, TheMemoryIsReadPageByPage) {
  if (onServer()) GTEST_SKIP() << "it is about a file";
  db::switchHistory(database.other(), true);
  for (int account = 100; account < 250; ++account)
    database.execute("insert into tblAccount (ID, Code, Title) values (" + std::to_string(account) + ", '" +
                     std::to_string(account) + "', 'x')");
  int exported = 0;
  shell.components.add("SheetKit.SheetWriter", [&exported] {
    return std::make_unique<ToldComponent>([&exported](const std::string& asked) -> data::Value {
      if (asked.starts_with("AddRow(")) ++exported;
      return {};
    });
  });
  shell.offers = {Offer::History, Offer::Export};
  start();
  inScreen<history::FormHistory>("FormHistory", [](history::FormHistory& screen) {
    EXPECT_EQ(screen.grdChanges.rowCount(), 100);
    screen.cmdExport.click();
    screen.grdChanges.reachedEnd();
    EXPECT_EQ(screen.grdChanges.text(149, 3), "100");
    screen.grdChanges.press(ui::Key::End);
    EXPECT_EQ(screen.grdChanges.rowCount(), 150);
  });
  form->mnuHistoryOfAccount.click();
  EXPECT_EQ(exported, 151) << "the headings, and all";
}

}  // namespace
}  // namespace ledgertree::testing
