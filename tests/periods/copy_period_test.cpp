#include "periods/copy_period.h"

#include "periods/period_house.h"

namespace ledgertree::testing {
namespace {

using periods::FormCopyPeriodAccount;

class CopyPeriodTest : public PeriodHouse {
 protected:
  bool show(const std::function<void(FormCopyPeriodAccount&)>& act) {
    inScreen("FormCopyPeriodAccount", act);
    return screens.showCopyPeriod();
  }
  bool show(const std::string& section) {
    return show([&](FormCopyPeriodAccount& screen) { walk(screen, section); });
  }
};

TEST_F(CopyPeriodTest, PutsTheWholeChartIntoAPeriodAndMergesAPeriodIntoAnother) {
  members("(12,2),(12,1)");
  EXPECT_TRUE(show("the whole chart into a period"));
  members("(10,1),(11,1),(11,2),(20,2)");
  for (const char* section : {"a period into another", "the same again", "a period into itself",
                              "nobody but the neighbour is there", "a period into an empty one"})
    EXPECT_TRUE(show(section));
}

TEST_F(CopyPeriodTest, LeavesWithoutACopy) {
  members("(10,1)");
  for (const char* way : {"a copy is cancelled", "a copy is left by Escape", "a copy is left by the frame"})
    EXPECT_FALSE(show(way));
}

TEST_F(CopyPeriodTest, AFailingCopyTellsWhatItChangedAndCanBeFinished) {
  for (const std::string source : {"", "سال 1403"}) {
    bool failed = true;
    for (int n = 1; failed; ++n) {
      SCOPED_TRACE("from «" + source + "», failure " + std::to_string(n));
      members("(10,1),(12,2)");
      const auto copy = [&](int failing) {
        return show([&](FormCopyPeriodAccount& screen) {
          if (!source.empty()) pick(screen.sltPeriodFrom, source);
          pick(screen.sltPeriodTo, "سال 1404");
          faults.failAt(failing);
          notices.answer(1);
          screen.cmdAutoCodding.click();
          EXPECT_EQ(screen.isShown(), faults.failures() > 0);
          EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
        });
      };
      const bool changed = copy(n);
      EXPECT_EQ(changed, accountsOf(2) != "12\n30");
      failed = faults.failures() > 0;
      faults.heal();
      if (failed) {
        EXPECT_EQ(notices.take().back().message, Faults::kMessage);
        EXPECT_TRUE(copy(0));
      }
      EXPECT_EQ(moves(), source.empty() ? "+10|2 +11|2 +20|2 +21|2" : "+10|2");
      notices.take();
    }
  }
}

}  // namespace
}  // namespace ledgertree::testing
