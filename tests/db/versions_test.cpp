#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <thread>
#include <vector>

#include "data/data_error.h"
#include "db/schema.h"
#include "db/scripts.h"
#include "db/version.h"
#include "ledgertree_scripts.h"
#include "support/child_process.h"
#include "support/first_version.h"
#include "support/power_cut_storage.h"
#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

using testing::Child, testing::PowerCutStorage, testing::TemporaryFolder;

SQLite::Database opened(const std::filesystem::path& folder) {
  return {(folder / "chart.db").string(), SQLite::OPEN_READWRITE, 10000};
}

using Texts = std::map<std::string, std::string>;

/// All objects with their definitions, without white space and the like.
Texts objects(SQLite::Database& database) {
  static const std::regex unseen("--[^\n]*|[\\s\"]");
  Texts found;
  SQLite::Statement rows(database,
                         "select type || ' ' || name, sql from sqlite_schema where sql is not null");
  while (rows.executeStep())
    found[rows.getColumn(0)] = std::regex_replace(rows.getColumn(1).getString(), unseen, "");
  return found;
}

/// The current columns of all tables.
Texts tables(SQLite::Database& database) {
  Texts found;
  SQLite::Statement rows(
      database,
      "select m.name, group_concat(c.name) from sqlite_schema m, pragma_table_info(m.name) c"
      " where m.type = 'table' group by m.name");
  while (rows.executeStep()) found[rows.getColumn(0)] = rows.getColumn(1).getString();
  return found;
}

std::string rowsOf(SQLite::Database& database, const Texts& tables) {
  std::string all;
  for (const auto& [table, columns] : tables)
    all += table + "\n" +
           testing::allRows(database, "select " + columns + " from " + table + " order by 1, 2") + "\n";
  return all;
}

/// The only rows that a step changes: it leaves no null.
std::string repaired(std::string rows) {
  const std::string wrong = "901|0|-1|-1\n";
  return rows.replace(rows.find(wrong), wrong.size(), "901|null|null|null\n");
}

TEST(Versions, AnOlderFileIsTakenUpWithAllItsRowsToWhatANewOneIs) {
  const TemporaryFolder folder;
  SQLite::Database database = testing::firstVersion(folder.path() / "chart.db");
  const Texts columns = tables(database);
  const std::string rows = rowsOf(database, columns);
  Texts expected = objects(database);
  const std::string hostsView = expected["view vwAccountGroup"];
  std::erase_if(expected, [](const auto& one) { return one.first.find("Host") == std::string::npos; });
  {
    SQLite::Database fresh(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    openSchema(fresh);
    expected.merge(objects(fresh));
    expected["view vwAccountGroup"] = hostsView;
  }

  // The tree as other programs may have left it.
  database.exec("pragma foreign_keys = on; delete from tblAccountParent where ChildID % 2 = 0");
  int times = 0;
  const std::vector<std::string> found = openSchema(database, [&times] { ++times; });
  EXPECT_EQ(times, 1);
  EXPECT_EQ(objects(database), expected);
  EXPECT_EQ(rowsOf(database, columns), repaired(rows));
  EXPECT_EQ(database.execAndGet("pragma integrity_check").getString(), "ok");
  EXPECT_EQ(testing::allRows(database, "pragma foreign_keys; "), "1");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_NE(found.back().find("بر اساس حساب مادر اصلاح شد"), std::string::npos) << found.back();
  EXPECT_NE(found.front().find(": «9Ak»، «9ك»، «حي1»"), std::string::npos) << found.front();

  SQLite::Database reader((folder.path() / "chart.db").string(), SQLite::OPEN_READONLY);
  EXPECT_TRUE(openSchema(reader, [&times] { ++times; }).empty());
  EXPECT_EQ(times, 1);
}

TEST(Versions, SeveralProgramsMakeOrTakeUpAFileTogether) {
  for (int round = 0; round < 20; ++round) {
    const TemporaryFolder folder;
    const bool older = round % 2 != 0;
    if (older) static_cast<void>(testing::firstVersion(folder.path() / "chart.db"));
    SQLite::Database((folder.path() / "chart.db").string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("pragma journal_mode = wal");
    std::atomic<int> times = 0;
    std::vector<std::thread> programs;
    for (int program = 0; program < 4; ++program) {
      programs.emplace_back([&] {
        SQLite::Database database = opened(folder.path());
        EXPECT_NO_THROW(openSchema(database, [&times] { ++times; }));
        EXPECT_EQ(database.execAndGet("pragma user_version").getInt(), schemaVersion());
      });
    }
    for (std::thread& program : programs) program.join();
    EXPECT_EQ(times, older ? 1 : 0);
  }
}

TEST(Versions, AFileIsOldOrNewWhereverThePowerIsCut) {
  std::string before;
  std::string after;
  {
    const TemporaryFolder folder;
    SQLite::Database database = testing::firstVersion(folder.path() / "chart.db");
    before = rowsOf(database, tables(database));
    openSchema(database);
    after = rowsOf(database, tables(database));
  }
  int olds = 0;
  for (int cut = 1, end = PowerCutStorage::kExitCode; end == PowerCutStorage::kExitCode; ++cut) {
    SCOPED_TRACE(cut);
    const TemporaryFolder folder;
    Child child([&](int) {
      PowerCutStorage::putIn();
      SQLite::Database database = testing::firstVersion(folder.path() / "chart.db");
      PowerCutStorage::cutAt(cut, static_cast<unsigned>(cut));
      openSchema(database);
      ::_exit(0);
    });
    end = child.end();
    if (end == 0) {
      EXPECT_GT(cut, 10) << "the cuts missed the work";
      break;
    }
    ASSERT_EQ(end, PowerCutStorage::kExitCode);
    const TemporaryFolder disk;
    PowerCutStorage::recover(folder.path(), disk.path());
    SQLite::Database database = opened(disk.path());
    const bool old = database.execAndGet("pragma user_version").getInt() == 1;
    olds += old ? 1 : 0;
    ASSERT_EQ(rowsOf(database, tables(database)), old ? before : after);
    openSchema(database);
    ASSERT_EQ(rowsOf(database, tables(database)), after);
    ASSERT_EQ(database.execAndGet("pragma integrity_check").getString(), "ok");
  }
  EXPECT_GT(olds, 5);
}

/// A later version's step may do what no step does yet: rebuild a table that others refer to.
TEST(Versions, AStepMayMakeATableAnew) {
  const TemporaryFolder folder;
  SQLite::Database database = testing::firstVersion(folder.path() / "chart.db");
  database.exec("pragma foreign_keys = on");
  const Texts columns = tables(database);
  const std::string rows = rowsOf(database, columns);
  openSchema(database, [&database] {
    database.exec(
        "alter table tblAccountDocument rename to old; create table tblAccountDocument as select * from old;"
        "drop table old; create index ixDocumentDate on tblAccountDocument (FarsiDocumentDate)");
  });
  EXPECT_EQ(rowsOf(database, columns), repaired(rows));
  EXPECT_NE(objects(database)["table tblAccountDocumentDetail"].find("referencestblAccountDocument("),
            std::string::npos);
}

}  // namespace
}  // namespace ledgertree::db
