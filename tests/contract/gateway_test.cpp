// The gateway on a real engine: handles, values, iteration, failures; and the database's own constraints.

#include <random>
#include <vector>

#include "contract/engine.h"
#include "data/catalogue.h"
#include "data/dten.h"

namespace ledgertree::testing {
namespace {

using data::DataError, data::DateTime, data::Money, data::Value;

class Gateway : public Engine {
 protected:
  Gateway() { database.fillWithDemoChart(); }
};

TEST_F(Gateway, AHandleReadsWhatTheStatementGivesAndIsThereForTheNext) {
  data::RecordHandle& handle = shell.dtEn()->rssqlAccCostCenter;
  handle.Open("Delete tblAccountPeriodAccount Where AccountID=7");
  EXPECT_EQ(handle.State(), 0) << "it gives no rows";
  handle.Open("Select * From tblAccountPeriodAccount Where AccountID=7");
  EXPECT_EQ(handle.RecordCount(), 0);
  EXPECT_TRUE(handle.Eof());
  handle.Close();

  database.execute(
      "update tblAccount set CreateDate = '2024-03-20 08:30:00', Title = 'O''Neil گچ پژ كي', Notes = '', "
      "MaxDebit = " +
      database.amount(15005000) + ", MaxCredit = null where ID = 7");
  handle.Source("Select * From vwAccount Where ID in (7,8) Order by Code");
  handle.Open();
  EXPECT_EQ(handle.RecordCount(), 2);
  EXPECT_EQ(handle.Fields("MAXDEBIT"), Value(Money::fromTenThousandths(15005000)));
  EXPECT_TRUE(handle.Fields("MaxCredit").isNull());
  EXPECT_EQ(handle.Fields("CreateDate"),
            Value(DateTime{.year = 2024, .month = 3, .day = 20, .hour = 8, .minute = 30}));
  EXPECT_EQ(handle.Fields("Title").toText(), "O'Neil گچ پژ كي");
  EXPECT_EQ(handle.Fields("Notes"), Value(""));
  EXPECT_EQ(handle.Fields("id"), Value(7));
  EXPECT_EQ(handle.Fields("AccountStatus").toText(), "بدهكار");
  handle.Close();

  EXPECT_THROW(handle.Open("Select * From tblNowhere"), DataError);
  EXPECT_EQ(handle.State(), 0);
  handle.Open("Select top 1 * From tblAccount");
  EXPECT_EQ(handle.RecordCount(), 1);
  handle.Close();
}

TEST_F(Gateway, AWalkShowsRowsOneByOneAndMayEndAnywhere) {
  std::vector<std::int64_t> seen;
  const auto look = [&](const data::Rows& row) {
    EXPECT_EQ(row.count(), 1U);
    const std::string id = row.value(0, 0).toText();
    // The same statement again, while the rows of its first run are still being read.
    seen.push_back(number("Select count(*) as cnt from tblAccount Where ParentID = " + id));
    connection->walk("Select ID from tblAccount Where ID > 0 Order by ID",
                     [](const data::Rows&) { return false; });
    return seen.size() < 3;
  };
  connection->walk("Select ID from tblAccount Where ID > 1 Order by ID", look);
  EXPECT_EQ(seen, (std::vector<std::int64_t>{5, 5, 0}));
  EXPECT_THROW(connection->walk("Select ID from tblAccount Where ID > 2 Order by ID",
                                [](const data::Rows&) -> bool { throw std::runtime_error("no more paper"); }),
               std::runtime_error);
  connection->run("Update tblAccount Set Title = 'x' Where ID=7");
  connection->walk("Delete tblAccountPeriodAccount Where AccountID=7",
                   [](const data::Rows&) { return true; });
  EXPECT_EQ(database.number("select count(*) from tblAccountPeriodAccount where AccountID = 7"), 0);
}

TEST_F(Gateway, FailuresSayWhatWasWrongAndWithWhichStatement) {
  const std::string repeated =
      "Insert Into tblAccountRelatedClasses (AccountID,ClassID,Sequence) Values(54,1,1)";
  const DataError twice = failureOf([&] { connection->run(repeated); });
  EXPECT_EQ(twice.reason(), DataError::Reason::Constraint);
  EXPECT_EQ(twice.statement(), repeated);
  const DataError dependent = failureOf([&] { connection->run("Delete tblAccount Where ID=1"); });
  EXPECT_EQ(dependent.reason(), DataError::Reason::Constraint);

  EXPECT_EQ(failureOf([&] { connection->call(data::procedures::spAccountInsertRelatedObject, {}); }).reason(),
            DataError::Reason::Misuse);
}

TEST_F(Gateway, APacketEndsAtItsFirstFailureAndSaysHowFarItCame) {
  const auto call = [](std::vector<Value> values) {
    return data::Command{.procedure = &data::procedures::spTarvoHasPermission, .values = std::move(values)};
  };
  const std::vector<data::Command> good{
      {.statement = "Select Code,Title From tblAccount Where ID in (7,8) Order by Code"},
      call({1, 301}),
      call({3, 301}),
      {.statement = "Update tblAccount Set Notes = 'O''Neil' Where ID=7"},
      {.statement = "Delete tblAccountPeriodAccount Where AccountID=7"},
      {.statement = "Select AccountID From tblAccountPeriodAccount Where AccountID=7"}};
  const std::vector<data::Command> bad{
      {.statement = "Insert Into tblAccountRelatedClasses (AccountID,ClassID,Sequence) Values(54,1,1)"},
      {.statement = "Delete tblAccount Where ID=1"},  // the trigger refuses
      {.statement = "Select Nothing From tblAccount"},
      {.statement = "Select * From tblNowhere"},
      {.statement = "Select 'x\xff' From tblAccount"},
      call({1})};
  for (const data::Command& failing : bad) {
    SCOPED_TRACE(failing.statement);
    database.execute("update tblAccount set Notes = 'before' where ID = 7");
    std::vector<data::Command> packet = good;
    packet.push_back(failing);
    packet.push_back({.statement = "Update tblAccount Set Notes = 'behind' Where ID=7"});
    const data::Answers answers = connection->runTogether(packet);
    ASSERT_EQ(answers.ran.size(), good.size());
    EXPECT_EQ(allRows(*answers.ran[0].rows), allRows(*connection->run(good[0].statement)));
    EXPECT_TRUE(answers.ran[1].result != 0 && answers.ran[2].result == 0);
    for (const std::size_t none : {1, 2, 3, 4}) EXPECT_FALSE(answers.ran[none].rows);
    EXPECT_EQ(answers.ran[5].rows->count(), 0U);
    EXPECT_EQ(database.text("select Notes from tblAccount where ID = 7"), "O'Neil");
    const DataError told = failureOf([&] { std::rethrow_exception(answers.failure); });
    const DataError alone = failureOf([&] {
      std::rethrow_exception(connection->runTogether({&failing, 1}).failure);
    });
    EXPECT_EQ(told.reason(), alone.reason());
    EXPECT_EQ(told.statement(), alone.statement());
    EXPECT_EQ(std::string(told.what()), alone.what());
  }
  EXPECT_EQ(connection->runTogether(good).failure, nullptr);
}

class Rules : public Engine {
 protected:
  /// The ancestors of each account, and its level.
  std::string stored() {
    return database.rows("select ID, ChildID from tblAccountParent order by 1, 2") + "\n" +
           database.rows("select ID, NoLevel from tblAccount order by 1");
  }
  /// The same, derived one step up: the parent, the parent's ancestors, and the level below its own. No chart
  /// with a cycle satisfies that.
  std::string recomputed() {
    return database.rows(
               "select ParentID, ID from tblAccount where ParentID is not null union all "
               "select p.ID, a.ID from tblAccount a join tblAccountParent p on p.ChildID = a.ParentID "
               "order by 1, 2") +
           "\n" +
           database.rows(
               "select a.ID, coalesce(p.NoLevel, 0) + 1 from tblAccount a "
               "left join tblAccount p on p.ID = a.ParentID order by 1");
  }
};

TEST_F(Rules, AncestorsAndLevelsStayTrueWhateverMoves) {
  std::string rows;
  for (int id = 1; id <= 40; ++id)
    rows += (id == 1 ? "(" : ", (") + std::to_string(id) + ", " + (id < 4 ? "null" : std::to_string(id / 3)) +
            ")";
  database.execute("insert into tblAccount (ID, ParentID) values " + rows);
  ASSERT_EQ(stored(), recomputed()) << "parents and children in one statement";

  std::mt19937 random(20261123);
  const auto any = [&random] { return std::to_string(std::uniform_int_distribution<int>(1, 40)(random)); };
  int done = 0;
  for (int round = 0; round < 120; ++round) {
    const std::string parent = round % 5 == 0 ? "null" : any();
    const std::string before = stored();
    try {
      switch (round % 4) {
        case 0:
          connection->run("Update tblAccount Set ParentID=" + parent + ",NoLevel=7 Where ID in (" + any() +
                          "," + any() + "," + any() + ")");
          break;
        case 1:  // two accounts swap
          database.execute("update tblAccount set ParentID = case when ID = " + any() + " then " + any() +
                           " else " + parent + " end where ID in (" + any() + ", " + any() + ")");
          break;
        case 2:
          connection->run("Delete tblAccount Where ID in (" + any() + "," + any() + ")");
          break;
        default:
          connection->run("Update tblAccount Set NoLevel=9 Where ID<20");
      }
      ++done;
    } catch (const std::exception&) {
      ASSERT_EQ(stored(), before) << "a refusal leaves no trace";
    }
    ASSERT_EQ(stored(), recomputed()) << "after " << round << " writes";
  }
  EXPECT_GT(done, 50);
}

TEST_F(Rules, WhatAScreenShowsIsCountedWhenItChangesAndNothingElse) {
  const auto changes = [this] { return number("select isnull(sum(Changes), 0) from vwLedgerTreeChanges"); };
  const std::pair<const char*, bool> writes[] = {
      {"insert into tblAccount (ID, Code, Title) values (1, '1', 'a'), (2, '2', 'b')", true},
      {"update tblAccount set ParentID = 1 where ID = 2", true},
      {"update tblAccount set IsClosed = 1, Notes = 'n' where ID = 2", true},
      {"update tblAccount set IsClosed = 0 where ID = 2", onServer()},
      {"update tblAccount set Title = 'c' where ID = 9", false},
      {"insert into tblAccountPeriodAccount (AccountID, PeriodID) values (2, 4)", true},
      {"delete from tblAccountPeriodAccount", true},
      {"insert into tblAccountRelatedObjects (AccountID, AccountGroupID) values (2, 4)", true},
      {"update tblAccountRelatedObjects set AccountGroupID = 5", true},
      {"delete from tblAccountRelatedObjects", true},
      {"insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1404/01/01')", false},
      {"insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, 1)", false},
      {"insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (2, 11, 1)", false},
      {"delete from tblAccount where ID = 2", true}};
  for (const auto& [write, counts] : writes) {
    const std::int64_t before = changes();
    database.execute(write);
    EXPECT_EQ(changes() > before, counts) << write;
  }
}

TEST_F(Rules, AnAccountTakesAlongWhatBelongsToItAndStaysWhereSomethingDependsOnIt) {
  database.execute(
      "insert into tblAccount (ID, ParentID, Code) values (1, null, '1'), (2, 1, '101'), (3, 1, '102'), (4, "
      "null, '2');"
      "insert into tblAccountPeriodAccount (AccountID, PeriodID) values (2, 1), (4, 1);"
      "insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID) "
      "values (2, -1, 0, -1), (4, 7, 1, 2);"
      "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (2, 1, 1), (4, 1, 1);"
      "insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) values (2, 1, 10), (4, 1, "
      "10);"
      "insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1404/01/01');"
      "insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, 3)");
  EXPECT_EQ(database.rows("select AccountGroupID, RelatedClassID, RelatedObjectID from "
                          "tblAccountRelatedObjects where AccountID = 2"),
            "null|null|null");
  for (const std::string accounts : {"(1)", "(3)", "(4,3)", "(1,2)"}) {
    EXPECT_EQ(failureOf([&] { connection->run("Delete tblAccount Where ID in " + accounts); }).reason(),
              DataError::Reason::Constraint);
  }
  EXPECT_EQ(number("Select count(*) as cnt from tblAccount"), 4);
  connection->run("Delete tblAccount Where ID in (2,4)");
  for (const std::string table : {"tblAccountPeriodAccount", "tblAccountRelatedObjects",
                                  "tblAccountRelatedClasses", "tblAccountRelatedClassesDetail"})
    EXPECT_EQ(number("Select count(*) as cnt from " + table), 0) << table;
  EXPECT_EQ(database.rows("select ID, ChildID from tblAccountParent"), "1|3");
}

}  // namespace
}  // namespace ledgertree::testing
