#include <set>

#include "engines/sqlite/dialect.h"
#include "periods/copy_period.h"
#include "periods/delete_period.h"
#include "periods/period_branch.h"
#include "periods/period_house.h"

namespace ledgertree::testing {
namespace {

class PeriodPlansTest : public PeriodHouse {
 protected:
  /// What the engine reads from end to end for the statements since the last call, as "SCAN table".
  std::set<std::string> scans() {
    std::set<std::string> found;
    for (const std::string& command : faults.take()) {
      if (command.starts_with("search ")) continue;
      SQLite::Statement plan(database.other(),
                             "explain query plan " + engines::sqlite::translate(command).sql);
      while (plan.executeStep()) {
        const std::string step = plan.getColumn("detail").getString();
        if (step.starts_with("SCAN ")) found.insert(step.substr(0, step.find(' ', 5)));
      }
    }
    return found;
  }
};

TEST_F(PeriodPlansTest, NothingThatGrowsIsReadForAnythingButItsOwnRows) {
  if (onServer()) GTEST_SKIP() << "a server has plans of its own";
  using Scans = std::set<std::string>;
  const auto branch = [&](const std::function<void(periods::FormPeriodBranch&)>& person) {
    desktop.inModal("FormPeriodBranch", [&](ui::Form& form) { person(as<periods::FormPeriodBranch>(form)); });
    static_cast<void>(screens.ShowPeriodBranch(21));
    return scans();
  };
  const auto copy = [&](int from) {
    desktop.inModal("FormCopyPeriodAccount", [&](ui::Form& form) {
      auto& screen = as<periods::FormCopyPeriodAccount>(form);
      screen.sltPeriodFrom.setSelectedID(from);
      screen.sltPeriodTo.setSelectedID(3);
      notices.answer(1);
      screen.cmdAutoCodding.click();
    });
    EXPECT_TRUE(screens.showCopyPeriod());
    return scans();
  };
  const auto empty = [&](ui::PushButton periods::FormDeletePeriod::*command) {
    desktop.inModal("FormDeletePeriod", [&](ui::Form& form) {
      auto& screen = as<periods::FormDeletePeriod>(form);
      screen.sltPeriodFrom.setSelectedID(3);
      notices.answer(1);
      (screen.*command).click();
    });
    EXPECT_TRUE(screens.showDeletePeriod());
    return scans();
  };

  EXPECT_EQ(branch([&](auto& screen) {
              screen.sltPeriod.setSelectedID(3);
              screen.cmdAdd.click();
              screen.cmdDel.click();
              screen.cmdAdd.click();
              notices.answer(1);
              screen.cmdDeleteRows.click();
            }),
            Scans());
  EXPECT_EQ(branch([&](auto& screen) {
              screen.sltPeriod.Clear();
              notices.answer(1);
              screen.cmdAdd.click();
            }),
            Scans{"SCAN tblAccountPeriod"});
  // The documents themselves are what the tests without a period give back.
  EXPECT_EQ(branch([&](auto& screen) { screen.cmdDeleteAllRows.click(); }), (Scans{"SCAN d", "SCAN p"}));

  EXPECT_EQ(copy(-1), Scans{"SCAN tblAccount"});
  EXPECT_EQ(copy(1), Scans());
  EXPECT_EQ(empty(&periods::FormDeletePeriod::cmdDeletePossible), Scans());
  EXPECT_EQ(empty(&periods::FormDeletePeriod::cmdDelete), Scans());
}

}  // namespace
}  // namespace ledgertree::testing
