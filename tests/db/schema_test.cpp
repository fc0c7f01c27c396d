#include "db/schema.h"

#include <gtest/gtest.h>

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
      {"create table tblInvoice (ID int); pragma user_version = 1", "برنامه ديگري"},  // it counts its own
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
