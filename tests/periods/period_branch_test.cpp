#include "periods/period_branch.h"

#include <algorithm>

#include "periods/period_house.h"

namespace ledgertree::testing {
namespace {

using periods::FormPeriodBranch;

class PeriodBranchTest : public PeriodHouse {
 protected:
  bool show(int account, const std::function<void(FormPeriodBranch&)>& act) {
    inScreen("FormPeriodBranch", act);
    return screens.ShowPeriodBranch(account);
  }
  /// Seen are also the rows, the selected ones in brackets, and the disabled commands.
  bool show(int account, const std::string& section) {
    return show(account, [&](FormPeriodBranch& screen) {
      walk(screen, section, [&] {
        std::string text;
        const ui::Grid& grid = screen.flxPeriodBranch;
        const auto [first, last] = std::minmax({grid.currentRow(), grid.selectionEnd()});
        for (int row = 0; row < grid.rowCount(); ++row) {
          text += row == first ? "[" : "";
          text += grid.text(row, 0) + " " + grid.text(row, 1) + " " + grid.text(row, 2);
          text += row == last ? "] " : " ";
        }
        for (const auto* command :
             {&screen.cmdAdd, &screen.cmdDel, &screen.cmdDeleteRows, &screen.cmdDeleteAllRows})
          if (!command->enabled()) text += "!" + command->name() + " ";
        return text + (screen.sltPeriod.IsActive() ? "" : "!sltPeriod ");
      });
    });
  }
};

TEST_F(PeriodBranchTest, AddsAnAccountToOnePeriodAndFillsTheGaps) {
  members("");
  EXPECT_FALSE(show(20, [&](FormPeriodBranch& screen) {
    EXPECT_FALSE(screen.sltAccount.IsActive());
    EXPECT_EQ(screen.firstFocus(), &screen.sltPeriod);
  }));
  EXPECT_TRUE(show(20, "an account is added to a period"));
  // The screen stayed loaded with its period; without one, each command asks what is meant.
  EXPECT_TRUE(show(20, "without a period each command asks"));
  EXPECT_FALSE(show(20, "nothing is done"));
}

TEST_F(PeriodBranchTest, HidesUnlessTheSubtreeHasALineAndThePeriodADocument) {
  members("(10,1),(10,2),(10,3),(11,3),(12,3),(21,1),(21,2),(21,3)");
  show(10, "a line two levels below");
  show(21, "an account without a line in its subtree");

  // A line whose document is in no period prevents hiding from all periods, since without a chosen period
  // documents of no period count; for any single period it alone prevents nothing.
  given(
      "delete from tblAccountDocumentDetail; delete from tblAccountDocument;"
      "insert into tblAccountDocument (ID, FarsiDocumentDate) values (900, '1390/01/01');"
      "insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (9, 900, 12)");
  show(12, "a line outside of all periods");
  show(30, "the neighbour goes from everywhere");
}

TEST_F(PeriodBranchTest, HidesTheRowsOfARangeThatNothingBlocks) {
  members("(20,1),(20,2),(20,3)");
  EXPECT_TRUE(show(20, "a range upwards"));
  // Blocked rows stay, and the rows after them go; the screen counts as changed even if all rows were
  // blocked.
  members("(12,1),(12,2),(12,3)");
  EXPECT_TRUE(show(12, "a range with blocked rows"));
  EXPECT_TRUE(show(12, "nothing but blocked rows"));
}

TEST_F(PeriodBranchTest, WithoutAnAccountOnlyTheHarmlessCommandsAreInReach) {
  members("(12,1)");
  for (const int nobody : {-1, 999}) {
    EXPECT_FALSE(show(nobody, [&](FormPeriodBranch& screen) {
      EXPECT_EQ(screen.sltAccount.SelectedID(), nobody);
      EXPECT_EQ(screen.firstFocus(), &screen.cmdExit);
    }));
    EXPECT_TRUE(show(nobody, nobody == -1 ? "without an account" : "an account that is gone"));
  }
  show(21, "an account again");

  screens.unload();
  show(21, [&](FormPeriodBranch& screen) {
    EXPECT_TRUE(screen.sltPeriod.IsEmpty()) << "loaded anew";
    screens.unload();
    EXPECT_FALSE(screen.isShown());
  });
}

/// Each command of the screen, and its effect on account 21, which starts in 1, 2 and 4.
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
          EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
          // The grid never shows a deleted row.
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

TEST_F(PeriodBranchTest, WhatSomebodyElseDidToTheListIsToldAheadAndBehind) {
  members("(21,1)");
  EXPECT_TRUE(show(21, [&](FormPeriodBranch& screen) {
    given("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (21, 2)");
    EXPECT_NE(toldBy(screen.cmdDeleteAllRows).find("داده است: افزوده شده «سال 1404»"), std::string::npos);
    EXPECT_EQ(screen.flxPeriodBranch.rowCount(), 3) << "nothing was hidden, and the grid shows it";
    faults.onAnswer = [&](const std::string& command, const auto&) {
      if (command.starts_with("delete"))
        database.execute("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (21, 3)");
    };
    EXPECT_NE(toldBy(screen.cmdDeleteAllRows).find("تغيير داد: افزوده شده «سال 1405»"), std::string::npos);
    faults.onAnswer = nullptr;
    static_cast<void>(moves());
  }));
}

TEST_F(PeriodBranchTest, AFailureAheadOfTheShowingGoesToTheCaller) {
  faults.failWhere("PeriodName");
  EXPECT_THROW(static_cast<void>(screens.ShowPeriodBranch(21)), data::DataError);
  faults.heal();
  show(21, [](FormPeriodBranch& screen) { screen.cmdExit.click(); });
}

}  // namespace
}  // namespace ledgertree::testing
