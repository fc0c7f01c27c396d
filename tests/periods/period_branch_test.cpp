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
    for (int row = 0; row < screen.flxPeriodBranch.rowCount(); ++row)
      for (int column = 0; column < 3; ++column) rows += screen.flxPeriodBranch.text(row, column) + "|";
    return rows;
  }
};

constexpr const char* kAll = "پرسش|از آنجايي که سال مالي انتخاب نشده است، همه سالهاي مالي مد نظر داريد؟";

TEST_F(PeriodBranchTest, AddsAnAccountToOnePeriodAndFillsTheGaps) {
  members("");
  const bool changed = show(20, [&](FormPeriodBranch& screen) {
    EXPECT_EQ(screen.sltAccount.SelectedText(), "بدهي");
    EXPECT_FALSE(screen.sltAccount.IsActive());
    EXPECT_EQ(screen.firstFocus(), &screen.sltPeriod);
    EXPECT_EQ(grid(screen), "");
    pick(screen.sltPeriod, "سال 1404");
    EXPECT_EQ(movesBy(screen.cmdAdd), "+20|2");
    EXPECT_TRUE(screen.press(ui::KeyChord::of(ui::Key::Enter)));
    EXPECT_EQ(moves(), "");
    EXPECT_EQ(grid(screen), "1|سال 1404|2|");
    EXPECT_EQ(desktop.hourglasses, 2);
    screen.press(ui::KeyChord::of(ui::Key::Escape));
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_TRUE(changed);

  // The screen stayed loaded with its period; without one, each command asks what is meant.
  const bool changedAgain = show(20, [&](FormPeriodBranch& screen) {
    EXPECT_EQ(screen.sltPeriod.SelectedID(), 2);
    screen.sltPeriod.press(ui::Key::Delete);
    for (const int noOrNothing : {0, 7}) {
      for (auto* command : {&screen.cmdAdd, &screen.cmdDel}) {
        expectUnchosen(screen.sltPeriod, *command);
        screen.cmdExit.focus();
        notices.answer(noOrNothing);
        EXPECT_EQ(toldBy(*command), std::string(kAll) + "\nاشکال|سال مالي را تعيين نماييد.");
        EXPECT_TRUE(screen.sltPeriod.hasFocus());
      }
    }
    EXPECT_FALSE(screen.ChangedFlag);
    EXPECT_EQ(moves(), "");
    notices.answer(1);
    EXPECT_EQ(toldBy(screen.cmdAdd), kAll);
    EXPECT_EQ(screen.flxPeriodBranch.rowCount(), 4);
    screen.closeByPerson();
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_TRUE(changedAgain);
  EXPECT_EQ(moves(), "+20|1 +20|3 +20|4");

  EXPECT_FALSE(show(20, [](FormPeriodBranch& screen) {
    screen.cmdExit.click();
    EXPECT_FALSE(screen.isShown());
  }));
}

TEST_F(PeriodBranchTest, HidesUnlessTheSubtreeHasALineAndThePeriodADocument) {
  members("(10,1),(10,2),(10,3),(11,3),(12,3),(21,1),(21,2),(21,3)");
  show(10, [&](FormPeriodBranch& screen) {
    // The one line, two levels below, is of 1403. It blocks 1404 too, which has documents of others.
    pick(screen.sltPeriod, "سال 1404");
    screen.cmdExit.focus();
    EXPECT_EQ(toldBy(screen.cmdDel),
              "اشکال|تعداد «1» از اسناد حسابداري به دوره مالي سال 1404 وابسته است. به عنوان مثال سند با ش.ر. "
              "«503»");
    EXPECT_TRUE(screen.sltPeriod.hasFocus());
    EXPECT_FALSE(screen.ChangedFlag);
    EXPECT_EQ(moves(), "");

    pick(screen.sltPeriod, "سال 1405");
    EXPECT_EQ(toldBy(screen.cmdDel), "") << "nothing is asked where a period is chosen";
    EXPECT_EQ(moves(), "-10|3") << "what is below keeps its rows";
    EXPECT_TRUE(std::exchange(screen.ChangedFlag, false));
    EXPECT_EQ(grid(screen), "1|سال 1403|1|2|سال 1404|2|3|سال 1406|4|");

    screen.sltPeriod.press(ui::Key::Delete);
    notices.answer(1);
    EXPECT_EQ(
        toldBy(screen.cmdDel),
        std::string(kAll) +
            "\nاشکال|تعداد «3» از اسناد حسابداري به دوره مالي  وابسته است. به عنوان مثال سند با ش.ر. «501»");
    screen.cmdExit.focus();
    EXPECT_EQ(toldBy(screen.cmdDeleteAllRows),
              "اشکال|تعداد «3» از اسناد حسابداري به دوره مالي مورد نظر وابسته است. به عنوان مثال سند با ش.ر. "
              "«501»");
    EXPECT_TRUE(screen.sltPeriod.hasFocus());
    EXPECT_FALSE(screen.ChangedFlag);
  });
  EXPECT_EQ(moves(), "");

  // An account without a line in its subtree goes, whatever documents the periods hold.
  show(21, [&](FormPeriodBranch& screen) {
    pick(screen.sltPeriod, "سال 1403");
    EXPECT_EQ(movesBy(screen.cmdDel), "-21|1");
    EXPECT_TRUE(std::exchange(screen.ChangedFlag, false));
    screen.cmdDeleteAllRows.click();
    EXPECT_TRUE(screen.ChangedFlag);
    EXPECT_EQ(notices.taken(), "") << "all of them go without a question";
    EXPECT_EQ(grid(screen), "");
  });
  EXPECT_EQ(moves(), "-21|2 -21|3 -21|4");

  // A line whose document is in no period blocks hiding from everywhere, as the documents of no period count
  // where no period is named, and doesn't by itself where any is.
  given(
      "delete from tblAccountDocumentDetail; delete from tblAccountDocument;"
      "insert into tblAccountDocument (ID, FarsiDocumentDate) values (900, '1390/01/01');"
      "insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (9, 900, 12)");
  show(12, [&](FormPeriodBranch& screen) {
    screen.sltPeriod.press(ui::Key::Delete);
    notices.answer(1);
    screen.cmdDel.click();
    EXPECT_EQ(notices.take().size(), 2U);
    EXPECT_EQ(moves(), "");
    EXPECT_EQ(movesBy(screen.cmdDeleteAllRows), "-12|3 -12|4");
  });
  show(30, [&](FormPeriodBranch& screen) {
    notices.answer(1);
    EXPECT_EQ(movesBy(screen.cmdDel), "-30|1 -30|2 -30|3 -30|4");
  });
}

TEST_F(PeriodBranchTest, HidesTheRowsOfARangeThatNothingBlocks) {
  members("(20,1),(20,2),(20,3)");
  constexpr const char* kSure = "پرسش براي حذف|آيا براي پنهان کردن رديف(هاي) انتخابي مطمئن هستيد؟";
  show(20, [&](FormPeriodBranch& screen) {
    // Upwards from the last row is the same range as downwards.
    screen.flxPeriodBranch.selectRow(2);
    screen.flxPeriodBranch.press(ui::Key::Up, true);
    for (const int noOrNothing : {0, 7}) {
      notices.answer(noOrNothing);
      EXPECT_EQ(toldBy(screen.cmdDeleteRows), kSure);
    }
    EXPECT_FALSE(screen.ChangedFlag);
    EXPECT_EQ(moves(), "");
    notices.answer(1);
    screen.press(ui::KeyChord::ctrlAnd('D'));
    EXPECT_EQ(moves(), "-20|2 -20|3");
    EXPECT_EQ(desktop.hourglasses, 4) << "for each row a test and a deletion";
    EXPECT_EQ(grid(screen), "1|سال 1403|1|");
    notices.answer(1);
    screen.cmdDeleteRows.click();
    notices.take();
    EXPECT_EQ(moves(), "-20|1");
    EXPECT_EQ(screen.flxPeriodBranch.rowCount(), 0);
    EXPECT_EQ(toldBy(screen.cmdDeleteRows), "") << "the headers alone are nothing to ask about";
  });

  // What is blocked stays, and what stands behind it goes; the screen counts as changed also where every row
  // was blocked.
  members("(12,1),(12,2),(12,3)");
  for (const std::string gone : {"-12|3", ""}) {
    EXPECT_TRUE(show(12, [&](FormPeriodBranch& screen) {
      screen.flxPeriodBranch.extendTo(gone.empty() ? 1 : 2);
      notices.answer(1);
      screen.cmdDeleteRows.click();
    }));
    EXPECT_EQ(
        notices.taken(),
        std::string(kSure) +
            "\nاشکال|تعداد «2» از اسناد حسابداري به « سال 1403» وابسته است. به عنوان مثال سند با ش.ر. «501»"
            "\nاشکال|تعداد «1» از اسناد حسابداري به « سال 1404» وابسته است. به عنوان مثال سند با ش.ر. «503»");
    EXPECT_EQ(moves(), gone);
  }
}

TEST_F(PeriodBranchTest, WithoutAnAccountOnlyTheHarmlessCommandsAreInReach) {
  members("(12,1)");
  const auto commands = [](const FormPeriodBranch& screen) {
    std::string enabled;
    for (const auto* command :
         {&screen.cmdAdd, &screen.cmdDel, &screen.cmdDeleteRows, &screen.cmdDeleteAllRows})
      if (command->enabled()) enabled += command->name() + " ";
    return enabled + (screen.sltPeriod.IsActive() ? screen.sltPeriod.name() : "");
  };
  for (const int nobody : {-1, 999}) {
    EXPECT_FALSE(show(nobody, [&](FormPeriodBranch& screen) {
      EXPECT_EQ(screen.sltAccount.SelectedID(), nobody);
      EXPECT_EQ(grid(screen), "");
      EXPECT_EQ(commands(screen), "cmdDeleteAllRows ");
      EXPECT_EQ(screen.firstFocus(), &screen.cmdExit);
    }));
    EXPECT_TRUE(show(nobody, [&](FormPeriodBranch& screen) { screen.cmdDeleteAllRows.click(); }));
    EXPECT_EQ(notices.taken(), "");
    EXPECT_EQ(moves(), "");
  }
  show(21, [&](FormPeriodBranch& screen) {
    EXPECT_EQ(commands(screen), "cmdAdd cmdDel cmdDeleteRows cmdDeleteAllRows sltPeriod");
    EXPECT_EQ(screen.firstFocus(), &screen.sltPeriod);
    pick(screen.sltPeriod, "سال 1405");
  });

  screens.unload();
  show(21, [&](FormPeriodBranch& screen) {
    EXPECT_TRUE(screen.sltPeriod.IsEmpty()) << "loaded anew";
    screens.unload();
    EXPECT_FALSE(screen.isShown());
  });
}

/// Each command of the screen, and what it does to account 21, which starts in 1, 2 and 4.
struct Command {
  const char* name;
  std::function<void(FormPeriodBranch&)> person;
  std::string done;
};

TEST_F(PeriodBranchTest, EveryFailureLeavesTheScreenAndTheDataInOrder) {
  const std::string none = "-21|1 -21|2 -21|4";
  const Command commands[] = {
      {"add to all", [](FormPeriodBranch& screen) { screen.cmdAdd.click(); }, "+21|3"},
      {"hide from all", [](FormPeriodBranch& screen) { screen.cmdDel.click(); }, none},
      {"hide all rows", [](FormPeriodBranch& screen) { screen.cmdDeleteAllRows.click(); }, none},
      {"hide rows",
       [](FormPeriodBranch& screen) {
         screen.flxPeriodBranch.press(ui::Key::End, true);
         screen.cmdDeleteRows.click();
       },
       none},
  };
  const auto count = [&] {
    return static_cast<int>(
        database.number("select count(*) from tblAccountPeriodAccount where AccountID = 21"));
  };
  for (const Command& command : commands) {
    bool failed = true;
    for (int n = 1; failed; ++n) {
      SCOPED_TRACE(std::string(command.name) + ", failure " + std::to_string(n));
      members("(21,1),(21,2)");
      const bool changed = show(21, [&](FormPeriodBranch& screen) {
        faults.failAt(n);
        notices.answer(1);
        command.person(screen);
        failed = faults.failures() > 0;
        faults.heal();
        if (failed) {
          EXPECT_EQ(notices.take().back(), (Notice{"خطا", std::string(Faults::kMessage), false}));
          EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
          // The grid never shows a row that is gone.
          EXPECT_LE(screen.flxPeriodBranch.rowCount(), count());
        }
      });
      EXPECT_EQ(changed, count() != 3);
      show(21, [&](FormPeriodBranch& screen) {
        EXPECT_EQ(screen.flxPeriodBranch.rowCount(), count());
        notices.answer(1);
        command.person(screen);
      });
      EXPECT_EQ(moves(), command.done);
      notices.take();
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
