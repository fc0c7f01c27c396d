#include "periods/delete_period.h"

#include <random>

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
  void everybodyIn(int period) {
    std::string pairs;
    for (const int account : {10, 11, 12, 20, 21}) {
      pairs += (pairs.empty() ? "(" : ",(") + std::to_string(account) + "," + std::to_string(period) + ")";
    }
    members(pairs);
  }
};

TEST_F(DeletePeriodTest, HidesWhatNoDocumentOfThePeriodNeeds) {
  const auto hide = [&](const std::string& period) {
    return show([&](FormDeletePeriod& screen) {
      pick(screen.sltPeriodFrom, period);
      notices.answer(1);
      screen.cmdDeletePossible.click();
      EXPECT_FALSE(screen.isShown());
      EXPECT_EQ(notices.taken(), "پرسش|آيا مطمئن هستيد که قصد پنهان کردن سرفصلهاي بدون سند را داريد؟");
    });
  };
  // The line is on the first day of 1403; its account stays with the path to it. Of 1404 nothing stays: its
  // document has no line.
  everybodyIn(1);
  database.execute("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (12, 2), (10, 3)");
  EXPECT_TRUE(hide("سال 1403"));
  EXPECT_EQ(accountsOf(1), "10 11 12");
  EXPECT_EQ(accountsOf(2), "12");
  EXPECT_TRUE(hide("سال 1404"));
  EXPECT_EQ(accountsOf(2), "");
  EXPECT_TRUE(hide("سال 1404")) << "also where nothing was left to hide";
  EXPECT_EQ(accountsOf(3), "10");

  // The last day counts too; an ancestor that isn't in the period is not brought in.
  database.execute("update tblAccountDocumentDetail set DocumentID = 502, AccountID = 21");
  members("(12,1),(21,1)");
  EXPECT_TRUE(hide("سال 1403"));
  EXPECT_EQ(accountsOf(1), "21");
}

TEST_F(DeletePeriodTest, AgreesWithTheRuleOnAnyChart) {
  std::mt19937 random(20261122);
  for (int chart = 0; chart < (onServer() ? 2 : 10); ++chart) {
    database.execute("delete from tblAccountDocumentDetail; delete from tblAccountPeriodAccount");
    for (int account = 100; account < 140; ++account) {
      const int parent = 100 + static_cast<int>(random() % static_cast<unsigned>(account - 99));
      const std::string id = std::to_string(account);
      database.execute("insert or ignore into tblAccount (ID, Code) values (" + id + ", '" + id +
                       "'); update tblAccount set ParentID = " +
                       (parent == account ? std::string("null") : std::to_string(parent)) +
                       " where ID = " + id);
      if (random() % 4 != 0) database.execute("insert into tblAccountPeriodAccount values (" + id + ", 1)");
      if (random() % 6 == 0) {
        database.execute("insert into tblAccountDocumentDetail (DocumentID, AccountID) values (" +
                         std::to_string(501 + random() % 3) + ", " + id + ")");
      }
    }
    std::string expected = database.rows(
        "select m.AccountID from tblAccountPeriodAccount m"
        " where exists (select 1 from tblAccountDocument d join tblAccountDocumentDetail dd on d.ID = "
        "dd.DocumentID"
        " where d.FarsiDocumentDate like '1403%' and (dd.AccountID = m.AccountID or exists (select 1"
        " from tblAccountParent p where p.ID = m.AccountID and p.ChildID = dd.AccountID))) order by 1");
    std::replace(expected.begin(), expected.end(), '\n', ' ');
    show([&](FormDeletePeriod& screen) {
      pick(screen.sltPeriodFrom, "سال 1403");
      notices.answer(1);
      screen.cmdDeletePossible.click();
    });
    EXPECT_EQ(accountsOf(1), expected);
  }
}

TEST_F(DeletePeriodTest, HidesAllOfAPeriodWithoutDocuments) {
  everybodyIn(1);
  database.execute("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (10, 3), (12, 3)");
  const bool changed = show([&](FormDeletePeriod& screen) {
    for (auto* command : {&screen.cmdDelete, &screen.cmdDeletePossible}) {
      screen.cmdCancel.focus();
      command->click();
      EXPECT_EQ(notices.taken(), "اشکال|دوره مالي را بايد مشخص کنيد!");
      EXPECT_TRUE(screen.sltPeriodFrom.hasFocus());
    }
    // Its documents count, whomever they concern and whether or not anybody is in the period.
    pick(screen.sltPeriodFrom, "سال 1403");
    for (const int noOrNothing : {0, 7}) {
      for (auto* command : {&screen.cmdDelete, &screen.cmdDeletePossible}) {
        notices.answer(noOrNothing);
        command->click();
        EXPECT_EQ(notices.take().size(), 1U);
      }
    }
    screen.cmdCancel.focus();
    notices.answer(1);
    screen.cmdDelete.click();
    EXPECT_EQ(
        notices.taken(),
        "پرسش|آيا مطمئن هستيد که قصد پنهان کردن همه سرفصلها را داريد؟\n"
        "اشکال|تعداد «2» از اسناد حسابداري به اين دوره مالي وابسته است. به عنوان مثال سند با ش.ر. «501»");
    EXPECT_TRUE(screen.sltPeriodFrom.hasFocus());
    EXPECT_TRUE(screen.isShown());
    EXPECT_EQ(accountsOf(1), "10 11 12 20 21");

    pick(screen.sltPeriodFrom, "سال 1405");
    notices.answer(1);
    screen.cmdDelete.click();
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(accountsOf(3), "");
  EXPECT_EQ(accountsOf(1), "10 11 12 20 21");
  notices.take();

  EXPECT_FALSE(show([&](FormDeletePeriod& screen) {
    EXPECT_TRUE(screen.sltPeriodFrom.IsEmpty()) << "loaded anew";
    screen.press(ui::KeyChord::of(ui::Key::Escape));
    EXPECT_FALSE(screen.isShown());
  }));
}

TEST_F(DeletePeriodTest, EveryFailureLeavesTheRowsAndTheScreen) {
  for (const bool all : {false, true}) {
    for (int n = 1;; ++n) {
      SCOPED_TRACE((all ? "all, failure " : "possible, failure ") + std::to_string(n));
      everybodyIn(3);
      bool failed = false;
      const bool changed = show([&](FormDeletePeriod& screen) {
        pick(screen.sltPeriodFrom, "سال 1405");
        auto& command = all ? screen.cmdDelete : screen.cmdDeletePossible;
        faults.failAt(n);
        notices.answer(1);
        command.click();
        failed = faults.failures() > 0;
        if (!failed) return;
        EXPECT_EQ(notices.take().back().message, Faults::kMessage);
        EXPECT_EQ(accountsOf(3), "10 11 12 20 21");
        EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
        EXPECT_FALSE(screen.ChangedFlag);
        faults.heal();
        notices.answer(1);
        command.click();
      });
      faults.heal();
      notices.take();
      EXPECT_TRUE(changed);
      EXPECT_EQ(accountsOf(3), "");
      if (!failed) break;
    }
  }
}

}  // namespace
}  // namespace ledgertree::testing
