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

const std::string kTreeColumns =
    "select ID, ParentID, IsClosed, AccountNatureID, Code, Title from tblAccount where ";
const std::string kInPeriod4 =
    " and exists (select 1 from tblAccountPeriodAccount where PeriodID = 4 and AccountID = tblAccount.ID)";
const std::string kRelated =
    "select r.AccountID, AccountGroupID, RelatedClassID, RelatedObjectID, PositionID, Code, Title from "
    "tblAccountRelatedObjects r join tblAccount a on a.ID = r.AccountID where AccountGroupID = ";
const std::string kObjects =
    "select ID, ParentID, Name, (select count(*) from tblEntityBank c where c.ParentID = b.ID) as "
    "NumberOfChilds from tblEntityBank b where ParentID ";

TEST_F(Statements, OfTheTreeAndOfAProposal) {
  const auto open = [&](const char* key) { form().treeAccount.expand(form().treeAccount.find(key)); };
  both("update tblTarvoSystemParameters set Value = '1' where ID = 311");
  expect([&] { control.ClearShow(); }, {{"select * from tblAccountPeriod where ID = 3"},
                                        {"select Value from tblTarvoSystemParameters where ID = 301"},
                                        {"select * from tblTarvoSystemParameters where ID = 311"},
                                        {"select BasePath from tblTarvoBasePath", {"tblTarvoBasePath"}},
                                        {kTreeColumns + "ParentID is null order by Code"},
                                        {"select count(*) as cnt from tblAccount where ParentID = 1"}});
  expect([&] { open("-1:1"); }, {{kTreeColumns + "ParentID = 1 order by Code"}});
  control.AccPeriodSpecID(2);
  expect([&] { control.ClearShow(); }, {{"select * from tblAccountPeriod where ID = 2"}});
  expect([&] { form().optPeriodic.click(); },
         {{"select * from tblAccountPeriod order by ID desc", {"tblAccountPeriod"}},
          {"select count(*) as cnt from tblAccount where ParentID is null" + kInPeriod4}});
  expect([&] { open("4:-1"); }, {{kTreeColumns + "ParentID is null" + kInPeriod4 + " order by Code"},
                                 {"select count(*) as cnt from tblAccount where ParentID = 1" + kInPeriod4}});
  expect([&] { open("4:1"); }, {{kTreeColumns + "ParentID = 1" + kInPeriod4 + " order by Code"}});
  form().mnuViewCode.click();
  form().optPeriodAll.click();
  expect([&] { open("-1:1"); }, {{"select Code from tblAccount where ID = 1"}});

  const auto withoutParent = [&] { pick(form().sltParent, -1); };
  const std::string inherited =
      "select ifnull(IsPermanent, 0) as IsPermanent, ifnull(AccountNatureID, 0) as AccountNatureID from "
      "tblAccount where ID = ";
  both("update tblAccount set IsPermanent = null, AccountNatureID = 2 where ID = 2");
  form().cmdNew.click();
  expect([&] { pick(form().sltParent, 2, "101"); },
         {{"select ID, Code, Title as Name from tblAccount where Code like '101%' order by Code limit 20"},
          {inherited + "2"},
          {"select Code from tblAccount where ParentID = 2 order by Code desc"}});
  expect(withoutParent,
         {{inherited + "-1"}, {"select Code from tblAccount where ParentID is null order by Code desc"}});

  // Numbers shared by a level. The title is one that a server takes for the same.
  both(
      "update tblTarvoSystemParameters set Value = '1' where ID = 307;"
      "update tblAccount set Title = 'D''arc موقت  ' where ID = 2; update tblAccount set Title = 'D''arc "
      "موقت' where ID = 3");
  form().close();
  control.ClearShow();
  form().cmdNew.click();
  form().txtTitle.paste("d'ARC موقت");
  expect([&] { pick(form().sltParent, 1, "1"); },
         {{"select Code, NoLevel from tblAccount where ParentID = 1 order by Code desc"},
          {"select ID, substr(Code, -6) as rCode, Code, Title, NoLevel from tblAccount where ID = 2"},
          {"select ID, substr(Code, -6) as rCode, Title, NoLevel from tblAccount where NoLevel = 2 order by "
           "substr(Code, -6) collate nocase desc"}});
  expect([&] { pick(form().sltParent, 46, "103010105"); }, {{"select * from tblAccount where ID = 46"}});
  expect(withoutParent, {{"select Code, NoLevel from tblAccount where ParentID is null order by Code desc"}});
}

TEST_F(Statements, OfARecordAndItsSave) {
  both("update tblTarvoSystemParameters set Value = '1' where ID = 210");
  learn([&] { control.View(std::int16_t{0}); });
  mainform::FormMain& f = form();
  const auto save = [&] { f.cmdSave.click(); };
  expect([&] { f.View(49); },
         {{"select * from vwAccount where ID = 49"},
          {"select * from tblAccountRelatedObjects where AccountID = 49"},
          {"select ID, Code, Title as Name from tblAccount where ID = 49"},
          {"select ID, Code, Name from tblAccountGroup where ID = 4"},
          {"select ID, Code, Code || '_' || Name as Name from tblAccountClass where ID = 1"},
          {"select * from tblAccountClass where ID = 1"},
          {"select ID, ParentID, Code, Name from tblEntityPerson where ID = 8"}});
  // New accounts, in the place of another one.
  const auto inserted = [](const std::string& code) {
    return "insert into tblAccount (Code, Title, Notes, GroupID, MaxDebit, MaxCredit) values ('" + code +
           "', 'تازه', '', 4, 0, 0)";
  };
  const auto type = [&](const char* code) {
    f.cmdNew.click();
    f.txtTitle.paste("تازه");
    f.txtCode.paste(code);
    pick(f.sltGroup, 4);
  };
  const ByHand noGroup{"update tblAccount set GroupID = null where ID = #"};
  type("98");
  both("insert into tblAccountRelatedObjects (AccountID, AccountGroupID) values (54, 4)");
  expect(save, {{inserted("98")}, {kRelated + "4 and RelatedClassID is null"}, noGroup});
  type("97");
  pick(f.sltEntityType, 1);
  pick(f.sltEntity, 8);
  expect(save, {{inserted("97")}, {kRelated + "4 and RelatedObjectID = 8"}, noGroup});

  // Edits: what an account has is there again, and no ceiling is a ceiling of nothing.
  const auto updated = [](const std::string& id, const std::string& more) {
    return "update tblAccount set Notes = '', MaxDebit = ifnull(MaxDebit, 0), MaxCredit = 0" + more +
           " where ID = " + id;
  };
  const ByHand opened{
      "update tblAccount set IsClosed = 0 where ID in (select ChildID from tblAccountParent where ID = #)"};
  edit(40);
  pick(f.sltParent, 42, "103010101");
  expect(save, {{"select Code from tblAccount where ID = 40"},
                {"select * from tblAccountDocumentDetail where AccountID = 40"},
                {"select 40 as ID, 42 as ChildID"},
                {"select * from tblAccountDocumentDetail where AccountID = 42"}});
  edit(43);
  pick(f.sltEntity, 6);
  expect(save, {{updated("43", "")}, {kRelated + "4 and RelatedObjectID = 6"}, noGroup, opened});
  edit(45);
  pick(f.sltGroup, -1);
  expect(save, {{updated("45", ", GroupID = null")},
                {"delete from tblAccountRelatedObjects where AccountID = 45"},
                opened});
  edit(49);
  pick(f.sltEntity, 22);
  expect(save, {{updated("49", "")},
                {"update tblAccountRelatedObjects set RelatedObjectID = 22 where AccountID = 49"},
                opened});
  edit(41);
  f.OptClose.click();
  expect(save, {{updated("41", ", IsClosed = 1")},
                {"delete from tblAccountRelatedObjects where AccountID = 41"},
                {"update tblAccount set IsClosed = 1 where ParentID = 41"}});
  edit(41);
  f.OptOpen.click();
  expect(save, {{updated("41", ", IsClosed = 0")},
                {"delete from tblAccountRelatedObjects where AccountID = 41"},
                opened});
  edit(2);
  pick(f.sltGroup, 6);
  expect(save,
         {{updated("2", ", GroupID = 6")}, {kRelated + "6 and RelatedClassID is null"}, noGroup, opened});

  // Where the position counts, and the parent is that of the last new account.
  both(
      "update tblAccountRelatedObjects set RelatedObjectID = 3 where AccountID = 48;"
      "update tblAccount set PositionID = 2 where ID = 48");
  const auto placeAt = [&](std::int32_t account, std::int32_t position) {
    edit(account);
    pick(f.sltPosition, position);
    f.LastNewParentID = 41;
  };
  placeAt(44, 2);
  expect(save, {{updated("44", ", PositionID = 2")},
                {kRelated + "4 and RelatedObjectID = 3 and r.AccountID = 48"},
                noGroup,
                opened,
                {"select ID, Code, Name from tblAccCostCenter where ID = 2"}});
  placeAt(46, 3);
  pick(f.sltEntity, 21);
  expect(save, {{updated("46", ", PositionID = 3")},
                {"delete from tblAccountRelatedObjects where AccountID = 46"},
                {"insert into tblAccountRelatedObjects values (46, 4, 1, 21)"},
                opened});
  f.View(79);
  notices.answer(1);
  expect([&] { f.cmdDelete.click(); }, {{"delete from tblAccount where ID = 79"}});
}

TEST_F(Statements, OfThePeriods) {
  learn([&] { control.View(std::int16_t{1}); });
  const std::string documents = "select ID from tblAccountDocument";
  in<periods::FormPeriodBranch>("FormPeriodBranch", form().cmdPeriodBranch, [&](auto& screen) {
    const auto hide = [&] { screen.cmdDel.click(); };
    pick(screen.sltPeriod, 3);
    expect(hide, {{documents + " where FarsiDocumentDate like '1404/%'"}});
    notices.answer(1);
    pick(screen.sltPeriod, -1);
    expect(hide, {{documents, {"d"}}});
    both("update tblAccountDocument set FarsiDocumentDate = '1401/12/29' where ID = 7");
    expect([&] { screen.cmdDeleteAllRows.click(); }, {{documents + " where ID <> 7", {"d", "p"}}});
  });
  form().View(7);
  desktop.inModal("FormPeriodBranch", [](ui::Form&) {});
  expect([&] { form().cmdPeriodBranch.click(); },
         {{"select AccountID, PeriodID, Name as PeriodName from tblAccountPeriodAccount join "
           "tblAccountPeriod p on p.ID = PeriodID where AccountID = 7"}});
  in<periods::FormPeriodBranch>("FormPeriodBranch", form().cmdPeriodBranch, [&](auto& screen) {
    const auto add = [&] { screen.cmdAdd.click(); };
    const auto hide = [&] { screen.cmdDel.click(); };
    pick(screen.sltPeriod, 4);
    expect(add, {{"insert into tblAccountPeriodAccount values (7, 4)"}});
    expect(hide, {{"delete from tblAccountPeriodAccount where AccountID = 7 and PeriodID = 4"}});
    pick(screen.sltPeriod, -1);
    for (int yes = 0; yes < 3; ++yes) notices.answer(1);
    expect(add, {{"insert or ignore into tblAccountPeriodAccount select 7, ID from tblAccountPeriod",
                  {"tblAccountPeriod"}}});
    expect([&] { screen.cmdDeleteRows.click(); },
           {{"delete from tblAccountPeriodAccount where AccountID = 7 and PeriodID = #"}});
    expect(hide, {{"delete from tblAccountPeriodAccount where AccountID = 7"}});
    both("insert into tblAccountPeriodAccount (AccountID, PeriodID) values (7, 2), (7, 3)");
    expect([&] { screen.cmdDeleteAllRows.click(); },
           {{"delete from tblAccountPeriodAccount where AccountID = 7"}});
  });
  for (const std::int32_t source : {1, -1}) {
    in<periods::FormCopyPeriodAccount>("FormCopyPeriodAccount", form().cmdCopyPeriod, [&](auto& screen) {
      if (source != -1) pick(screen.sltPeriodFrom, source);
      pick(screen.sltPeriodTo, 4);
      if (source == -1) notices.answer(1);
      const std::vector<ByHand> merge = {
          {"insert or ignore into tblAccountPeriodAccount select AccountID, 4 from "
           "tblAccountPeriodAccount "
           "where PeriodID = 1"}};
      const std::vector<ByHand> chart = {
          {"delete from tblAccountPeriodAccount where PeriodID = 4"},
          {"insert into tblAccountPeriodAccount select ID, 4 from tblAccount", {"tblAccount"}}};
      expect([&] { screen.cmdAutoCodding.click(); }, source == -1 ? chart : merge);
    });
  }
  const auto empty = [&](std::int32_t period, ui::PushButton periods::FormDeletePeriod::*command,
                         const std::vector<ByHand>& byHand) {
    in<periods::FormDeletePeriod>("FormDeletePeriod", form().cmdDeletePeriod, [&](auto& screen) {
      pick(screen.sltPeriodFrom, period);
      notices.answer(1);
      expect([&] { (screen.*command).click(); }, byHand);
    });
  };
  empty(3, &periods::FormDeletePeriod::cmdDeletePossible,
        {{"delete from tblAccountPeriodAccount where PeriodID = 3 and AccountID not in (with used as (select "
          "AccountID from tblAccountDocumentDetail join tblAccountDocument d on d.ID = DocumentID where "
          "FarsiDocumentDate like '1404/%') select AccountID from used union select p.ID from "
          "tblAccountParent p where ChildID in (select AccountID from used))"}});
  empty(2, &periods::FormDeletePeriod::cmdDelete, {{documents + " where FarsiDocumentDate like '1403/%'"}});
  empty(4, &periods::FormDeletePeriod::cmdDelete,
        {{"delete from tblAccountPeriodAccount where PeriodID = 4"}});
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
  const std::string classes =
      " from tblAccountClass, tblAccountRelatedClasses where ID = ClassID and AccountID = 153 order by "
      "Sequence";
  const auto classesOf = [&](std::int32_t account, const std::function<void(frmAccountRelClasses&)>& person) {
    form().View(account);
    in<frmAccountRelClasses>("frmAccountRelClasses", form().cmdRelClasses, person);
  };
  classesOf(13, [&](auto& screen) {
    expect([&] { screen.cmdOk.click(); },
           {{"select * from tblAccountDocumentDetail where AccountID = 13 limit 1"}});
  });
  classesOf(114, [&](auto& screen) {
    screen.lstClasses.choose(1);
    screen.cmdDelete.click();
    pick(screen.mptEntityType, 3);
    desktop.tick();
    screen.cmdAdd.click();
    desktop.tick();
    screen.lstClasses.choose(0);
    screen.cmdMoveDown.click();
    expect([&] { screen.cmdOk.click(); },
           {{"update tblAccountRelatedClasses set Sequence = 2 where AccountID = 114 and ClassID = 1"},
            {"insert into tblAccountRelatedClasses values (114, 3, 1, null)"},
            {"delete from tblAccountRelatedClasses where AccountID = 114 and ClassID = 2"}});
  });
  classesOf(54, [&](auto& screen) {
    screen.lstClasses.choose(0);
    screen.cmdDelete.click();
    expect([&] { screen.cmdOk.click(); }, {{"delete from tblAccountRelatedClasses where AccountID = 54"}});
  });
  form().View(153);
  in<frmAccountRelClasses>("frmAccountRelClasses", form().cmdRelClasses, [&](auto& screen) {
    desktop.inModal("frmAccountRelObjects", [](ui::Form&) {});
    expect([&] { screen.cmdSelectObjects.click(); },
           {{"select ID, ifnull(Code, '') || '_' || Name as Name" + classes}});
  });
  desktop.inModal("frmAccountRelClasses", [](ui::Form&) {});
  expect([&] { form().cmdRelClasses.click(); },
         {{"select ID, ifnull(Code, '') || '_' || Name as Name, Sequence" + classes}});

  classesOf(30, [&](auto& screen) {
    const std::string mine = " where AccountID = 30 and ClassID = 3";
    desktop.inModal("frmAccountRelObjects", [&](ui::Form& shown) {
      auto& inner = dynamic_cast<entities::frmAccountRelObjects&>(shown);
      expect([&] { inner.cmbClass.choose(0); },
             {{"select 1 as IncludeAllObjects"},
              {"select ViewMajor, ViewMinor from tblAccountClass where ID = 3"},
              {kObjects + "is null order by Name"},
              {"select * from tblAccountRelatedClassesDetail" + mine + " and ObjectID = #"},
              {kObjects + "= # order by Name"}});
      const auto save = [&] { inner.cmdOk.click(); };
      inner.chkAllObjects.click();
      inner.treeObjects.tick(inner.treeObjects.find("N18"));
      expect(save, {{"update tblAccountRelatedClasses set IncludeAllObjects = 0" + mine},
                    {"delete from tblAccountRelatedClassesDetail" + mine},
                    {"insert into tblAccountRelatedClassesDetail select 30, 3, ID from tblEntityBank where "
                     "ParentID is null"}});
      inner.chkAllObjects.click();
      expect(save, {{"update tblAccountRelatedClasses set IncludeAllObjects = 1" + mine},
                    {"delete from tblAccountRelatedClassesDetail" + mine}});
    });
    screen.cmdSelectObjects.click();
  });
}

TEST_F(Statements, OfWorkOnWholeBranches) {
  learn([&] { control.View(std::int16_t{1}); });
  const auto deleteBelow = [&](std::int32_t account, const char* code, const std::vector<ByHand>& byHand) {
    in<batch::frmAccountBatch>("frmAccountBatch", form().mnuAccountBatch, [&](auto& screen) {
      pick(screen.sltParent, account, code);
      notices.answer(1);
      expect([&] { screen.cmdDelete.click(); }, byHand);
    });
  };
  deleteBelow(41, "1030101",
              {{"select * from tblAccountDocumentDetail where AccountID > 41 and AccountID < 50"}});
  deleteBelow(102, "106",
              {{"select * from tblAccount where ID > 102 and ID < 115 order by NoLevel desc, ID"},
               {"delete from tblAccount where ID > 102 and ID < 115 and NoLevel = 4;"
                "delete from tblAccount where ID > 102 and ID < 115"}});
  shell.components.add("SheetKit.SheetWriter", [this] { return std::make_unique<Exporting>(shell); });
  expect([&] { form().mnuExcelCode.click(); },
         {{"select Code as \"كدحساب\", Title as \"شرح حساب\", AccGroup as \"گروه حساب\", AccountStatus as "
           "\"ماهيت حساب\", AccountType as \"حساب\", RemainedType as \"وضعيت حساب\", AccContract as \"مركز "
           "هزينه\", NoLevel as \"سطح\", Notes as \"ملاحظات\" from vwAccount order by Code, NoLevel",
           {"a"}}});

  in<coding::frmAutoCodding>("frmAutoCodding", form().mnuSameCoding, [&](auto& screen) {
    const auto press = [&](ui::PushButton& command, const std::vector<ByHand>& byHand) {
      notices.answer(1);
      expect([&] { command.click(); }, byHand);
    };
    // The accounts of a level stand there by their IDs as they do by their codes.
    const auto numbered = [](const std::string& mother, const std::string& siblings) {
      return "update tblAccount set Code = " + mother +
             " || (50 + (select count(*) from tblAccount s where s." + siblings +
             " and s.ID < tblAccount.ID)) where " + siblings;
    };
    pick(screen.klmMotherAcc, 248, "6");
    screen.txtSimpleCode.type("50");
    desktop.tick();
    press(screen.cmdAutoCodding, {{"select * from tblAccount where ParentID = 248 order by Code"},
                                  {numbered("6", "ParentID = 248")}});
    press(screen.cmdAccountType, {{"update tblAccount set IsPermanent = 0 where ID > 248 and ID < 272"}});
    press(screen.cmdRemanedType, {{"update tblAccount set AccountNatureID = 1 where ID > 248 and ID < 272"}});
    pick(screen.klmMotherAcc, -1);
    press(screen.cmdAutoCodding, {{"select * from tblAccount where ParentID is null order by Code"},
                                  {numbered("''", "ParentID is null")}});
    press(screen.klmFlatButton1,
          {{"select * from tblAccount where NoLevel = 2 order by substr(Code, 1, 6), Code"},
           {"select * from tblAccount where ID = #"},
           {"create temp table places as select ID, row_number() over (order by Code) as place from "
            "tblAccount where NoLevel = 2;"
            "update tblAccount set Code = (select p.Code from tblAccount p where p.ID = tblAccount.ParentID) "
            "|| printf('%06d', (select place from places where places.ID = tblAccount.ID)) where NoLevel = "
            "2"}});
  });
}

}  // namespace
}  // namespace ledgertree::testing
