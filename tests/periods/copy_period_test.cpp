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
    for (auto* field : {&screen.sltPeriodFrom, &screen.sltPeriodTo})
      expectUnchosen(*field, screen.cmdAutoCodding);
    EXPECT_TRUE(screen.sltPeriodTo.hasFocus());

    pick(screen.sltPeriodTo, "سال 1404");
    for (const int noOrNothing : {0, 7}) {
      notices.answer(noOrNothing);
      EXPECT_EQ(toldBy(screen.cmdAutoCodding), kNoSource);
      EXPECT_TRUE(screen.isShown());
    }
    EXPECT_EQ(moves(), "");
    EXPECT_EQ(desktop.hourglasses, 0);
    notices.answer(1);
    screen.cmdAutoCodding.click();
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(moves(), "+10|2 +11|2 +20|2 +21|2");
  EXPECT_EQ(desktop.hourglasses, 2);
}

TEST_F(CopyPeriodTest, MergesAPeriodIntoAnother) {
  members("(10,1),(11,1),(11,2),(20,2)");
  const auto merge = [&](const std::string& from, const std::string& to) {
    EXPECT_TRUE(show([&](FormCopyPeriodAccount& screen) {
      EXPECT_TRUE(screen.sltPeriodTo.IsEmpty() && screen.sltPeriodFrom.IsEmpty()) << "loaded anew";
      pick(screen.sltPeriodFrom, from);
      pick(screen.sltPeriodTo, to);
      screen.cmdAutoCodding.click();
      EXPECT_FALSE(screen.isShown());
      EXPECT_EQ(notices.taken(), "");
    }));
    return moves();
  };
  EXPECT_EQ(merge("سال 1403", "سال 1404"), "+10|2");
  EXPECT_EQ(merge("سال 1403", "سال 1404"), "");
  EXPECT_EQ(merge("سال 1404", "سال 1404"), "");
  EXPECT_EQ(merge("سال 1405", "سال 1404"), "") << "nobody but the neighbour is there";
  EXPECT_EQ(merge("سال 1404", "سال 1405"), "+10|3 +11|3 +20|3");
}

TEST_F(CopyPeriodTest, LeavesWithoutACopy) {
  members("(10,1)");
  for (auto* const way :
       {+[](FormCopyPeriodAccount& screen) { screen.cmdCancel.click(); },
        +[](FormCopyPeriodAccount& screen) { EXPECT_TRUE(screen.press(ui::KeyChord::of(ui::Key::Escape))); },
        +[](FormCopyPeriodAccount& screen) { screen.closeByPerson(); }}) {
    EXPECT_FALSE(show([&](FormCopyPeriodAccount& screen) {
      pick(screen.sltPeriodFrom, "سال 1403");
      pick(screen.sltPeriodTo, "سال 1404");
      way(screen);
      EXPECT_FALSE(screen.isShown());
    }));
  }
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
          EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
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
