#include "entities/rel_classes.h"

#include "entity_house.h"

namespace ledgertree::testing {
namespace {

using entities::frmAccountRelClasses;
using ui::Key;
using ui::KeyChord;

constexpr const char* kSaved = "اتمام عمليات|عمليات ثبت با موفقيت انجام شد.";
constexpr const char* kGap =
    "عدم رعايت ترتيب|بين ترتيب انواع موجوديتهاي انتساب يافته فاصله وجود دارد. قبل از ثبت، لازم است كه اين "
    "فاصله "
    "برطرف شود.";

class RelClasses : public EntityHouse {};

TEST_F(RelClasses, AClassIsAddedOnceALevelAndStoredOnEach) {
  const bool saved = classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(form.sltAccount.SelectedText(), "دارايي");
    EXPECT_FALSE(form.sltAccount.IsActive());
    EXPECT_EQ(form.cmbLevel.selectedText(), "1");
    EXPECT_FALSE(form.cmdAdd.enabled() || form.cmdDelete.enabled() || form.cmdMoveDown.enabled());
    add(form, "پروژه", 1);
    EXPECT_EQ(desktop.layouts.back(), "00000429");
    EXPECT_TRUE(form.cmdDelete.enabled());
    EXPECT_FALSE(form.cmdMoveUp.enabled());
    add(form, "پروژه", 1);
    EXPECT_EQ(notices.taken(), "خطا|اطلاعات وارد شده تکراري است.");
    add(form, "پروژه", 2);
    add(form, "بانک", 1);
    EXPECT_EQ(lines(form), "1#_پروژه ها\n2#_پروژه ها\n1#30_بانکها\n");
    EXPECT_EQ(classes(), "");
    EXPECT_TRUE(form.press(KeyChord::ctrlAnd('S')));
    EXPECT_EQ(notices.taken(), kSaved);
    EXPECT_EQ(classes(), "2 1 -\n2 2 -\n3 1 -");
    form.cmdOk.click();
    EXPECT_EQ(notices.taken(), kSaved);
    EXPECT_EQ(classes(), "2 1 -\n2 2 -\n3 1 -") << "a class on two levels keeps both through another save";
  });
  EXPECT_TRUE(saved);
  EXPECT_FALSE(classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(form.lstClasses.items().size(), 3U);
    form.lstClasses.choose(0);
    form.cmdDelete.click();
    EXPECT_TRUE(form.press(KeyChord::of(Key::Escape)));
  }));
  EXPECT_EQ(classes(), "2 1 -\n2 2 -\n3 1 -") << "a list that is left is dropped";
}

TEST_F(RelClasses, NoLevelStandsAboveAnEmptyOne) {
  struct Case {
    std::vector<int> levels;
    bool accepted;
  };
  for (const Case& one : {Case{{1, 2}, true}, Case{{2}, false}, Case{{1, 3}, false}, Case{{3, 2}, false},
                          Case{{2, 1, 1}, true}, Case{{3, 1, 2}, true}, Case{{}, true}}) {
    database.execute(
        "delete from tblAccountRelatedClasses; "
        "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (10, 3, 1)");
    std::string stored;
    classesOf(10, [&](frmAccountRelClasses& form) {
      form.lstClasses.choose(0);
      form.cmdDelete.click();
      const char* names[] = {"اشخاص", "پروژه", "بانک"};
      for (std::size_t i = 0; i < one.levels.size(); ++i) {
        add(form, names[i], one.levels[i]);
        stored +=
            (stored.empty() ? "" : "\n") + std::to_string(i + 1) + " " + std::to_string(one.levels[i]) + " -";
      }
      form.cmdOk.click();
    });
    EXPECT_EQ(notices.taken(), one.accepted ? kSaved : kGap);
    EXPECT_EQ(classes(), one.accepted ? stored : "3 1 -");
  }
}

TEST_F(RelClasses, LevelsMoveWithinTheirLimitsAndTheRestOfARowStays) {
  database.execute(R"(
    update tblAccountClass set Name = 'بانک 2#12#' where ID = 3;
    insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence, IncludeAllObjects) values
      (10, 1, 1, 0), (10, 3, 2, 1), (10, 2, 12, null);
    insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) values (10, 1, 7), (10, 3, 8))");
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
    form.cmdDelete.click();
    form.lstClasses.choose(1);
    EXPECT_TRUE(form.press(KeyChord::ctrlAnd('U')));
    form.cmdOk.click();
    EXPECT_EQ(notices.taken(), kSaved);
    EXPECT_EQ(classes(), "1 1 0\n3 2 1") << "an update keeps how the objects count";
    form.cmdDelete.click();
    desktop.tick();
    EXPECT_FALSE(form.cmdMoveUp.enabled());
    form.cmdOk.click();
  });
  EXPECT_EQ(classes(), "1 1 0");
  EXPECT_EQ(objects(3), "8") << "the objects of a class that left stay";
}

TEST_F(RelClasses, WhatCannotBeSavedIsToldAndLeavesTheRows) {
  database.execute("insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (20, 1, 1)");
  classesOf(20, [&](frmAccountRelClasses& form) {
    add(form, "بانک", 1);
    form.lstClasses.choose(0);
    form.cmdDelete.click();
    form.cmdOk.click();
    EXPECT_EQ(
        notices.taken(),
        "عدم امکان تغيير انواع موجوديت منتسب|به دليل اينکه سرفصل حساب گردش داشته است، امکان تغيير انواع "
        "موجوديت منتسب به آن وجود ندارد.");
  });
  EXPECT_EQ(classes(20), "1 1 -");
  database.execute("update tblAccountRelatedClasses set AccountID = 10, Sequence = 40000");
  classesOf(10, [&](frmAccountRelClasses& form) {
    EXPECT_EQ(lines(form), "40000#10_اشخاص\n");
    form.cmdOk.click();
    EXPECT_NE(notices.taken().find("40000"), std::string::npos);
  });
  EXPECT_EQ(classes(), "1 40000 -");
  EXPECT_FALSE(classesOf(-1, [&](frmAccountRelClasses& form) {
    add(form, "بانک", 1);
    form.cmdOk.click();
    EXPECT_EQ(notices.taken(), "اشکال|حسابي انتخاب نشده است. ابتدا يک حساب را انتخاب کنيد.");
  }));
}

TEST_F(RelClasses, TheObjectsOfTheStoredClassesOpenFromHere) {
  database.execute("insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (10, 2, 1)");
  classesOf(10, [&](frmAccountRelClasses& form) {
    add(form, "بانک", 1);
    expectObjects([&](entities::frmAccountRelObjects& inner) {
      EXPECT_EQ(inner.sltAccount.SelectedID(), 10);
      ASSERT_EQ(inner.cmbClass.items().size(), 1U);
      EXPECT_TRUE(inner.press(KeyChord::of(Key::Escape)));
    });
    form.cmdSelectObjects.click();
    EXPECT_EQ(form.lstClasses.items().size(), 2U);
  });
}

TEST_F(RelClasses, EachStatementMayFailOnce) {
  bool failed = true;
  for (int failing = 1; failed; ++failing) {
    database.execute(
        "delete from tblAccountRelatedClasses; "
        "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (10, 1, 1)");
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
    EXPECT_EQ(classes().substr(0, 5), "1 1 -") << failing;
    if (form.lstClasses.items().size() < 2) add(form, "پروژه", 2);
    notices.take();
    form.cmdOk.click();
    EXPECT_EQ(notices.taken(), kSaved) << failing;
    EXPECT_EQ(classes(), "1 1 -\n2 2 -") << failing;
  }
}

}  // namespace
}  // namespace ledgertree::testing
