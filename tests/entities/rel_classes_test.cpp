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

class RelClasses : public EntityHouse {
 protected:
  /// The commands on the list that are in reach.
  static std::string enabled(const frmAccountRelClasses& form) {
    std::string names;
    for (const auto* button : {&form.cmdAdd, &form.cmdDelete, &form.cmdMoveDown, &form.cmdMoveUp})
      if (button->enabled()) names += button->name() + " ";
    return names;
  }
};

TEST_F(RelClasses, AClassIsAddedOnceALevelAndStoredOnEach) {
  const bool saved = classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(form.sltAccount.SelectedText(), "دارايي");
    EXPECT_FALSE(form.sltAccount.IsActive());
    EXPECT_EQ(form.cmbLevel.selectedText(), "1");
    EXPECT_EQ(enabled(form), "");
    add(form, "پروژه", 1);
    EXPECT_EQ(desktop.layout(), "00000429");
    EXPECT_EQ(enabled(form), "cmdAdd cmdDelete ");
    add(form, "پروژه", 1);
    EXPECT_EQ(notices.taken(), "خطا|اطلاعات وارد شده تکراري است.");
    add(form, "پروژه", 2);
    add(form, "بانک", 1);
    EXPECT_EQ(enabled(form), "cmdAdd cmdDelete cmdMoveDown cmdMoveUp ");
    form.mptEntityType.press(Key::Delete);
    desktop.tick();
    EXPECT_EQ(enabled(form), "cmdDelete cmdMoveDown cmdMoveUp ");
    EXPECT_EQ(lines(form), "1#_پروژه ها\n2#_پروژه ها\n1#30_بانکها\n");
    EXPECT_EQ(stored(), "");
    EXPECT_TRUE(form.press(KeyChord::ctrlAnd('S')));
    EXPECT_EQ(notices.taken(), kSaved);
    EXPECT_EQ(stored(), "classes: +10|2|1|null +10|2|2|null +10|3|1|null");
    EXPECT_EQ(desktop.hourglasses, 1);
    EXPECT_EQ(toldBy(form.cmdOk), kSaved);
    EXPECT_EQ(stored(), "") << "a class on two levels keeps both through another save";
  });
  EXPECT_TRUE(saved);
  EXPECT_FALSE(classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(enabled(form), "cmdDelete cmdMoveDown cmdMoveUp ");
    form.lstClasses.choose(0);
    form.cmdDelete.click();
    EXPECT_EQ(lines(form), "1#30_بانکها\n2#_پروژه ها\n");
    EXPECT_TRUE(form.press(KeyChord::of(Key::Escape)));
  })) << "a list that is left is dropped";
}

TEST_F(RelClasses, NoLevelStandsAboveAnEmptyOne) {
  struct Case {
    std::vector<int> levels;
    std::string stored;  ///< nothing where it is refused
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
  classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(lines(form), "1#10_اشخاص\n2#30_بانک 2#12#\n12#_پروژه ها\n");
    form.cmdMoveUp.click();
    form.cmdMoveDown.click();
    form.lstClasses.choose(2);
    form.cmdMoveDown.click();
    form.cmdMoveUp.click();
    form.lstClasses.press(Key::Up);
    EXPECT_TRUE(form.press(KeyChord::ctrlAnd('I')));
    form.cmdMoveDown.click();
    form.lstClasses.press(Key::Home);
    form.cmdMoveUp.click();
    EXPECT_EQ(lines(form), "1#10_اشخاص\n3#30_بانک 1\n11#_پروژه ها\n");
    form.lstClasses.choose(2);
    EXPECT_TRUE(form.press(KeyChord::ctrlAnd('D')));
    form.cmdDelete.click();
    EXPECT_EQ(form.lstClasses.items().size(), 2U) << "nothing is selected any more";
    form.lstClasses.choose(1);
    EXPECT_TRUE(form.press(KeyChord::ctrlAnd('U')));
    EXPECT_EQ(toldBy(form.cmdOk), kSaved);
    EXPECT_EQ(stored(), "classes: -10|2|12|null") << "and the objects of a class that left stay";
    EXPECT_TRUE(form.press(KeyChord::ctrlAnd('U')));
    EXPECT_EQ(storedBy(form.cmdOk), "classes: -10|3|2|1 +10|3|1|1")
        << "an update keeps how the objects count";
    form.cmdDelete.click();
    desktop.tick();
    EXPECT_FALSE(form.cmdMoveUp.enabled() || form.cmdMoveDown.enabled());
    form.cmdOk.click();
  });
  EXPECT_EQ(stored(), "classes: -10|3|1|1");
}

TEST_F(RelClasses, WhatTheListShowsIsStoredAndEachRowKeepsHowItsObjectsCount) {
  struct Case {
    std::string name;
    std::string rows;
    std::function<void(frmAccountRelClasses&)> person;
    std::string lines;
    std::string stored;
  };
  const auto on = [](frmAccountRelClasses& form, int line, std::initializer_list<ui::PushButton*> pressed) {
    form.lstClasses.choose(line);
    for (ui::PushButton* button : pressed) button->click();
  };
  const std::string two = "(10, 1, 1, 0), (10, 2, 1, 0), (10, 2, 2, 1)";
  const Case cases[] = {
      {"a level is left", two, [&](auto& form) { on(form, 2, {&form.cmdDelete}); },
       "1#10_اشخاص\n1#_پروژه ها\n", "classes: -10|2|2|1"},
      {"a line moves where another was", two,
       [&](auto& form) {
         on(form, 2, {&form.cmdDelete});
         on(form, 1, {&form.cmdMoveDown});
       },
       "1#10_اشخاص\n2#_پروژه ها\n", "classes: -10|2|1|0 -10|2|2|1 +10|2|2|0"},
      {"both move on", two,
       [&](auto& form) {
         on(form, 1, {&form.cmdMoveDown});
         on(form, 2, {&form.cmdMoveDown});
       },
       "1#10_اشخاص\n2#_پروژه ها\n3#_پروژه ها\n", "classes: -10|2|1|0 -10|2|2|1 +10|2|2|0 +10|2|3|1"},
      {"they change places", two,
       [&](auto& form) {
         on(form, 1, {&form.cmdMoveDown});
         on(form, 2, {&form.cmdMoveUp});
       },
       "1#10_اشخاص\n2#_پروژه ها\n1#_پروژه ها\n", ""},
      {"they become one", two, [&](auto& form) { on(form, 2, {&form.cmdMoveUp}); },
       "1#10_اشخاص\n1#_پروژه ها\n1#_پروژه ها\n", "classes: -10|2|2|1"},
      {"another class moves beside them", two, [&](auto& form) { on(form, 0, {&form.cmdMoveDown}); },
       "2#10_اشخاص\n1#_پروژه ها\n2#_پروژه ها\n", "classes: -10|1|1|0 +10|1|2|0"},
      {"a class that left comes again", two,
       [&](auto& form) {
         on(form, 1, {&form.cmdDelete});
         on(form, 1, {&form.cmdDelete});
         add(form, "پروژه", 3);
         add(form, "پروژه", 2);
       },
       "1#10_اشخاص\n3#_پروژه ها\n2#_پروژه ها\n", "classes: -10|2|1|0 +10|2|3|0"},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.name);
    related(one.rows);
    classesOf(10, [&](frmAccountRelClasses& form) {
      one.person(form);
      EXPECT_EQ(lines(form), one.lines);
      for (const std::string& changed : {one.stored, std::string()}) {
        EXPECT_EQ(toldBy(form.cmdOk), kSaved);
        EXPECT_EQ(stored(), changed) << "and another save changes nothing";
      }
    });
  }
}

TEST_F(RelClasses, OneWaitForALockIsEnough) {
  related("(10, 1, 1, 0)");
  classesOf(10, [&](frmAccountRelClasses& form) {
    add(form, "پروژه", 1);
    add(form, "بانک", 2);
    int waited = 0;
    faults.onCommand = [&](const std::string& command) {
      if (command.find("RelatedClasses") == std::string::npos) return;
      ++waited;
      EXPECT_EQ(desktop.pointer, ui::Pointer::Hourglass);
      throw data::DataError(data::DataError::Reason::Busy, 5, "locked");
    };
    EXPECT_EQ(toldBy(form.cmdOk), kSaved);
    EXPECT_EQ(waited, 1);
    faults.onCommand = nullptr;
    EXPECT_EQ(stored(), "");
    EXPECT_EQ(storedBy(form.cmdOk), "classes: +10|2|1|null +10|3|2|null");
    notices.take();

    // On the embedded engine a person leaves the wait.
    if (onServer()) return;
    given("begin immediate");
    desktop.onRepaint = [&] {
      EXPECT_EQ(form.progressBar.text(), "0 از 3 (توقف: Esc)");
      EXPECT_THROW(shell.dtEn()->cnMainData.Execute("Delete tblAccountRelatedClasses"), data::DataError);
      form.cmdOk.click();
      desktop.escape = true;
    };
    const auto begun = std::chrono::steady_clock::now();
    form.lstClasses.choose(1);
    form.cmdMoveDown.click();
    EXPECT_EQ(toldBy(form.cmdOk), kSaved);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, data::kCommandTimeOut / 2);
    desktop.onRepaint = nullptr;
    given("rollback");
  });
}

TEST_F(RelClasses, WhatCannotBeSavedIsToldAndLeavesTheRows) {
  given(
      "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (20, 1, 1), (10, 1, "
      "40000)");
  EXPECT_FALSE(classesOf(20, [&](frmAccountRelClasses& form) {
    add(form, "بانک", 1);
    form.lstClasses.choose(0);
    form.cmdDelete.click();
    EXPECT_EQ(toldBy(form.cmdOk),
              "عدم امکان تغيير انواع موجوديت منتسب|به دليل اينکه سرفصل حساب گردش داشته است، امکان تغيير "
              "انواع موجوديت منتسب به آن وجود ندارد.");
  }));
  EXPECT_FALSE(classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(lines(form), "40000#10_اشخاص\n");
    form.cmdOk.click();
    EXPECT_NE(notices.taken().find("40000"), std::string::npos);
  }));
  related("(10, 1, 1, 1), (10, 77, 2, 0)");
  EXPECT_TRUE(classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(lines(form), "1#10_اشخاص\n2#77 (در فهرست نيست)\n");
    EXPECT_EQ(toldBy(form.cmdOk), kSaved);
  }));
  EXPECT_FALSE(classesOf(-1, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(lines(form), "");
    add(form, "بانک", 1);
    for (auto* command : {&form.cmdAdd, &form.cmdOk}) expectUnchosen(form.mptEntityType, *command);
    EXPECT_EQ(toldBy(form.cmdOk), "اشکال|حسابي انتخاب نشده است. ابتدا يک حساب را انتخاب کنيد.");
  }));
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
