#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>

#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

/// A program that isn't ours and writes to the tables as it likes.
class Triggers : public ::testing::Test {
 protected:
  Triggers() {
    database.execute(
        "pragma foreign_keys = off;"
        "insert into tblAccount (ID, ParentID, Code) values (1, null, '1'), (2, 1, '101'), (3, 2, '10101'),"
        " (4, 3, '1010101'), (5, 1, '102'), (6, null, '2');"
        "insert into tblAccountPeriodAccount (AccountID, PeriodID) values (2, 1), (4, 1), (4, 2);"
        "insert into tblAccountRelatedObjects (AccountID, AccountGroupID) values (4, 7);"
        "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (4, 1, 1), (4, 2, 2);"
        "insert into tblAccountRelatedClassesDetail (AccountID, ClassID, ObjectID) values (4, 1, 10);"
        "insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1404/01/01');"
        "insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, 5)");
  }

  void expectRefused(const std::string& statement, const std::string& words) {
    const std::string before = everything();
    try {
      database.execute(statement);
      ADD_FAILURE() << statement << " was done";
    } catch (const SQLite::Exception& failure) {
      EXPECT_NE(std::string(failure.what()).find(words), std::string::npos) << failure.what();
    }
    EXPECT_EQ(everything(), before) << statement;
  }

  std::string everything() { return tree() + "\n" + ancestors() + "\n" + dependants(); }
  std::string tree() { return database.rows("select ID, ParentID, NoLevel from tblAccount order by ID"); }
  std::string ancestors() { return database.rows("select ID, ChildID from tblAccountParent order by 1, 2"); }
  std::string ancestorsOf(int id) {
    return database.rows("select ID from tblAccountParent where ChildID = " + std::to_string(id) +
                         " order by ID");
  }
  std::string dependants() {
    return database.rows(
        "select 'period', AccountID, PeriodID from tblAccountPeriodAccount"
        " union all select 'object', AccountID, AccountGroupID from tblAccountRelatedObjects"
        " union all select 'class', AccountID, ClassID from tblAccountRelatedClasses"
        " union all select 'detail', AccountID, ObjectID from tblAccountRelatedClassesDetail order by 1, 2, "
        "3");
  }

  testing::TemporaryDatabase database;
};

TEST_F(Triggers, ADeletionIsRefusedForChildrenAndDocuments) {
  expectRefused("delete from tblAccount where ID = 3", "زيرشاخه دارد");
  expectRefused("delete from tblAccount where ID = 5", "سند حسابداري");
  expectRefused("delete from tblAccount where ID in (4, 6, 5)", "سند حسابداري");
}

TEST_F(Triggers, ADeletionTakesAlongWhatBelongsToTheAccountAlone) {
  database.execute("delete from tblAccount where ID = 4");
  EXPECT_EQ(dependants(), "period|2|1");
  EXPECT_EQ(ancestors(), "1|2\n1|3\n1|5\n2|3");
  database.execute("insert into tblAccount (Code) values ('3')");
  EXPECT_EQ(database.text("select max(ID) from tblAccount"), "7")
      << "the next account must not be the deleted one";
}

TEST_F(Triggers, NoAccountGetsBelowItself) {
  expectRefused("update tblAccount set ParentID = 2 where ID = 2", "زير خودش");
  expectRefused("update tblAccount set ParentID = 4 where ID = 2", "زير خودش");
  expectRefused("update or ignore tblAccount set ParentID = 4 where ID in (6, 2)", "زير خودش");
  expectRefused("insert into tblAccount (ID, ParentID) values (9, 9)", "زير خودش");
  expectRefused("replace into tblAccount (ID, ParentID) values (1, 4)", "زير خودش");
  expectRefused("update or replace tblAccount set ID = 1 where ID = 3", "زير خودش");
}

TEST_F(Triggers, AReplacedAccountKeepsWhatIsBelowItAndWhatBelongsToIt) {
  database.execute("replace into tblAccount (ID, ParentID, Code, NoLevel) values (2, 6, '201', 40)");
  EXPECT_EQ(ancestorsOf(4), "2\n3\n6");
  EXPECT_EQ(database.text("select group_concat(NoLevel) from (select NoLevel from tblAccount order by ID)"),
            "1,2,3,4,2,1");
  EXPECT_EQ(database.text("select PeriodID from tblAccountPeriodAccount where AccountID = 2"), "1");
}

TEST_F(Triggers, AMissingParentCountsAsNoneUntilItAppears) {
  database.execute("insert into tblAccount (ID, ParentID, NoLevel) values (21, 20, 2), (22, 21, 3)");
  EXPECT_EQ(ancestorsOf(22), "21");
  EXPECT_EQ(database.number("select NoLevel from tblAccount where ID = 22"), 2);
  database.execute("insert into tblAccount (ID, ParentID) values (20, 5)");
  EXPECT_EQ(ancestorsOf(22), "1\n5\n20\n21");
  EXPECT_EQ(database.number("select NoLevel from tblAccount where ID = 22"), 5);
  expectRefused("update tblAccount set ParentID = 22 where ID = 1", "زير خودش");
}

TEST_F(Triggers, ANewKeyTakesAlongWhatBelongsToTheAccountAndLeavesTheChildrenBehind) {
  database.execute("update tblAccount set ID = 40 where ID = 4");
  EXPECT_EQ(dependants(),
            "class|40|1\nclass|40|2\ndetail|40|10\nobject|40|7\nperiod|2|1\nperiod|40|1\nperiod|40|2");
  EXPECT_EQ(ancestorsOf(40), "1\n2\n3");
  expectRefused("update tblAccount set ID = 50 where ID = 5", "سند حسابداري");

  database.execute("delete from tblAccountDocumentDetail; update tblAccount set ID = 20 where ID = 2");
  EXPECT_EQ(ancestorsOf(40), "3");
  database.execute("update tblAccount set ParentID = 20 where ID = 3");
  EXPECT_EQ(ancestorsOf(40), "1\n3\n20");

  database.execute("update tblAccount set ID = ID + 100, ParentID = ParentID + 100");
  EXPECT_EQ(ancestorsOf(140), "101\n103\n120");
}

TEST_F(Triggers, NobodySetsALevelByHand) {
  database.execute("update tblAccount set NoLevel = 9 where ID in (1, 4)");
  EXPECT_EQ(database.text("select group_concat(NoLevel) from (select NoLevel from tblAccount order by ID)"),
            "1,2,3,4,2,1");
}

TEST_F(Triggers, NoGroupClassAndObjectAreNullWhoeverWritesThem) {
  database.execute(
      "insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)"
      " values (5, -1, 3, 8), (6, 2, 0, -1)");
  EXPECT_EQ(database.rows("select * from tblAccountRelatedObjects where AccountID > 4 order by 1"),
            "5|null|3|8\n6|2|null|null");
}

/// Random writes, as any program could send them.
class RandomWrites {
 public:
  explicit RandomWrites(unsigned seed) : random_(seed) {}

  std::string statement() {
    switch (below(10)) {
      case 0:
      case 1:
        return "insert" + conflict() + "into tblAccount (ID, ParentID) values (" + account() + ", " +
               parent() + ")";
      case 2:
        return "replace into tblAccount (ID, ParentID, NoLevel) values (" + account() + ", " + parent() +
               ", 7)";
      case 3:
      case 4:
        return "update" + conflict() + "tblAccount set ParentID = " + parent() + " where ID in (" +
               account() + ", " + account() + ")";
      case 5:
        return "update" + conflict() + "tblAccount set ID = " + account() + " where ID = " + account();
      case 6:
        return several();
      default:
        return "delete from tblAccount where ID in (" + account() + ", " + account() + ")";
    }
  }

 private:
  std::string several() {
    switch (below(5)) {
      case 0:
        return "update tblAccount set ID = ID + 100, ParentID = ParentID + 100";
      case 1:
        return "update tblAccount set ID = ID - 100, ParentID = ParentID - 100 where ID > 100";
      case 2:
        return "update" + conflict() + "tblAccount set ID = " + account() + ", ParentID = " + parent() +
               ", NoLevel = 8 where ID = " + account();
      case 3:
        return "insert" + conflict() +
               "into tblAccount (ID, ParentID) select ID + 9, ParentID + 5 from tblAccount" +
               " where ID < 12";
      default:
        return "insert into tblAccount (ID, ParentID) values (" + account() + ", " + parent() +
               ") on conflict (ID) do update set ParentID = excluded.ParentID";
    }
  }
  int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random_); }
  std::string account() { return std::to_string(1 + below(40)); }
  std::string parent() { return below(5) == 0 ? "null" : account(); }
  std::string conflict() {
    static const char* const clauses[] = {" ",          " ",         " or replace ", " or ignore ",
                                          " or abort ", " or fail ", " or rollback "};
    return clauses[below(7)];
  }

  std::mt19937 random_;
};

/// The ancestors and levels, computed from ParentID alone.
std::pair<std::set<std::pair<int, int>>, std::map<int, int>> recomputed(SQLite::Database& database) {
  std::map<int, int> parents;
  SQLite::Statement rows(database, "select ID, ifnull(ParentID, -1) from tblAccount");
  while (rows.executeStep()) parents[rows.getColumn(0).getInt()] = rows.getColumn(1).getInt();
  std::set<std::pair<int, int>> ancestors;
  std::map<int, int> levels;
  for (const auto& [id, parent] : parents) {
    int level = 1;
    for (auto above = parents.find(parent); above != parents.end();
         above = parents.find(above->second), ++level) {
      if (!ancestors.emplace(above->first, id).second) throw std::logic_error("an account below itself");
    }
    levels[id] = level;
  }
  return {ancestors, levels};
}

std::pair<std::set<std::pair<int, int>>, std::map<int, int>> stored(SQLite::Database& database) {
  std::set<std::pair<int, int>> ancestors;
  SQLite::Statement pairs(database, "select ID, ChildID from tblAccountParent");
  while (pairs.executeStep()) ancestors.emplace(pairs.getColumn(0).getInt(), pairs.getColumn(1).getInt());
  std::map<int, int> levels;
  SQLite::Statement rows(database, "select ID, NoLevel from tblAccount");
  while (rows.executeStep()) levels[rows.getColumn(0).getInt()] = rows.getColumn(1).getInt();
  return {ancestors, levels};
}

struct Program {
  const char* settings;
  int writes;
};

class AnyProgram : public ::testing::TestWithParam<Program> {};

TEST_P(AnyProgram, KeepsAncestorsAndLevelsTrue) {
  testing::TemporaryDatabase database;
  database.execute(GetParam().settings);
  RandomWrites writes(static_cast<unsigned>(GetParam().writes));
  int done = 0;
  for (int round = 1; round <= GetParam().writes; ++round) {
    try {
      database.execute(writes.statement());
      ++done;
    } catch (const SQLite::Exception&) {
      // Refused, and then without a trace.
    }
    if (round % 5 == 0) {
      ASSERT_EQ(stored(database.other()), recomputed(database.other())) << "after " << round << " writes";
    }
  }
  EXPECT_GT(done, GetParam().writes / 3);
}

INSTANTIATE_TEST_SUITE_P(
    WithItsOwnSettings, AnyProgram,
    ::testing::Values(Program{"pragma foreign_keys = off", 10000}, Program{"pragma foreign_keys = on", 2000},
                      Program{"pragma foreign_keys = off; pragma recursive_triggers = on", 2001}));

}  // namespace
}  // namespace ledgertree::db
