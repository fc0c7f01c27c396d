#include "entities/rel_classes.h"

#include <chrono>

#include "entity_house.h"

namespace ledgertree::testing {
namespace {

using entities::frmAccountRelClasses;
using ui::Key;
using ui::KeyChord;

constexpr const char* kSaved = "اتمام عمليات|عمليات ثبت با موفقيت انجام شد.";
constexpr const char* kGap =
    "عدم رعايت ترتيب|بين ترتيب انواع موجوديتهاي انتساب يافته فاصله وجود دارد. قبل از ثبت، لازم است كه اين "
    "فاصله برطرف شود.";

class RelClasses : public EntityHouse {};

TEST_F(RelClasses, AClassIsAddedOnceALevelAndStoredOnEach) {
  EXPECT_TRUE(classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(form.sltAccount.SelectedText(), "دارايي");
    EXPECT_FALSE(form.sltAccount.IsActive());
    EXPECT_EQ(form.cmbLevel.selectedText(), "1");
    walkClasses(form, "a class is added once a level");
    EXPECT_EQ(desktop.layout(), "00000429");
  }));
  EXPECT_FALSE(onClasses(10, "a list that is left is dropped"));
}

TEST_F(RelClasses, NoLevelStandsAboveAnEmptyOne) {
  struct Case {
    std::vector<int> levels;
    std::string stored;  ///< nothing if it is refused
  };
  for (const Case& one :
       {Case{{1, 2}, "classes: -10|3|1|null +10|1|1|null +10|2|2|null"}, Case{{2}, ""}, Case{{1, 3}, ""},
        Case{{3, 2}, ""}, Case{{2, 1, 1}, "classes: +10|1|2|null +10|2|1|null"},
        Case{{3, 1, 2}, "classes: -10|3|1|null +10|1|3|null +10|2|1|null +10|3|2|null"},
        Case{{}, "classes: -10|3|1|null"}}) {
    related("(10, 3, 1, null)");
    const bool saved = classesOf(10, [&](frmAccountRelClasses& form) {
      form.lstClasses.choose(0);
      form.cmdDelete.click();
      const char* names[] = {"اشخاص", "پروژه", "بانک"};
      for (std::size_t i = 0; i < one.levels.size(); ++i) add(form, names[i], one.levels[i]);
      form.cmdOk.click();
    });
    EXPECT_EQ(notices.taken(), one.stored.empty() ? kGap : kSaved);
    EXPECT_EQ(saved, !one.stored.empty());
    EXPECT_EQ(stored(), one.stored);
  }
}

TEST_F(RelClasses, LevelsMoveWithinTheirLimitsAndTheRestOfARowStays) {
  given("update tblAccountClass set Name = 'بانک 2#12#' where ID = 3");
  related("(10, 1, 1, 0), (10, 3, 2, 1), (10, 2, 12, null)");
  onClasses(10, "levels move within their limits");
}

TEST_F(RelClasses, WhatTheListShowsIsStoredAndEachRowKeepsHowItsObjectsCount) {
  for (const char* section :
       {"a level is left", "a line moves where another was", "both move on", "they change places",
        "they become one", "another class moves beside them", "a class that left comes again"}) {
    related("(10, 1, 1, 0), (10, 2, 1, 0), (10, 2, 2, 1)");
    onClasses(10, section);
  }
}

TEST_F(RelClasses, WhatSomebodyElseDidToTheListIsToldAheadAndBehind) {
  related("(10, 1, 1, 0)");
  classesOf(10, [&](frmAccountRelClasses& form) {
    add(form, "پروژه", 2);
    given("insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (10, 3, 1)");
    static_cast<void>(stored());
    EXPECT_NE(toldBy(form.cmdOk).find("آن را تغيير داده است: افزوده شده «1#30_بانکها»"), std::string::npos);
    EXPECT_EQ(stored(), "");
    faults.onAnswer = [&](const std::string& command, const auto&) {
      if (command.starts_with("Delete"))
        database.execute("delete from tblAccountRelatedClasses where ClassID = 2 and AccountID = 10");
    };
    const std::string told = toldBy(form.cmdOk);
    EXPECT_TRUE(told.starts_with(kSaved)) << "what was told counts as read: " << told;
    EXPECT_NE(told.find("تغيير داد: برداشته شده «2#_پروژه ها»"), std::string::npos) << told;
    EXPECT_EQ(stored(), "classes: -10|3|1|null");
    faults.onAnswer = nullptr;
  });
}

TEST_F(RelClasses, OneWaitForALockIsEnough) {
  related("(10, 1, 1, 0)");
  classesOf(10, [&](frmAccountRelClasses& form) {
    add(form, "پروژه", 1);
    add(form, "بانک", 2);
    int waited = 0;
    faults.onCommand = [&](const std::string& command) {
      if (command.starts_with("Select") || command.find("RelatedClasses") == std::string::npos) return;
      ++waited;
      EXPECT_EQ(desktop.cursor, ui::CursorShape::Hourglass);
      throw data::DataError(data::DataError::Reason::Busy, 5, "locked");
    };
    EXPECT_EQ(toldBy(form.cmdOk), kSaved);
    EXPECT_EQ(waited, 1);
    faults.onCommand = nullptr;
    EXPECT_EQ(stored(), "");
    EXPECT_EQ(storedBy(form.cmdOk), "classes: +10|2|1|null +10|3|2|null");
    notices.take();

    // On the embedded engine the user cancels the wait.
    if (onServer()) return;
    given("begin immediate");
    desktop.onWait = [&] {
      EXPECT_THROW(shell.dtEn()->cnMainData.Execute("Delete tblAccountRelatedClasses"), data::DataError);
      form.cmdOk.click();
      desktop.escape = true;
    };
    const auto begun = std::chrono::steady_clock::now();
    form.lstClasses.choose(1);
    form.cmdMoveDown.click();
    EXPECT_EQ(toldBy(form.cmdOk), kSaved);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, data::kCommandTimeOut / 2);
    EXPECT_EQ(desktop.waits, (std::vector<std::string>{"در انتظار پاسخ پايگاه داده|انصراف", "."}));
    given("rollback");
    EXPECT_EQ(storedBy(form.cmdOk), "classes: -10|2|1|null +10|2|2|null") << "the connection goes on";
  });
}

TEST_F(RelClasses, WhatCannotBeSavedIsToldAndLeavesTheRows) {
  given(
      "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (20, 1, 1), (10, 1, "
      "40000)");
  EXPECT_FALSE(onClasses(20, "an account with movements"));
  EXPECT_FALSE(classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(form.lstClasses.items().front().text, "40000#10_اشخاص");
    EXPECT_NE(toldBy(form.cmdOk).find("40000"), std::string::npos);
  }));
  related("(10, 1, 1, 1), (10, 77, 2, 0)");
  EXPECT_TRUE(onClasses(10, "a class that is gone"));
  EXPECT_FALSE(onClasses(-1, "no account"));
}

TEST_F(RelClasses, TheObjectsOfTheStoredClassesOpenFromHere) {
  related("(10, 2, 1, null)");
  classesOf(10, [&](frmAccountRelClasses& form) {
    add(form, "بانک", 1);
    expectObjects([&](entities::frmAccountRelObjects& inner) {
      EXPECT_EQ(inner.sltAccount.SelectedID(), 10);
      EXPECT_EQ(inner.cmbClass.items().size(), 1U);
      EXPECT_TRUE(inner.press(KeyChord::of(Key::Escape)));
      EXPECT_EQ(desktop.shownForms, std::vector<ui::Form*>{&form});
    });
    EXPECT_TRUE(form.press(KeyChord::ctrlAnd('O')));
    EXPECT_EQ(form.lstClasses.items().size(), 2U);
    form.cmdCancel.click();
    EXPECT_EQ(desktop.shownForms, std::vector<ui::Form*>());
  });
}

TEST_F(RelClasses, EachStatementMayFailOnce) {
  bool failed = true;
  for (int failing = 1; failed; ++failing) {
    related("(10, 1, 1, null)");
    frmAccountRelClasses form(shell);
    faults.failAt(failing);
    try {
      form.open(10);
    } catch (const data::DataError&) {
      EXPECT_EQ(openHandles(), 0) << failing;
      continue;
    }
    desktop.show(form);
    desktop.tick();
    add(form, "پروژه", 2);
    form.cmdOk.click();
    failed = faults.failures() > 0;
    faults.heal();
    EXPECT_EQ(openHandles(), 0) << failing;
    if (form.lstClasses.items().size() < 2) add(form, "پروژه", 2);
    notices.take();
    EXPECT_EQ(toldBy(form.cmdOk), kSaved) << failing;
    EXPECT_EQ(stored(), "classes: +10|2|2|null") << failing;
  }
}

}  // namespace
}  // namespace ledgertree::testing
