#include "periods/delete_period.h"

#include <random>
#include <sstream>

#include "periods/period_house.h"

namespace ledgertree::testing {
namespace {

using periods::FormDeletePeriod;

class DeletePeriodTest : public PeriodHouse {
 protected:
  bool show(const std::function<void(FormDeletePeriod&)>& person) {
    desktop.inModal("FormDeletePeriod", [&](ui::Form& form) { person(as<FormDeletePeriod>(form)); });
    return screens.showDeletePeriod();
  }
  /// Everybody is in a period, beside the neighbours.
  void everybodyIn(int period) {
    std::string pairs;
    for (const char* account : {"10", "11", "12", "20", "21"})
      pairs += (pairs.empty() ? "(" : ",(") + std::string(account) + "," + std::to_string(period) + ")";
    members(pairs);
  }
};

constexpr const char* kSurePossible = "پرسش|آيا مطمئن هستيد که قصد پنهان کردن سرفصلهاي بدون سند را داريد؟";
constexpr const char* kSureAll = "پرسش|آيا مطمئن هستيد که قصد پنهان کردن همه سرفصلها را داريد؟";

TEST_F(DeletePeriodTest, HidesWhatNoDocumentOfThePeriodNeeds) {
  const auto hide = [&](const std::string& period) {
    desktop.hourglasses = 0;
    EXPECT_TRUE(show([&](FormDeletePeriod& screen) {
      pick(screen.sltPeriodFrom, period);
      notices.answer(1);
      screen.cmdDeletePossible.click();
      EXPECT_FALSE(screen.isShown());
      EXPECT_EQ(notices.taken(), kSurePossible);
      EXPECT_EQ(desktop.hourglasses, 1);
    }));
    return moves();
  };
  // The line is on the first day of 1403; its account stays with the path to it. Of 1404 nothing stays: its
  // document has no line.
  everybodyIn(1);
  given("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (12, 2), (10, 3)");
  EXPECT_EQ(hide("سال 1403"), "-20|1 -21|1 -30|1");
  EXPECT_EQ(hide("سال 1404"), "-12|2 -30|2");
  EXPECT_EQ(hide("سال 1404"), "") << "also where nothing was left to hide";

  // The last day counts too; an ancestor that isn't in the period is not brought in.
  given("update tblAccountDocumentDetail set DocumentID = 502, AccountID = 21");
  members("(12,1),(21,1)");
  EXPECT_EQ(hide("سال 1403"), "-12|1 -30|1");
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
  const bool changed = show([&](FormDeletePeriod& screen) {
    for (auto* command : {&screen.cmdDelete, &screen.cmdDeletePossible}) {
      screen.cmdCancel.focus();
      EXPECT_EQ(toldBy(*command), "اشکال|دوره مالي را بايد مشخص کنيد!");
      expectUnchosen(screen.sltPeriodFrom, *command);
      EXPECT_TRUE(screen.sltPeriodFrom.hasFocus());
    }
    // Its documents count, whomever they concern and whether or not anybody is in the period.
    pick(screen.sltPeriodFrom, "سال 1403");
    for (const int noOrNothing : {0, 7}) {
      notices.answer(noOrNothing);
      EXPECT_EQ(toldBy(screen.cmdDelete), kSureAll);
      notices.answer(noOrNothing);
      EXPECT_EQ(toldBy(screen.cmdDeletePossible), kSurePossible);
    }
    screen.cmdCancel.focus();
    notices.answer(1);
    EXPECT_EQ(toldBy(screen.cmdDelete),
              std::string(kSureAll) +
                  "\nاشکال|تعداد «2» از اسناد حسابداري به اين دوره مالي وابسته است. به "
                  "عنوان مثال سند با ش.ر. «501»");
    EXPECT_TRUE(screen.sltPeriodFrom.hasFocus());
    EXPECT_TRUE(screen.isShown());
    EXPECT_FALSE(screen.ChangedFlag);
    EXPECT_EQ(moves(), "");

    pick(screen.sltPeriodFrom, "سال 1405");
    notices.answer(1);
    screen.cmdDelete.click();
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(moves(), "-10|3 -12|3 -30|3");
  EXPECT_EQ(desktop.hourglasses, 3) << "two tests and a deletion";
  notices.take();

  for (auto* const way :
       {+[](FormDeletePeriod& screen) { screen.cmdCancel.click(); },
        +[](FormDeletePeriod& screen) { EXPECT_TRUE(screen.press(ui::KeyChord::of(ui::Key::Escape))); },
        +[](FormDeletePeriod& screen) { screen.closeByPerson(); }}) {
    EXPECT_FALSE(show([&](FormDeletePeriod& screen) {
      EXPECT_TRUE(screen.sltPeriodFrom.IsEmpty()) << "loaded anew";
      pick(screen.sltPeriodFrom, "سال 1405");
      way(screen);
      EXPECT_FALSE(screen.isShown());
    }));
  }
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
        EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
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
