#include "periods/copy_period.h"

#include "periods/period_house.h"

namespace ledgertree::testing {
namespace {

using periods::FormCopyPeriodAccount;

class CopyPeriodTest : public PeriodHouse {
 protected:
  bool show(const std::function<void(FormCopyPeriodAccount&)>& person) {
    desktop.inModal("FormCopyPeriodAccount",
                    [&](ui::Form& form) { person(as<FormCopyPeriodAccount>(form)); });
    return screens.showCopyPeriod();
  }
  static constexpr const char* kNoSource = "پرسش|آيا مطمئن هستيد که دوره مالي مبدا را نميخواهيد مشخص نماييد؟";
};

TEST_F(CopyPeriodTest, PutsTheWholeChartIntoAPeriod) {
  members("(12,2),(12,1)");
  const bool changed = show([&](FormCopyPeriodAccount& screen) {
    screen.cmdAutoCodding.focus();
    screen.press(ui::KeyChord::of(ui::Key::Enter));
    EXPECT_EQ(notices.taken(), "اشکال|مقصد دوره مالي را بايد مشخص کنيد!");
    EXPECT_TRUE(screen.sltPeriodTo.hasFocus());
    EXPECT_EQ(desktop.layouts.back(), "00000429");

    pick(screen.sltPeriodTo, "سال 1404");
    for (const int noOrNothing : {0, 7}) {
      notices.answer(noOrNothing);
      screen.cmdAutoCodding.click();
      EXPECT_EQ(notices.taken(), kNoSource);
      EXPECT_TRUE(screen.isShown());
    }
    EXPECT_EQ(accountsOf(2), "12");
    notices.answer(1);
    screen.cmdAutoCodding.click();
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(accountsOf(2), "10 11 12 20 21");
  EXPECT_EQ(accountsOf(1), "12");
}

TEST_F(CopyPeriodTest, MergesAPeriodIntoAnother) {
  members("(10,1),(11,1),(11,2),(20,2)");
  const auto merge = [&](const std::string& from, const std::string& to) {
    return show([&](FormCopyPeriodAccount& screen) {
      EXPECT_TRUE(screen.sltPeriodTo.IsEmpty()) << "loaded anew";
      pick(screen.sltPeriodFrom, from);
      pick(screen.sltPeriodTo, to);
      screen.cmdAutoCodding.click();
      EXPECT_EQ(notices.taken(), "");
    });
  };
  EXPECT_TRUE(merge("سال 1403", "سال 1404"));
  EXPECT_EQ(accountsOf(2), "10 11 20");
  EXPECT_TRUE(merge("سال 1403", "سال 1404"));
  EXPECT_TRUE(merge("سال 1404", "سال 1404"));
  EXPECT_TRUE(merge("سال 1405", "سال 1404"));
  EXPECT_EQ(accountsOf(2), "10 11 20");
  EXPECT_EQ(accountsOf(1), "10 11");
}

TEST_F(CopyPeriodTest, LeavesWithoutACopy) {
  members("(10,1)");
  const auto leave = [&](const std::function<void(FormCopyPeriodAccount&)>& way) {
    EXPECT_FALSE(show([&](FormCopyPeriodAccount& screen) {
      pick(screen.sltPeriodFrom, "سال 1403");
      pick(screen.sltPeriodTo, "سال 1404");
      way(screen);
    }));
  };
  leave([](FormCopyPeriodAccount& screen) { screen.cmdCancel.click(); });
  leave([](FormCopyPeriodAccount& screen) { screen.press(ui::KeyChord::of(ui::Key::Escape)); });
  leave([](FormCopyPeriodAccount& screen) { screen.closeByPerson(); });
  EXPECT_EQ(accountsOf(2), "");
}

TEST_F(CopyPeriodTest, AFailingCopyTellsWhatItChangedAndCanBeFinished) {
  for (const std::string source : {"", "سال 1403"}) {
    for (int n = 1;; ++n) {
      SCOPED_TRACE("from «" + source + "», failure " + std::to_string(n));
      members("(10,1),(12,2)");
      const auto copy = [&](FormCopyPeriodAccount& screen) {
        notices.answer(1);
        screen.cmdAutoCodding.click();
        return screen.isShown();
      };
      const bool changed = show([&](FormCopyPeriodAccount& screen) {
        if (!source.empty()) pick(screen.sltPeriodFrom, source);
        pick(screen.sltPeriodTo, "سال 1404");
        faults.failAt(n);
        if (!copy(screen)) return;
        EXPECT_EQ(notices.take().back().message, Faults::kMessage);
        EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
        screen.cmdCancel.click();
      });
      EXPECT_EQ(changed, accountsOf(2) != "12");
      const bool failed = faults.failures() > 0;
      faults.heal();
      EXPECT_TRUE(show([&](FormCopyPeriodAccount& screen) {
        if (!source.empty()) pick(screen.sltPeriodFrom, source);
        pick(screen.sltPeriodTo, "سال 1404");
        EXPECT_FALSE(copy(screen));
      }));
      EXPECT_EQ(accountsOf(2), source.empty() ? "10 11 12 20 21" : "10 12");
      notices.take();
      if (!failed) break;
    }
  }
}

}  // namespace
}  // namespace ledgertree::testing
