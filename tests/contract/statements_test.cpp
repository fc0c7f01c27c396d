// Every statement that the screens send, as they send it while a person works through all of them on the demo
// chart: what the engine answered, and what is left behind, against SQLite written by hand; on the embedded
// engine also the way in which it finds the rows.

#include "batch/account_batch.h"
#include "coding/recoding/auto_codding.h"
#include "contract/statement_house.h"
#include "entities/rel_classes.h"
#include "entities/rel_objects.h"
#include "periods/copy_period.h"
#include "periods/delete_period.h"
#include "periods/period_branch.h"

namespace ledgertree::testing {
namespace {

class Statements : public StatementHouse {};

/// Runs what it is given to export.
class Exporting : public shell::OutsideComponent {
 public:
  explicit Exporting(shell::Shell& shell) : shell_(shell) {}
  void set(std::string_view, const data::Value&) override {}
  data::Value get(std::string_view) override { return {}; }
  void call(std::string_view, const std::vector<data::Value>& arguments) override {
    const data::OpenRows rows(shell_.dtEn()->rssqlBufferQuery, arguments.at(0).toText());
  }

 private:
  shell::Shell& shell_;
};

TEST_F(Statements, OfTheTreeAndOfAProposal) {
  const auto open = [&](const char* key) { form().treeAccount.expand(form().treeAccount.find(key)); };
  both("update tblTarvoSystemParameters set Value = '1' where ID = 311");
  expect("the chart comes up", [&] { control.ClearShow(); });
  expect("a branch opens", [&] { open("-1:1"); });
  control.AccPeriodSpecID(2);
  expect("the chart comes up in another period", [&] { control.ClearShow(); });
  expect("the view by periods", [&] { form().optPeriodic.click(); });
  expect("a period opens", [&] { open("4:-1"); });
  expect("a branch of a period opens", [&] { open("4:1"); });
  form().mnuViewCode.click();
  form().optPeriodAll.click();
  expect("a branch opens with short codes", [&] { open("-1:1"); });

  both("update tblAccount set IsPermanent = null, AccountNatureID = 2 where ID = 2");
  form().cmdNew.click();
  expect("a parent is picked for a new account", [&] { pick(form().sltParent, 2, "101"); });
  expect("no parent is picked", [&] { pick(form().sltParent, -1); });

  // Numbers shared by a level. The title is one that a server takes for the same.
  both(
      "update tblTarvoSystemParameters set Value = '1' where ID = 307;"
      "update tblAccount set Title = 'D''arc موقت  ' where ID = 2; update tblAccount set Title = 'D''arc "
      "موقت' where ID = 3");
  form().close();
  control.ClearShow();
  form().cmdNew.click();
  form().txtTitle.paste("d'ARC موقت");
  expect("a parent is picked where a level shares its numbers", [&] { pick(form().sltParent, 1, "1"); });
  expect("a parent of the fourth level is picked there", [&] { pick(form().sltParent, 46, "103010105"); });
  expect("no parent is picked there", [&] { pick(form().sltParent, -1); });
}

TEST_F(Statements, OfARecordAndItsSave) {
  both("update tblTarvoSystemParameters set Value = '1' where ID = 210");
  learn([&] { control.View(std::int16_t{0}); });
  mainform::FormMain& f = form();
  const auto saves = [&](const char* what) { expect(what, [&] { f.cmdSave.click(); }); };
  expect("an account is shown", [&] { f.View(49); });
  const auto type = [&](const char* code) {
    f.cmdNew.click();
    f.txtTitle.paste("تازه");
    f.txtCode.paste(code);
    pick(f.sltGroup, 4);
  };
  type("98");
  both("insert into tblAccountRelatedObjects (AccountID, AccountGroupID) values (54, 4)");
  saves("a new account in the place of another one of its group");
  type("97");
  pick(f.sltEntityType, 1);
  pick(f.sltEntity, 8);
  saves("a new account in the place of another one of its object");

  edit(40);
  pick(f.sltParent, 42, "103010101");
  saves("an edit below an account with documents");
  edit(43);
  pick(f.sltEntity, 6);
  saves("an edit takes another one's object");
  edit(45);
  pick(f.sltGroup, -1);
  saves("an edit leaves the group");
  edit(49);
  pick(f.sltEntity, 22);
  saves("an edit has a new object");
  edit(41);
  f.OptClose.click();
  saves("an edit closes");
  edit(41);
  f.OptOpen.click();
  saves("an edit opens");
  edit(2);
  pick(f.sltGroup, 6);
  saves("an edit joins a group");

  both(
      "update tblAccountRelatedObjects set RelatedObjectID = 3 where AccountID = 48;"
      "update tblAccount set PositionID = 2 where ID = 48");
  const auto placeAt = [&](std::int32_t account, std::int32_t position) {
    edit(account);
    pick(f.sltPosition, position);
    f.LastNewParentID = 41;
  };
  placeAt(44, 2);
  saves("an edit takes the place of another one with its position");
  placeAt(46, 3);
  pick(f.sltEntity, 21);
  saves("an edit to a position of its own");
  f.View(79);
  notices.answer(1);
  expect("a deletion", [&] { f.cmdDelete.click(); });
}

TEST_F(Statements, OfThePeriods) {
  learn([&] { control.View(std::int16_t{1}); });
  in<periods::FormPeriodBranch>("FormPeriodBranch", form().cmdPeriodBranch, [&](auto& screen) {
    pick(screen.sltPeriod, 3);
    clicks("the chart is hidden from a period", screen.cmdDel);
    notices.answer(1);
    pick(screen.sltPeriod, -1);
    clicks("the chart is hidden from all periods", screen.cmdDel);
    both("update tblAccountDocument set FarsiDocumentDate = '1401/12/29' where ID = 7");
    clicks("the chart is hidden from the periods in sight", screen.cmdDeleteAllRows);
  });
  form().View(7);
  desktop.inModal("FormPeriodBranch", [](ui::Form&) {});
  clicks("the periods of an account", form().cmdPeriodBranch);
  in<periods::FormPeriodBranch>("FormPeriodBranch", form().cmdPeriodBranch, [&](auto& screen) {
    pick(screen.sltPeriod, 4);
    clicks("a period is added", screen.cmdAdd);
    clicks("a period is hidden", screen.cmdDel);
    pick(screen.sltPeriod, -1);
    for (int yes = 0; yes < 3; ++yes) notices.answer(1);
    clicks("all periods are added", screen.cmdAdd);
    clicks("a row is hidden", screen.cmdDeleteRows);
    clicks("all periods are hidden", screen.cmdDel);
    both("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (7, 2), (7, 3)");
    clicks("all periods are hidden", screen.cmdDeleteAllRows);
  });
  for (const auto& [what, source] : {std::pair("a period is copied", 1), {"the chart is copied", -1}}) {
    in<periods::FormCopyPeriodAccount>("FormCopyPeriodAccount", form().cmdCopyPeriod, [&](auto& screen) {
      if (source != -1) pick(screen.sltPeriodFrom, source);
      pick(screen.sltPeriodTo, 4);
      if (source == -1) notices.answer(1);
      clicks(what, screen.cmdAutoCodding);
    });
  }
  const auto empty = [&](std::int32_t period, ui::PushButton periods::FormDeletePeriod::*command,
                         const char* what) {
    in<periods::FormDeletePeriod>("FormDeletePeriod", form().cmdDeletePeriod, [&](auto& screen) {
      pick(screen.sltPeriodFrom, period);
      notices.answer(1);
      clicks(what, screen.*command);
    });
  };
  empty(3, &periods::FormDeletePeriod::cmdDeletePossible, "what may go is hidden from a period");
  empty(2, &periods::FormDeletePeriod::cmdDelete, "all is hidden from a period with documents");
  empty(4, &periods::FormDeletePeriod::cmdDelete, "all is hidden from a period");
}

TEST_F(Statements, OfClassesAndObjects) {
  both(
      "update tblTarvoSystemParameters set Value = '1' where ID = 311; update tblAccountClass set Code = "
      "null where ID = 2;"
      "update tblAccountRelatedClasses set IncludeAllObjects = null where AccountID = 30;"
      "insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) values (30, 3, 13), (30, 3, "
      "16), (30, 3, 19)");
  learn([&] { control.View(std::int16_t{13}); });
  using entities::frmAccountRelClasses;
  const auto classesOf = [&](std::int32_t account, const std::function<void(frmAccountRelClasses&)>& person) {
    form().View(account);
    in<frmAccountRelClasses>("frmAccountRelClasses", form().cmdRelClasses, person);
  };
  classesOf(13, [&](auto& screen) { clicks("the classes of an account with documents", screen.cmdOk); });
  classesOf(114, [&](auto& screen) {
    screen.lstClasses.choose(1);
    screen.cmdDelete.click();
    pick(screen.mptEntityType, 3);
    desktop.tick();
    screen.cmdAdd.click();
    desktop.tick();
    screen.lstClasses.choose(0);
    screen.cmdMoveDown.click();
    clicks("classes are exchanged", screen.cmdOk);
  });
  classesOf(54, [&](auto& screen) {
    screen.lstClasses.choose(0);
    screen.cmdDelete.click();
    clicks("the last class is taken off", screen.cmdOk);
  });
  classesOf(153, [&](auto& screen) {
    desktop.inModal("frmAccountRelObjects", [](ui::Form&) {});
    clicks("the objects of the classes", screen.cmdSelectObjects);
  });
  desktop.inModal("frmAccountRelClasses", [](ui::Form&) {});
  clicks("the classes", form().cmdRelClasses);

  classesOf(30, [&](auto& screen) {
    desktop.inModal("frmAccountRelObjects", [&](ui::Form& shown) {
      auto& inner = dynamic_cast<entities::frmAccountRelObjects&>(shown);
      expect("a class is picked", [&] { inner.cmbClass.choose(0); });
      inner.chkAllObjects.click();
      inner.treeObjects.tick(inner.treeObjects.find("N18"));
      clicks("some objects", inner.cmdOk);
      inner.chkAllObjects.click();
      clicks("all objects", inner.cmdOk);
    });
    screen.cmdSelectObjects.click();
  });
}

TEST_F(Statements, OfWorkOnWholeBranches) {
  learn([&] { control.View(std::int16_t{1}); });
  const auto deleteBelow = [&](std::int32_t account, const char* code, const char* what) {
    in<batch::frmAccountBatch>("frmAccountBatch", form().mnuAccountBatch, [&](auto& screen) {
      pick(screen.sltParent, account, code);
      notices.answer(1);
      clicks(what, screen.cmdDelete);
    });
  };
  deleteBelow(41, "1030101", "a branch with documents is deleted");
  deleteBelow(102, "106", "a branch is deleted");
  shell.components.add("SheetKit.SheetWriter", [this] { return std::make_unique<Exporting>(shell); });
  clicks("the export", form().mnuExcelCode);

  in<coding::frmAutoCodding>("frmAutoCodding", form().mnuSameCoding, [&](auto& screen) {
    for (int yes = 0; yes < 5; ++yes) notices.answer(1);
    pick(screen.klmMotherAcc, 248, "6");
    screen.txtSimpleCode.type("50");
    desktop.tick();
    clicks("a branch gets simple codes", screen.cmdAutoCodding);
    clicks("a branch becomes temporary", screen.cmdAccountType);
    clicks("a branch gets another nature", screen.cmdRemanedType);
    pick(screen.klmMotherAcc, -1);
    clicks("the roots get simple codes", screen.cmdAutoCodding);
    clicks("a level gets codes of its own", screen.klmFlatButton1);
  });
}

}  // namespace
}  // namespace ledgertree::testing
