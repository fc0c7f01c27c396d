// Every statement that the screens send, with numbers of the demo chart in it: its rows, or what it leaves
// behind, against SQLite written by hand; on the embedded engine also the way in which it finds the rows.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "contract/engine.h"
#include "db/schema.h"
#include "engines/sqlite/embedded_connection.h"
#include "text/fold.h"

namespace ledgertree::testing {
namespace {

struct Case {
  std::string statement;
  std::string byHand;
  /// For a write: a query on what it changes.
  std::string shows = {};
  /// The tables, by their names in the statement, of which every row is looked at: because the rows are what
  /// is asked for, or because the table doesn't grow with the chart.
  std::set<std::string> scans = {};
  /// What makes the statement telling, done ahead of it.
  std::string before = {};
};

std::string inPeriod(const std::string& period) {
  return "(ID in (Select x.AccountID from tblAccountPeriodAccount x Where x.PeriodID = " + period +
         ") or -1=" + period + ")";
}

std::string inPeriodByHand(const std::string& period) {
  return "exists (select 1 from tblAccountPeriodAccount where PeriodID = " + period +
         " and AccountID = tblAccount.ID)";
}

const std::string kDocumentsOf =
    "select d.ID  from tblAccountDocument d  where exists(Select dd.* from tblAccountDocumentDetail dd where "
    "dd.AccountID in (Select ";

std::string documentsOf(const std::string& account, const std::string& dated) {
  return kDocumentsOf + account + " union select p.ChildID from tblAccountParent p where p.ID=" + account +
         ")) and (exists(select p.* from tblAccountPeriod p where d.FarsiDocumentDate between "
         "p.FarsiBeginDate and p.FarsiEndDate" +
         dated + ")";
}

const std::string kRelated = "Select * From vwAccountRelatedObjects Where AccountGroupID=4";
const std::string kRelatedByHand =
    "select r.AccountID, AccountGroupID, RelatedClassID, RelatedObjectID, PositionID, Code, Title "
    "from tblAccountRelatedObjects r join tblAccount a on a.ID = r.AccountID where AccountGroupID = 4";
const std::string kTreeColumns = "ID, ParentID, IsClosed, AccountNatureID, Code, Title";
const std::string kLastSix = "ID, substr(Code, -6) as rCode, ";

const std::vector<Case>& reads() {
  static const std::vector<Case> cases = {
      // The period, the parameters, the movement of an account.
      {"Select * From tblAccountPeriod Where ID=3", "select * from tblAccountPeriod where ID = 3"},
      {"Select * From tblAccountPeriod Where ID =-1", "select * from tblAccountPeriod where 0"},
      {"Select top 1 * from tblAccountDocumentDetail Where AccountID = 13",
       "select * from tblAccountDocumentDetail where AccountID = 13 limit 1"},
      {"Select Value From tblTarvoSystemParameters Where ID = 301",
       "select Value from tblTarvoSystemParameters where ID = 301"},
      {"Select * From tblTarvoSystemParameters Where ID = 311 and Value=1",
       "select * from tblTarvoSystemParameters where ID = 311",
       "",
       {},
       "update tblTarvoSystemParameters set Value = '1' where ID = 311"},
      {"Select * From tblTarvoSystemParameters Where ID = 319 and Value=1",
       "select * from tblTarvoSystemParameters where 0"},
      {"Select * From vwTarvoBasePath", "select BasePath from tblTarvoBasePath", "", {"tblTarvoBasePath"}},
      // The tree.
      {"Select count(*) as cnt from tblAccount  where " + inPeriod("4") + " and IsNull(ParentID,-1)=1 ",
       "select count(*) as cnt from tblAccount where " + inPeriodByHand("4") + " and ParentID = 1"},
      {"Select count(*) as cnt from tblAccount  where " + inPeriod("-1") + " and IsNull(ParentID,-1)=-1 ",
       "select count(*) as cnt from tblAccount where ParentID is null"},
      {"select Code from tblAccount Where ID in (Select x.ParentID from tblAccount x Where x.ID=49)",
       "select Code from tblAccount where ID = 41"},
      {"select * from tblAccountPeriod order by FarsibeginDate Desc",
       "select * from tblAccountPeriod order by ID desc",
       "",
       {"tblAccountPeriod"}},
      {"Select ID,ParentID,IsClosed,AccountNatureID,Code,Title  from tblAccount  where " + inPeriod("4") +
           " and IsNull(ParentID,-1)=2 Order by Code",
       "select " + kTreeColumns + " from tblAccount where ParentID = 2 and " + inPeriodByHand("4") +
           " order by Code"},
      {"Select ID,ParentID,IsClosed,AccountNatureID,Code,Title  from tblAccount  where " + inPeriod("-1") +
           " and IsNull(ParentID,-1)=-1 Order by Code",
       "select " + kTreeColumns + " from tblAccount where ParentID is null order by Code"},
      // The record, and the checks of a save.
      {"Select * From vwAccount where ID=49", "select * from vwAccount where ID = 49"},
      {"Select * from tblAccountRelatedObjects where AccountID =49",
       "select * from tblAccountRelatedObjects where AccountID = 49"},
      {"Select isnull(Code,'') as Code from tblAccount Where ID = 49",
       "select Code from tblAccount where ID = 49"},
      {"Select * From tblAccountParent where ID=1 And ChildID=49", "select 1 as ID, 49 as ChildID"},
      {"Select * From tblAccountDocumentDetail where accountID=13",
       "select * from tblAccountDocumentDetail where AccountID = 13"},
      {kRelated + " And RelatedClassID Is Null And RelatedObjectID Is Null", kRelatedByHand + " and 0"},
      {"Select * From vwAccountRelatedObjects Where AccountGroupID=1 And AccountID <>3 And RelatedClassID Is "
       "Null And RelatedObjectID Is Null",
       "select AccountID, AccountGroupID, RelatedClassID, RelatedObjectID, PositionID, Code, Title from "
       "tblAccount a, tblAccountRelatedObjects where a.ID = AccountID and AccountGroupID = 1 and "
       "ifnull(RelatedClassID, RelatedObjectID) is null and AccountID not in (3)"},
      {kRelated + " And RelatedClassID =1 And RelatedObjectID =8",
       kRelatedByHand + " and (RelatedClassID, RelatedObjectID) = (1, 8)"},
      {kRelated + " And RelatedClassID =1 And RelatedObjectID =8 And AccountID <> 46",
       kRelatedByHand + " and RelatedObjectID = 8"},
      {kRelated + " And RelatedClassID =1 And RelatedObjectID =8 And AccountID <> 46 And PositionID = 2",
       kRelatedByHand + " and RelatedObjectID = 8",
       "",
       {},
       "update tblAccount set PositionID = 2 where ID = 49"},
      {"Select Isnull(IsPermanent,0) as IsPermanent, isnull(AccountNatureID,0) as AccountNatureID from "
       "tblAccount Where ID= 248",
       "select 0 as IsPermanent, 1 as AccountNatureID",
       "",
       {},
       "update tblAccount set IsPermanent = null where ID = 248"},
      {"Select * from tblAccountClass where ID=2", "select * from tblAccountClass where ID = 2"},
      // The proposal of a code, and the recoding.
      {"Select Code from tblAccount where ParentID Is Null Order By Code Desc",
       "select Code from tblAccount where ParentID is null order by Code desc"},
      {"Select Code from tblAccount where ParentID=1 Order By Code Desc",
       "select Code from tblAccount where ParentID = 1 order by Code desc"},
      {"Select Code,NoLevel from tblAccount where ParentID Is Null Order By Code Desc",
       "select Code, NoLevel from tblAccount where ParentID is null order by Code desc"},
      {"Select Code,NoLevel from tblAccount where ParentID=1 Order By Code Desc",
       "select Code, NoLevel from tblAccount where ParentID = 1 order by Code desc"},
      {"Select * from tblAccount where ID=46", "select * from tblAccount where ID = 46"},
      {"Select ID,right(Code,6) As rCode,Code,Title,NoLevel from tblAccount where Title ='d''ARC موقت' and "
       "NoLevel =2",
       "select " + kLastSix + "Code, Title, NoLevel from tblAccount where ID = 2",
       "",
       {},
       "update tblAccount set Title = 'D''arc موقت  ' where ID = 2; "
       "update tblAccount set Title = 'D''arc موقت' where ID = 3"},
      {"Select ID,right(Code,6) As rCode,Title,NoLevel from tblAccount where NoLevel =3 Order By rCode desc",
       "select " + kLastSix +
           "Title, NoLevel from tblAccount where NoLevel = 3 "
           "order by substr(Code, -6) collate nocase desc"},
      {"Select * From tblAccount Where ParentID = 2 Order By Code",
       "select * from tblAccount where ParentID = 2 order by Code"},
      {"Select * From tblAccount Where ParentID Is Null Order By Code",
       "select * from tblAccount where ParentID is null order by Code"},
      {"Select * From tblAccount Where Nolevel=2 Order By Left(Code,6),Code",
       "select * from tblAccount where NoLevel = 2 order by substr(Code, 1, 6), Code"},
      {"Select * From tblAccount Where ID=1", "select * from tblAccount where ID = 1"},
      // Classes and objects.
      {"Select ID, isnull(Code,'') + '_' +  Name as Name,Sequence from tblAccountClass , "
       "tblAccountRelatedClasses Where ID=ClassID and AccountID=114 Order by Sequence",
       "select ID, ifnull(Code, '') || '_' || Name as Name, Sequence from tblAccountClass, "
       "tblAccountRelatedClasses where ID = ClassID and AccountID = 114 order by Sequence"},
      {"Select ID, isnull(Code,'') + '_' +  Name as Name from tblAccountClass , tblAccountRelatedClasses "
       "Where "
       "ID=ClassID and AccountID=153 Order by Sequence",
       "select ID, iif(ID = 2, '_', '0' || ID || '_') || Name as Name from tblAccountClass",
       "",
       {},
       "update tblAccountClass set Code = null where ID = 2"},
      {"Select isnull(IncludeAllObjects,1) as IncludeAllObjects from tblAccountRelatedClasses Where "
       "AccountID=54 and ClassID = 1",
       "select 1 as IncludeAllObjects"},
      {"Select ViewMajor,ViewMinor from tblAccountClass Where ID=3",
       "select 'vwEntityBank' as ViewMajor, 'vwEntityBankMinor' as ViewMinor"},
      {"SELECT ID, ParentID, Name,(SELECT COUNT(*)  FROM vwEntityBank AS Childs  WHERE Childs.ParentID = "
       "vwEntityBank.ID) AS NumberOfChilds FROM vwEntityBank Where ParentID is null ORDER BY Name",
       "select ID, ParentID, Name, (select count(*) from tblEntityBank c where c.ParentID = b.ID) as "
       "NumberOfChilds from tblEntityBank b where ParentID is null order by Name"},
      {"SELECT ID, ParentID, Name,(SELECT COUNT(*)  FROM dbo.vwEntityBank AS Childs  WHERE Childs.ParentID = "
       "dbo.vwEntityBank.ID) AS NumberOfChilds FROM dbo.vwEntityBank Where ParentID = 1 ORDER BY Name",
       "select ID, ParentID, Name, (select count(*) from tblEntityBank c where c.ParentID = b.ID) as "
       "NumberOfChilds from tblEntityBank b where ParentID = 1 order by Name"},
      {"Select * from tblAccountRelatedClassesDetail Where AccountID=30 and ClassID = 3 and ObjectID = 7",
       "select 30 as AccountID, 3 as ClassID, 7 as ObjectID"},
      // The periods of an account.
      {"select *,(select x.Name from vwAccountPeriodMajor x Where x.ID=PeriodID) as PeriodName from "
       "tblAccountPeriodAccount Where AccountID=7",
       "select AccountID, PeriodID, Name as PeriodName from tblAccountPeriodAccount join tblAccountPeriod p "
       "on "
       "p.ID = PeriodID where AccountID = 7"},
      {documentsOf("1", " and p.ID=3") + " or -1=3)",
       "select ID from tblAccountDocument where FarsiDocumentDate like '1404/%'"},
      {documentsOf("46", " and p.ID=4") + " or -1=4)", "select ID from tblAccountDocument where 0"},
      {documentsOf("79", " and p.ID=3") + " or -1=3)", "select ID from tblAccountDocument where 0"},
      {documentsOf("1", " and p.ID=-1") + " or -1=-1)", "select ID from tblAccountDocument", "", {"d"}},
      {documentsOf("1", ")"),
       "select ID from tblAccountDocument where ID <> 7",
       "",
       {"d", "p"},
       "update tblAccountDocument set FarsiDocumentDate = '1401/12/29' where ID = 7"},
      {"select d.ID  from tblAccountDocument d  where 1=1 and (exists(select p.* from tblAccountPeriod p "
       "where "
       "d.FarsiDocumentDate between p.FarsiBeginDate and p.FarsiEndDate and p.ID=2))",
       "select ID from tblAccountDocument where FarsiDocumentDate like '1403/%'"},
      // Work on a whole branch, and the export.
      {"Select * From tblAccountDocumentDetail Where AccountID In ( Select ChildID From tblAccountParent "
       "Where "
       "ID = 41)",
       "select dd.* from tblAccountDocumentDetail dd, tblAccountParent p where p.ID = 41 and ChildID = "
       "AccountID"},
      {"Select * From tblAccount Where ID in (Select ChildID From tblAccountParent Where ID = 117) order by "
       "Nolevel desc",
       "select a.* from tblAccount a join tblAccountParent p on p.ChildID = a.ID where p.ID = 117 "
       "order by NoLevel desc, ChildID"},
      {"Select Code As 'كدحساب',Title As 'شرح حساب',AccGroup as 'گروه حساب',AccountStatus As "
       "'ماهيت حساب',AccountType As 'حساب',RemainedType As 'وضعيت حساب',AccContract As 'مركز "
       "هزينه',NoLevel As 'سطح',Notes As 'ملاحظات' From vwAccount Order By Code,NoLevel",
       "select Code as \"كدحساب\", Title as \"شرح حساب\", AccGroup as \"گروه حساب\", AccountStatus as "
       "\"ماهيت حساب\", AccountType as \"حساب\", RemainedType as \"وضعيت حساب\", AccContract as \"مركز "
       "هزينه\", NoLevel as \"سطح\", Notes as \"ملاحظات\" from vwAccount order by Code, NoLevel",
       "",
       {"a"}},
  };
  return cases;
}

const std::string kMemberships = "select * from tblAccountPeriodAccount order by 1, 2";
const std::string kClosed = "select ID from tblAccount where IsClosed = 1 order by 1";
const std::string kClasses = "select * from tblAccountRelatedClasses order by 1, 2, 3";
const std::string kObjects = "select * from tblAccountRelatedClassesDetail order by 1, 2, 3";
const std::string kRelations = "select * from tblAccountRelatedObjects order by 1";

const std::vector<Case>& writes() {
  static const std::vector<Case> cases = {
      // The save, and the deletion of an account.
      {"Delete tblAccountRelatedObjects Where AccountID =49",
       "delete from tblAccountRelatedObjects where AccountID = 49", kRelations},
      {"INSERT INTO tblAccountRelatedObjects (AccountID,AccountGroupID,RelatedClassID,RelatedObjectID) "
       "VALUES "
       "(7,4,1,-1)",
       "insert into tblAccountRelatedObjects values (7, 4, 1, null)", kRelations},
      {"Update tblAccount Set GroupID = null Where ID =49",
       "update tblAccount set GroupID = null where ID = 49", "select ID, GroupID from tblAccount order by 1"},
      {"Update tblAccount Set IsClosed = 1  Where ID in (Select ChildID From tblAccountParent Where ID = "
       "117)",
       "update tblAccount set IsClosed = 1 where ID > 117 and ID < 173", kClosed},
      {"Update tblAccount Set IsClosed = 0  Where ID in (Select ChildID From tblAccountParent Where ID = 2)",
       "update tblAccount set IsClosed = 0 where ID > 2 and ID < 31", kClosed},
      {"Delete tblAccount Where ID=79", "delete from tblAccount where ID = 79",
       "select ID from tblAccount union all select AccountID from tblAccountPeriodAccount union all select "
       "ChildID from tblAccountParent"},
      // The recoding.
      {"Update tblAccount  Set Code = 'D''x0001 ' Where ID = 46",
       "update tblAccount set Code = 'D''x0001 ' where ID = 46", "select ID, Code from tblAccount"},
      {"Update tblAccount  Set IsPermanent = (select max(IsPermanent) from tblAccount Where ID= 1 )  Where "
       "ID "
       "In ( Select ChildID From tblAccountParent Where ID = 248)",
       "update tblAccount set IsPermanent = 1 where ID > 248 and ID < 272",
       "select ID, IsPermanent from tblAccount"},
      {"Update tblAccount  Set AccountNatureID = (select max(AccountNatureID) from tblAccount Where ID= 1 )  "
       "Where ID In ( Select ChildID From tblAccountParent Where ID = 248)",
       "update tblAccount set AccountNatureID = 0 where ID > 248 and ID < 272",
       "select ID, AccountNatureID from tblAccount"},
      // Classes and objects.
      {"Update tblAccountRelatedClasses set Sequence = 3 Where AccountID = 153 and ClassID = 2",
       "update tblAccountRelatedClasses set Sequence = 3 where AccountID = 153 and ClassID = 2", kClasses},
      {"Insert Into tblAccountRelatedClasses (AccountID,ClassID,Sequence) Values(7,3,1)",
       "insert into tblAccountRelatedClasses values (7, 3, 1, null)", kClasses},
      {"Delete tblAccountRelatedClasses Where AccountID = 114 and ClassID not in (2,3)",
       "delete from tblAccountRelatedClasses where AccountID = 114 and ClassID = 1", kClasses},
      {"Delete tblAccountRelatedClasses Where AccountID = 114 and ClassID not in (-1)",
       "delete from tblAccountRelatedClasses where AccountID = 114", kClasses},
      {"Update tblAccountRelatedClasses Set IncludeAllObjects = 0 Where AccountID = 54 and ClassID = 1",
       "update tblAccountRelatedClasses set IncludeAllObjects = 0 where AccountID = 54", kClasses},
      {"Delete tblAccountRelatedClassesDetail Where AccountID = 30 and ClassID = 3",
       "delete from tblAccountRelatedClassesDetail where AccountID = 30", kObjects},
      {"Insert into tblAccountRelatedClassesDetail (AccountID,ClassID,ObjectID) Values (30,3,2)",
       "insert into tblAccountRelatedClassesDetail values (30, 3, 2)", kObjects},
      // The periods of an account.
      {"insert into tblAccountPeriodAccount(AccountID,PeriodID)  (Select 7, ID from tblAccountPeriod  Where "
       "(ID=4 or -1=4) and not exists(select x.* from tblAccountPeriodAccount x where "
       "x.PeriodID=tblAccountPeriod.ID and x.AccountID=7))",
       "insert into tblAccountPeriodAccount values (7, 4)", kMemberships},
      {"insert into tblAccountPeriodAccount(AccountID,PeriodID)  (Select 7, ID from tblAccountPeriod  Where "
       "(ID=-1 or -1=-1) and not exists(select x.* from tblAccountPeriodAccount x where "
       "x.PeriodID=tblAccountPeriod.ID and x.AccountID=7))",
       "insert or ignore into tblAccountPeriodAccount select 7, ID from tblAccountPeriod",
       kMemberships,
       {"tblAccountPeriod"}},
      {"delete tblAccountPeriodAccount Where AccountID=7 and (PeriodID=2 or -1=2)",
       "delete from tblAccountPeriodAccount where AccountID = 7 and PeriodID = 2", kMemberships},
      {"delete tblAccountPeriodAccount Where AccountID=8 and (PeriodID=-1 or -1=-1)",
       "delete from tblAccountPeriodAccount where AccountID = 8", kMemberships},
      {"Delete tblAccountPeriodAccount Where AccountID=7 and PeriodID=1",
       "delete from tblAccountPeriodAccount where AccountID = 7 and PeriodID = 1", kMemberships},
      {"delete tblAccountPeriodAccount Where AccountID=7",
       "delete from tblAccountPeriodAccount where AccountID = 7", kMemberships},
      // Whole periods.
      {"delete tblAccountPeriodAccount Where PeriodID = 2",
       "delete from tblAccountPeriodAccount where PeriodID = 2", kMemberships},
      {"insert into tblAccountPeriodAccount(AccountID,PeriodID) select ID,5 from tblAccount ",
       "insert into tblAccountPeriodAccount select ID, 5 from tblAccount",
       kMemberships,
       {"tblAccount"}},
      {"insert into tblAccountPeriodAccount(AccountID,PeriodID) select AccountID,4 from "
       "tblAccountPeriodAccount "
       " Where PeriodID=1 and not exists(Select x.* from tblAccountPeriodAccount x Where "
       "x.AccountID=tblAccountPeriodAccount.AccountID and x.PeriodID=4)",
       "insert or ignore into tblAccountPeriodAccount select AccountID, 4 from tblAccountPeriodAccount where "
       "PeriodID = 1",
       kMemberships},
      {"delete tblAccountPeriodAccount Where PeriodID = 3 and not exists(select d.*                     from "
       "tblAccountDocument d inner join tblAccountDocumentDetail dd on d.ID=dd.DocumentID                    "
       "where dd.AccountID in (select tblAccountPeriodAccount.AccountID union select p.ChildID from "
       "tblAccountParent p Where p.ID=tblAccountPeriodAccount.AccountID)                     and "
       "exists(select "
       "p.* from tblAccountPeriod p where p.ID=3 and d.FarsiDocumentDate between p.FarsiBeginDate and "
       "p.FarsiEndDate))",
       "delete from tblAccountPeriodAccount where PeriodID = 3 and AccountID not in (with used as (select "
       "AccountID from tblAccountDocumentDetail join tblAccountDocument d on d.ID = DocumentID where "
       "FarsiDocumentDate like '1404/%') select AccountID from used union select p.ID from tblAccountParent "
       "p "
       "where ChildID in (select AccountID from used))",
       kMemberships},
  };
  return cases;
}

/// A demo chart that the engine has open, and the same in a model, which SQLite changes and reads by hand.
class Statements : public Engine {
 protected:
  Statements() {
    db::openSchema(model);
    db::createDemoChart(model);
    database.fillWithDemoChart();
  }

  /// No table is scanned but those named.
  void expectPlan(const Case& one) {
    auto* const embedded = dynamic_cast<engines::sqlite::EmbeddedConnection*>(connection.get());
    if (embedded == nullptr) return;
    for (const std::string& step : embedded->queryPlan(one.statement)) {
      if (!step.starts_with("SCAN ")) continue;
      const std::string table = step.substr(5, step.find(' ', 5) - 5);
      EXPECT_TRUE(table == "CONSTANT" || one.scans.contains(table)) << one.statement << "\n  " << step;
    }
  }

  SQLite::Database model{":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
};

/// The rows of a text, one a line; as a server tells them apart, whose code page has fewer letters.
std::vector<std::string> lines(const std::string& text, bool sorted) {
  std::vector<std::string> found;
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t end = std::min(text.find('\n', place), text.size());
    const std::string line = text.substr(place, end - place);
    found.push_back(testServer().empty() ? line : text::fold(line));
    place = end + 1;
  }
  if (sorted) std::sort(found.begin(), found.end());
  return found;
}

/// The columns that SQLite has for a statement, of the rows of the engine; a server's table may have more.
data::Rows columnsOf(SQLite::Statement& byHand, const data::Rows& rows) {
  data::Rows picked;
  for (int column = 0; column < byHand.getColumnCount(); ++column)
    picked.addColumn(byHand.getColumnName(column));
  for (std::size_t row = 0; row < rows.count(); ++row) {
    for (const std::string& name : picked.columns())
      picked.addValue(rows.value(row, rows.column(name).value()));
  }
  return picked;
}

TEST_F(Statements, GiveTheRowsThatSqliteGivesByHand) {
  for (const Case& one : reads()) {
    SCOPED_TRACE(one.statement);
    if (!one.before.empty()) model.exec(one.before);
    if (!one.before.empty()) database.execute(one.before);
    const std::optional<data::Rows> rows = connection->run(one.statement);
    ASSERT_TRUE(rows.has_value());
    SQLite::Statement byHand(model, one.byHand);
    EXPECT_TRUE(onServer() || rows->columns().size() == static_cast<std::size_t>(byHand.getColumnCount()));
    // Names sort by the rules of the database's collation.
    const bool ordered = one.byHand.find(onServer() ? "order by Code" : "order by") != std::string::npos;
    EXPECT_EQ(lines(allRows(columnsOf(byHand, *rows)), !ordered),
              lines(allRows(model, one.byHand), !ordered));
    expectPlan(one);
  }
}

TEST_F(Statements, LeaveBehindWhatSqliteLeavesByHand) {
  for (const Case& one : writes()) {
    SCOPED_TRACE(one.statement);
    expectPlan(one);
    const std::string before = allRows(model, one.shows);
    model.exec(one.byHand);
    EXPECT_TRUE(allRows(model, one.shows) != before);
    EXPECT_FALSE(connection->run(one.statement).has_value());
    EXPECT_EQ(lines(database.rows(one.shows), true), lines(allRows(model, one.shows), true));
  }
}

}  // namespace
}  // namespace ledgertree::testing
