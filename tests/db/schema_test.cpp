#include "db/schema.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "data/data_error.h"
#include "support/failure.h"
#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

TEST(Schema, LeavesTheFileOfAnotherOrANewerProgramAlone) {
  const std::pair<const char*, const char*> files[] = {
      {"create table tblInvoice (ID int)", "برنامه ديگري"},
      {"create table tblInvoice (ID int); pragma user_version = 1", "برنامه ديگري"},  // its own version
      {"pragma application_id = 99; create table t (ID int); drop table t", "برنامه ديگري"},
      {"pragma user_version = 1000; drop view vwAccount", "نسخه جديدتري"},
  };
  for (const auto& [made, words] : files) {
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    if (std::string(words) == "نسخه جديدتري") openSchema(database);
    database.exec(made);
    const std::string objects = testing::allRows(database, "select name from sqlite_schema");
    const data::DataError failure = testing::failureOf([&] { return openSchema(database); });
    EXPECT_EQ(failure.reason(), data::DataError::Reason::Connection);
    EXPECT_NE(std::string(failure.what()).find(words), std::string::npos) << failure.what();
    EXPECT_EQ(testing::allRows(database, "select name from sqlite_schema"), objects);
  }
}

TEST(Schema, ATreeThatTheTriggersDidntSeeIsMendedAndOneThatIsBrokenRefused) {
  testing::TemporaryDatabase database;
  SQLite::Database& file = database.other();
  const std::string tree =
      "select ID, NoLevel, (select group_concat(ID) from tblAccountParent where ChildID = a.ID) "
      "from tblAccount a order by ID";
  database.execute(
      "insert into tblAccount (ID, ParentID, Code) values (1, null, '1'), (2, 1, '11'), (3, 2, '111')");
  const std::string right = database.rows(tree);
  const std::string triggers = "select name from sqlite_schema where type = 'trigger' order by name";
  const std::string all = database.rows(triggers);
  const auto opened = [&file] {
    return openSchema(file).size() + (file.execAndGet("pragma foreign_keys").getInt() == 1 ? 0 : 100);
  };
  EXPECT_EQ(opened(), 0U);
  for (const data::Rows names = database.read(triggers);
       const std::size_t row : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U}) {
    database.execute("drop trigger " + names.value(row, 0).toText());
    EXPECT_EQ(opened(), 0U);
    EXPECT_EQ(database.rows(triggers), all);
  }
  // Triggers that somebody has switched off for a while stay off.
  const auto unseen = [&](const std::string& statements) {
    sqlite3_db_config(file.getHandle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    database.execute(statements);
    sqlite3_db_config(file.getHandle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 1, nullptr);
  };
  for (const char* const newest :
       {"delete from tblAccountParent where ChildID = 3",
        "delete from tblAccountParent where ChildID = 2; update tblAccount set NoLevel = 1 "
        "where ID = 2"}) {
    unseen(newest);
    EXPECT_EQ(opened(), 1U) << newest;
    EXPECT_EQ(database.rows(tree), right) << newest;
  }
  unseen(
      "insert into tblAccount (ID, ParentID) values (4, null); delete from tblAccountParent where ChildID = "
      "3");
  EXPECT_EQ(opened(), 0U) << "that is too much for a look";
  EXPECT_EQ(openSchema(file, {}, Mend::Everything).size(), 1U);
  EXPECT_EQ(database.rows(tree), right + "\n4|1|null");

  unseen("update tblAccount set ParentID = 3 where ID = 1; update tblAccount set ParentID = 2 where ID = 4");
  const std::string circle = database.rows(tree);
  const data::DataError failure = testing::failureOf([&] { return openSchema(file); });
  EXPECT_NE(std::string(failure.what()).find(": «1» (1)، «11» (2)، «111» (3). "), std::string::npos)
      << failure.what();
  EXPECT_EQ(database.rows(tree), circle);
  database.execute("update tblAccount set ParentID = null where ID = 1");
  EXPECT_EQ(opened(), 1U);
  EXPECT_EQ(database.rows(tree), right + "\n4|3|1,2");
}

TEST(Schema, AnEmptyFileThatCantBeWrittenFails) {
  const testing::TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "chart.db";
  std::ofstream(file).flush();
  SQLite::Database reader(file.string(), SQLite::OPEN_READONLY);
  EXPECT_THROW(openSchema(reader), SQLite::Exception);
}

TEST(Schema, TheDemoIsNotMixedIntoAChartThatIsThere) {
  testing::TemporaryDatabase database;
  createDemoChart(database.other());
  EXPECT_EQ(database.number("select count(*) from tblAccount"), 355);
  EXPECT_THROW(createDemoChart(database.other()), data::DataError);
  EXPECT_EQ(database.number("select count(*) from tblAccount"), 355);
}

}  // namespace
}  // namespace ledgertree::db
