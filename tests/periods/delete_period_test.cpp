#include "periods/delete_period.h"

#include <random>
#include <sstream>

#include "periods/period_house.h"

namespace ledgertree::testing {
namespace {

using periods::FormDeletePeriod;

class DeletePeriodTest : public PeriodHouse {
 protected:
  bool show(const std::function<void(FormDeletePeriod&)>& act) {
    inScreen("FormDeletePeriod", act);
    return screens.showDeletePeriod();
  }
  bool show(const std::string& section) {
    return show([&](FormDeletePeriod& screen) { walk(screen, section); });
  }
  /// Puts all accounts and their neighbours into a period.
  void everybodyIn(int period) {
    std::string pairs;
    for (const char* account : {"10", "11", "12", "20", "21"})
      pairs += (pairs.empty() ? "(" : ",(") + std::string(account) + "," + std::to_string(period) + ")";
    members(pairs);
  }
};

TEST_F(DeletePeriodTest, HidesWhatNoDocumentOfThePeriodNeeds) {
  // The line is on the first day of 1403; its account stays with its ancestors. Nothing of 1404 stays: its
  // document has no line.
  everybodyIn(1);
  given("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (12, 2), (10, 3)");
  for (const char* section : {"the first day of 1403", "1404", "1404 again"}) EXPECT_TRUE(show(section));

  // The last day counts too; an ancestor that isn't in the period isn't added.
  given("update tblAccountDocumentDetail set DocumentID = 502, AccountID = 21");
  members("(12,1),(21,1)");
  EXPECT_TRUE(show("the last day of 1403"));
}

TEST_F(DeletePeriodTest, AgreesWithTheRuleOnAnyChart) {
  std::mt19937 random(20261122);
  for (int chart = 0; chart < (onServer() ? 2 : 10); ++chart) {
    std::string tree;
    std::string members;
    std::string lines;
    const auto add = [](std::string& list, const std::string& row) {
      list += (list.empty() ? "(" : ",(") + row + ")";
    };
    for (int account = 100; account < 140; ++account) {
      const int parent = 100 + static_cast<int>(random() % static_cast<unsigned>(account - 99));
      const std::string id = std::to_string(account);
      tree += "; insert or ignore into tblAccount (ID, Code) values (" + id + ", '" + id +
              "'); update tblAccount set ParentID = nullif(" + std::to_string(parent) + ", " + id +
              ") where ID = " + id;
      for (const char* period : {"1", "2"})
        if (random() % 4 != 0) add(members, id + ", " + period);
      if (random() % 6 == 0) add(lines, std::to_string(501 + random() % 3) + ", " + id);
    }
    given("delete from tblAccountDocumentDetail; delete from tblAccountPeriodAccount" + tree +
          "; insert into tblAccountPeriodAccount values " + members +
          "; insert into tblAccountDocumentDetail (DocumentID, AccountID) values " + lines);
    std::string expected;
    std::istringstream hidden(database.rows(
        "select m.AccountID from tblAccountPeriodAccount m where m.PeriodID = 1 and not exists (select 1 "
        "from tblAccountDocument d join tblAccountDocumentDetail dd on d.ID = dd.DocumentID where "
        "d.FarsiDocumentDate like '1403%' and (dd.AccountID = m.AccountID or exists (select 1 from "
        "tblAccountParent p where p.ID = m.AccountID and p.ChildID = dd.AccountID))) order by 1"));
    for (std::string account; std::getline(hidden, account);)
      expected += (expected.empty() ? "-" : " -") + account + "|1";
    show([&](FormDeletePeriod& screen) {
      pick(screen.sltPeriodFrom, "سال 1403");
      notices.answer(1);
      screen.cmdDeletePossible.click();
    });
    EXPECT_EQ(moves(), expected);
  }
}

TEST_F(DeletePeriodTest, HidesAllOfAPeriodWithoutDocuments) {
  everybodyIn(1);
  given("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (10, 3), (12, 3)");
  EXPECT_TRUE(show("all of a period"));
  for (const char* way : {"hiding is cancelled", "hiding is left by Escape", "hiding is left by the frame"})
    EXPECT_FALSE(show(way));
}

TEST_F(DeletePeriodTest, EveryFailureLeavesTheRowsAndTheScreen) {
  for (const bool all : {false, true}) {
    bool failed = true;
    for (int n = 1; failed; ++n) {
      SCOPED_TRACE((all ? "all, failure " : "possible, failure ") + std::to_string(n));
      everybodyIn(3);
      EXPECT_TRUE(show([&](FormDeletePeriod& screen) {
        pick(screen.sltPeriodFrom, "سال 1405");
        auto& command = all ? screen.cmdDelete : screen.cmdDeletePossible;
        faults.failAt(n);
        notices.answer(1);
        command.click();
        failed = faults.failures() > 0;
        faults.heal();
        if (!failed) return;
        EXPECT_EQ(notices.take().back().message, Faults::kMessage);
        EXPECT_EQ(moves(), "");
        EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
        EXPECT_FALSE(screen.ChangedFlag);
        notices.answer(1);
        command.click();
      }));
      notices.take();
      EXPECT_EQ(moves(), "-10|3 -11|3 -12|3 -20|3 -21|3 -30|3");
    }
  }
}

}  // namespace
}  // namespace ledgertree::testing
