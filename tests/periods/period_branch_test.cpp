#include "periods/period_branch.h"

#include "periods/period_house.h"

namespace ledgertree::testing {
namespace {

using periods::FormPeriodBranch;

class PeriodBranchTest : public PeriodHouse {
 protected:
  bool show(int account, const std::function<void(FormPeriodBranch&)>& person) {
    desktop.inModal("FormPeriodBranch", [&](ui::Form& form) { person(as<FormPeriodBranch>(form)); });
    return screens.ShowPeriodBranch(account);
  }
  static std::string grid(const FormPeriodBranch& screen) {
    std::string rows;
    for (int row = 0; row < screen.flxPeriodBranch.rowCount(); ++row) {
      for (int column = 0; column < 3; ++column) rows += screen.flxPeriodBranch.text(row, column) + "|";
    }
    return rows;
  }
};

TEST_F(PeriodBranchTest, AddsAnAccountToOnePeriodAndFillsTheGaps) {
  const bool changed = show(21, [&](FormPeriodBranch& screen) {
    EXPECT_EQ(screen.sltAccount.SelectedText(), "وام");
    EXPECT_FALSE(screen.sltAccount.IsActive());
    EXPECT_FALSE(screen.sltBranch.shown());
    EXPECT_EQ(grid(screen), "");
    pick(screen.sltPeriod, "سال 1404");
    screen.cmdAdd.click();
    screen.cmdAdd.click();
    EXPECT_EQ(grid(screen), "1|سال 1404|2|");
    screen.press(ui::KeyChord::of(ui::Key::Escape));
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(periodsOf(21), "2");

  // The screen stayed loaded with its period; without one, each command asks what is meant.
  const bool changedAgain = show(21, [&](FormPeriodBranch& screen) {
    EXPECT_EQ(screen.sltPeriod.SelectedID(), 2);
    screen.sltPeriod.press(ui::Key::Delete);
    for (const int noOrNothing : {0, 7}) {
      for (auto* command : {&screen.cmdAdd, &screen.cmdDel}) {
        screen.cmdExit.focus();
        notices.answer(noOrNothing);
        command->click();
        EXPECT_EQ(notices.taken(),
                  "پرسش|از آنجايي که سال مالي انتخاب نشده است، همه سالهاي مالي مد نظر داريد؟\nاشکال|سال مالي "
                  "را تعيين نماييد.");
        EXPECT_TRUE(screen.sltPeriod.hasFocus());
      }
    }
    EXPECT_FALSE(screen.ChangedFlag);
    notices.answer(1);
    screen.cmdAdd.click();
    EXPECT_EQ(screen.flxPeriodBranch.rowCount(), 3);
    screen.closeByPerson();
  });
  EXPECT_TRUE(changedAgain);
  EXPECT_EQ(periodsOf(21), "1 2 3");
  notices.take();

  EXPECT_FALSE(show(21, [](FormPeriodBranch& screen) { screen.cmdExit.click(); }));
}

TEST_F(PeriodBranchTest, HidesUnlessTheSubtreeHasALineAndThePeriodADocument) {
  members("(10,1),(10,2),(10,3),(11,3),(12,3),(21,1),(21,2),(21,3)");
  show(10, [&](FormPeriodBranch& screen) {
    // The one line, two levels below, is of 1403. It blocks 1404 too, which has documents of others.
    pick(screen.sltPeriod, "سال 1404");
    screen.cmdExit.focus();
    screen.cmdDel.click();
    EXPECT_EQ(notices.taken(),
              "اشکال|تعداد «1» از اسناد حسابداري به دوره مالي سال 1404 وابسته است. به عنوان مثال سند با ش.ر. "
              "«503»");
    EXPECT_TRUE(screen.sltPeriod.hasFocus());
    EXPECT_FALSE(screen.ChangedFlag);

    pick(screen.sltPeriod, "سال 1405");
    screen.cmdDel.click();
    EXPECT_TRUE(screen.ChangedFlag);
    EXPECT_EQ(grid(screen), "1|سال 1403|1|2|سال 1404|2|");

    screen.sltPeriod.press(ui::Key::Delete);
    notices.answer(1);
    screen.cmdDel.click();
    const auto told = notices.take();
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[1].message,
              "تعداد «3» از اسناد حسابداري به دوره مالي  وابسته است. به عنوان مثال سند با ش.ر. «501»");
    screen.cmdDeleteAllRows.click();
    EXPECT_EQ(notices.taken(),
              "اشکال|تعداد «3» از اسناد حسابداري به دوره مالي مورد نظر وابسته است. به عنوان مثال سند با ش.ر. "
              "«501»");
  });
  EXPECT_EQ(periodsOf(10), "1 2") << "what is below keeps its rows";
  EXPECT_EQ(accountsOf(3), "11 12 21");

  // An account without a line in its subtree goes, whatever documents the periods hold.
  show(21, [&](FormPeriodBranch& screen) {
    pick(screen.sltPeriod, "سال 1403");
    screen.cmdDel.click();
    EXPECT_EQ(periodsOf(21), "2 3");
    screen.cmdDeleteAllRows.click();
    EXPECT_EQ(notices.taken(), "");
    EXPECT_EQ(grid(screen), "");
  });
  EXPECT_EQ(periodsOf(21), "");

  // A line whose document is in no period blocks hiding from everywhere, as the documents of no period count
  // where no period is named, and doesn't by itself where any is.
  database.execute(
      "delete from tblAccountDocumentDetail; delete from tblAccountDocument;"
      "insert into tblAccountDocument (ID, FarsiDocumentDate) values (900, '1390/01/01');"
      "insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (9, 900, 12)");
  show(12, [&](FormPeriodBranch& screen) {
    screen.sltPeriod.press(ui::Key::Delete);
    notices.answer(1);
    screen.cmdDel.click();
    EXPECT_EQ(notices.take().size(), 2U);
    EXPECT_EQ(periodsOf(12), "3");
    screen.cmdDeleteAllRows.click();
    EXPECT_EQ(periodsOf(12), "");
  });
}

TEST_F(PeriodBranchTest, HidesTheRowsOfARangeThatNothingBlocks) {
  members("(21,1),(21,2),(21,3)");
  show(21, [&](FormPeriodBranch& screen) {
    // Upwards from the last row is the same range as downwards.
    screen.flxPeriodBranch.selectRow(2);
    screen.flxPeriodBranch.press(ui::Key::Up, true);
    for (const int noOrNothing : {0, 7}) {
      notices.answer(noOrNothing);
      screen.cmdDeleteRows.click();
      EXPECT_EQ(notices.taken(), "پرسش براي حذف|آيا براي پنهان کردن رديف(هاي) انتخابي مطمئن هستيد؟");
    }
    EXPECT_FALSE(screen.ChangedFlag);
    notices.answer(1);
    screen.press(ui::KeyChord::ctrlAnd('D'));
    EXPECT_EQ(periodsOf(21), "1");
    notices.answer(1);
    screen.cmdDeleteRows.click();
    notices.take();
    EXPECT_EQ(screen.flxPeriodBranch.rowCount(), 0);
    screen.cmdDeleteRows.click();
    EXPECT_EQ(notices.taken(), "") << "the headers alone are nothing to ask about";
  });
  EXPECT_EQ(periodsOf(21), "");

  members("(12,1),(12,2),(12,3)");
  show(12, [&](FormPeriodBranch& screen) {
    screen.flxPeriodBranch.press(ui::Key::End, true);
    notices.answer(1);
    screen.cmdDeleteRows.click();
    const auto told = notices.take();
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[1].message,
              "تعداد «2» از اسناد حسابداري به « سال 1403» وابسته است. به عنوان مثال سند با ش.ر. «501»");
    EXPECT_EQ(told[2].message,
              "تعداد «1» از اسناد حسابداري به « سال 1404» وابسته است. به عنوان مثال سند با ش.ر. «503»");
  });
  EXPECT_EQ(periodsOf(12), "1 2");

  EXPECT_TRUE(show(12, [&](FormPeriodBranch& screen) {
    notices.answer(1);
    screen.cmdDeleteRows.click();
    EXPECT_EQ(notices.take().size(), 2U);
  })) << "also where every row was blocked";
  EXPECT_EQ(periodsOf(12), "1 2");
}

TEST_F(PeriodBranchTest, WithoutAnAccountOnlyTheHarmlessCommandsAreInReach) {
  members("(12,1)");
  for (const int nobody : {-1, 999}) {
    show(nobody, [&](FormPeriodBranch& screen) {
      EXPECT_TRUE(screen.sltAccount.IsEmpty());
      EXPECT_EQ(grid(screen), "");
      EXPECT_FALSE(screen.sltPeriod.IsActive());
      screen.cmdAdd.click();
      screen.cmdDel.click();
      screen.cmdDeleteRows.click();
      EXPECT_EQ(notices.taken(), "");
      screen.cmdDeleteAllRows.click();
      EXPECT_EQ(notices.taken(), "");
    });
  }
  EXPECT_EQ(accountsOf(1), "12");
  show(21, [&](FormPeriodBranch& screen) {
    pick(screen.sltPeriod, "سال 1405");
    screen.cmdAdd.click();
  });
  EXPECT_EQ(periodsOf(21), "3");

  screens.unload();
  show(21, [&](FormPeriodBranch& screen) {
    EXPECT_TRUE(screen.sltPeriod.IsEmpty()) << "loaded anew";
    screens.unload();
    EXPECT_FALSE(screen.isShown());
  });
}

/// Each command of the screen, and what it leaves of the periods of account 21, which starts in 1 and 2.
struct Command {
  const char* name;
  std::function<void(FormPeriodBranch&)> person;
  std::string done;
};

TEST_F(PeriodBranchTest, EveryFailureLeavesTheScreenAndTheDataInOrder) {
  const Command commands[] = {
      {"add to all", [](FormPeriodBranch& screen) { screen.cmdAdd.click(); }, "1 2 3"},
      {"hide from all", [](FormPeriodBranch& screen) { screen.cmdDel.click(); }, ""},
      {"hide all rows", [](FormPeriodBranch& screen) { screen.cmdDeleteAllRows.click(); }, ""},
      {"hide rows",
       [](FormPeriodBranch& screen) {
         screen.flxPeriodBranch.press(ui::Key::End, true);
         screen.cmdDeleteRows.click();
       },
       ""},
  };
  for (const Command& command : commands) {
    for (int n = 1;; ++n) {
      SCOPED_TRACE(std::string(command.name) + ", failure " + std::to_string(n));
      members("(21,1),(21,2)");
      std::string afterFailure;
      const bool changed = show(21, [&](FormPeriodBranch& screen) {
        faults.failAt(n);
        notices.answer(1);
        command.person(screen);
        afterFailure = periodsOf(21);
        if (faults.failures() > 0) {
          EXPECT_EQ(notices.take().back(), (Notice{"خطا", std::string(Faults::kMessage), false}));
          EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
          // The grid never shows a row that is gone.
          EXPECT_LE(screen.flxPeriodBranch.rowCount(), static_cast<int>((afterFailure.size() + 1) / 2));
        }
        EXPECT_EQ(screen.ChangedFlag, afterFailure != "1 2");
      });
      EXPECT_EQ(changed, afterFailure != "1 2");
      const bool failed = faults.failures() > 0;
      faults.heal();
      show(21, [&](FormPeriodBranch& screen) {
        EXPECT_EQ(screen.flxPeriodBranch.rowCount(), static_cast<int>((afterFailure.size() + 1) / 2));
        notices.answer(1);
        command.person(screen);
      });
      EXPECT_EQ(periodsOf(21), command.done);
      notices.take();
      if (!failed) break;
    }
  }
}

TEST_F(PeriodBranchTest, AFailureAheadOfTheShowingGoesToTheCaller) {
  faults.failWhere("PeriodName");
  EXPECT_THROW(static_cast<void>(screens.ShowPeriodBranch(21)), data::DataError);
  faults.heal();
  show(21, [](FormPeriodBranch& screen) { screen.cmdExit.click(); });
}

}  // namespace
}  // namespace ledgertree::testing
