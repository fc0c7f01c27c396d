#include "entities/rel_objects.h"

#include <algorithm>
#include <thread>

#include "entity_house.h"
#include "shell/work_progress.h"

namespace ledgertree::testing {
namespace {

using entities::frmAccountRelObjects;

constexpr const char* kSaved = "اطلاع|عمل ثبت انجام شد.";
constexpr const char* kNotRead =
    "خطا|موجوديتهاي اين نوع به طور کامل خوانده نشده اند. نوع موجوديت را دوباره انتخاب کنيد.";

class RelObjects : public EntityHouse {
 protected:
  RelObjects() { related("(10, 2, 1, null), (10, 1, 2, 1), (10, 3, 3, 0)"); }
  /// Stores these projects for account 10.
  void store(const std::string& ids) {
    given(
        "update tblAccountRelatedClasses set IncludeAllObjects = 0 where ClassID = 2 and AccountID = 10; "
        "delete from tblAccountRelatedClassesDetail where ClassID = 2 and AccountID = 10; insert into "
        "tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) select 10, 2, ID from "
        "tblEntityProject where ID in (" +
        (ids.empty() ? "0" : ids) + ")");
  }
};

TEST_F(RelObjects, AClassStartsWithAllItsObjects) {
  EXPECT_TRUE(objectsOf(10, [&](frmAccountRelObjects& form) {
    EXPECT_EQ(form.sltAccount.SelectedText(), "دارايي");
    EXPECT_FALSE(form.sltAccount.IsActive());
    walkObjects(form, "a class starts with all its objects");
    EXPECT_EQ(form.cmbClass.items().size(), 3U);
  }));
  store("2, 3");
  EXPECT_TRUE(onObjects(10, "all of them again"));
  EXPECT_FALSE(onObjects(10, "leaving the objects"));
  given(
      "update tblEntityProject set Name = 'Way' where ID = 1; update tblEntityProject set Name = 'Wall' "
      "where ID = 3");
  onObjects(10, "objects stand in the order of their names");
}

TEST_F(RelObjects, TickedLeavesComeBackAndAMarkedBranchStandsForWhatComesLater) {
  store("");
  onObjects(10, "ticked leaves come back");
  store("");
  onObjects(10, "a branch is marked");
  given("insert into tblEntityProject (ID, ParentID, Name) values (7, 2, 'Railing')");
  onObjects(10, "a marked branch stands for what comes later");
}

TEST_F(RelObjects, TheHostsDataMayBeAnything) {
  // Only a file has columns that can hold any value.
  given(onServer() ? "create table tblMaze (ID bigint null, ParentID int null, Name varchar(20) null)"
                   : "create table tblMaze (ID, ParentID int, Name);"
                     "insert into tblMaze values ('x', null, 'word')");
  given(R"(
    insert into tblMaze values (1, null, 'UNKNOWN_TEXT'), (2, 1, 'b'), (1, 2, 'a'), (-3, 2, null), (4, -3, 'd'),
      (null, null, 'none'), (5000000000, null, 'far'), (8, 9, 'lost'), (9, 8, 'lost too');
    create view [vw of a maze] as select * from tblMaze;
    update tblAccountClass set ViewMajor = ' [Host].dbo.[vw of a maze] ' where ID = 2;
    update tblAccountClass set ViewMajor = 'vwEntityBank; delete tblAccountRelatedClasses --' where ID = 3;
    update tblAccountClass set ViewMajor = 'vwNowhere' where ID = 1)");
  store("");
  objectsOf(10, [&](frmAccountRelObjects& form) {
    walkObjects(form, "the host's data may be anything");
    form.cmbClass.choose(1);
    EXPECT_NE(notices.taken(), "");
    walkObjects(form, "a view that is nowhere");
  });
}

TEST_F(RelObjects, WhatCouldNotBeReadIsNeverWrittenBack) {
  store("3, 6");
  onObjects(10, "what could not be read is never written back");
}

TEST_F(RelObjects, EachStatementMayFailOnce) {
  bool failed = true;
  for (int failing = 1; failed; ++failing) {
    store("2, 4");
    faults.heal();
    frmAccountRelObjects form(shell);
    faults.failAt(failing);
    try {
      form.open(10);
    } catch (const data::DataError&) {
      EXPECT_EQ(openHandles(), 0) << failing;
      continue;
    }
    desktop.show(form);
    form.cmbClass.choose(0);
    form.treeObjects.tick(node(form, 6));
    form.cmdOk.click();
    failed = faults.failures() > 0;
    faults.heal();
    EXPECT_EQ(openHandles(), 0) << failing;
    EXPECT_EQ(desktop.cursor, ui::CursorShape::Default) << failing;
    if (notices.taken() != kSaved) form.cmdOk.click();
    if (notices.taken() == kNotRead || form.cmbClass.selected() == ui::DropDownList::kNone) {
      EXPECT_EQ(changes(), "") << failing;
      form.cmbClass.choose(0);
      form.treeObjects.tick(node(form, 6));
      form.cmdOk.click();
    }
    EXPECT_EQ(stored(), "objects: +10|2|6") << failing;
  }
}

TEST_F(RelObjects, AWideClassIsReadInOnePass) {
  database.insertMany("tblEntityProject (ID, ParentID, Name)", 100, 2099, [](int i) {
    return std::to_string(i) + ", " + std::to_string(i < 110 ? 5 : 100 + i % 10) + ", '" + std::to_string(i) +
           "'";
  });
  EXPECT_TRUE(changes().ends_with(" +999"));
  store("");
  const auto mothers = database.number("select count(distinct ParentID) from tblEntityProject");
  std::vector<std::string> statements;
  objectsOf(10, [&](frmAccountRelObjects& form) {
    statements = faults.take();
    form.cmbClass.choose(0);
    statements = faults.take();
    EXPECT_EQ(form.treeObjects.count(), 1U + 2006U);
    EXPECT_EQ(static_cast<std::int64_t>(statements.size()), 3 + (1 + mothers) + 2006);

    // Long work shows progress; Escape cancels the reading, and what is missing is read when opened, or never
    // saved.
    std::string seen;
    desktop.onRepaint = [&] {
      seen += form.progressBar.text() + "; ";
      desktop.escape = true;
      form.cmdOk.click();
      form.cmbClass.choose(0);
    };
    const auto slowAt = [&](const std::string& end) {
      faults.onCommand = [end](const std::string& command) {
        if (command.ends_with(end)) std::this_thread::sleep_for(shell::WorkProgress::kBeforeShowing);
      };
    };
    slowAt("ObjectID = 600");
    form.cmbClass.choose(0);
    EXPECT_EQ(seen, "192 از 2006 (توقف: Esc); ");
    EXPECT_EQ(form.treeObjects.count(), 1U + 192U + 10U) << "a placeholder behind those that were read";
    EXPECT_EQ(toldBy(form.cmdOk), kNotRead);
    desktop.onRepaint = nullptr;
    for (const int mother : {1, 5, 100}) form.treeObjects.expand(node(form, mother));
    EXPECT_NE(node(form, 2090), ui::kNoNode);
    EXPECT_EQ(form.treeObjects.count(), 1U + 16U + 199U + 9U);
    form.cmbClass.choose(0);
    EXPECT_EQ(form.treeObjects.count(), 1U + 2006U);

    // A save shows progress too, and ignores Escape.
    slowAt(",6)");
    seen.clear();
    desktop.onRepaint = [&] {
      seen += form.progressBar.text();
      desktop.escape = true;
    };
    form.treeObjects.tick(node(form, 6));
    EXPECT_EQ(toldBy(form.cmdOk), kSaved);
    EXPECT_EQ(seen, "1 از 1");
    EXPECT_EQ(stored(), "objects: +10|2|6");
    faults.onCommand = nullptr;
    desktop.onRepaint = nullptr;
  });
}

TEST_F(RelObjects, TheTreeGrowsWithTheWindow) {
  objectsOf(10, [&](frmAccountRelObjects& form) {
    const ui::Size size = form.designSize();
    const ui::Bounds tree = form.treeObjects.bounds();
    const ui::Bounds ok = form.cmdOk.bounds();
    const auto expectGrown = [&](int wider, int higher) {
      EXPECT_EQ(form.treeObjects.bounds(), (ui::Bounds{tree.left, tree.top, std::max(tree.width + wider, 0),
                                                       std::max(tree.height + higher, 0)}));
      EXPECT_EQ(form.cmdOk.bounds(), (ui::Bounds{ok.left, ok.top + higher, ok.width, ok.height}));
    };
    form.resize({size.width + 1500, size.height + 600});
    expectGrown(1500, 600);
    // A window that small moves nothing; and no width becomes negative.
    for (const ui::Size small : {ui::Size{300, 9000}, ui::Size{9000, 300}}) {
      form.resize(small);
      expectGrown(1500, 600);
    }
    form.resize({301, 301});
    expectGrown(301 - size.width, 301 - size.height);
    form.resize({size.width + 1000, size.height + 500});
    expectGrown(1000, 500);
  });
}

}  // namespace
}  // namespace ledgertree::testing
