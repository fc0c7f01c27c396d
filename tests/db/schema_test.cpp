#include "db/schema.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "data/data_error.h"
#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

/// A file, and the programs that open it.
class File {
 public:
  [[nodiscard]] std::string path() const { return (folder_.path() / "chart.db").string(); }
  [[nodiscard]] SQLite::Database open() const {
    SQLite::Database database(path(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 10000);
    database.exec("pragma journal_mode = wal; pragma synchronous = off");
    return database;
  }

 private:
  testing::TemporaryFolder folder_;
};

std::int64_t number(SQLite::Database& database, const std::string& query) {
  return database.execAndGet(query).getInt64();
}

constexpr const char* kTables = "select count(*) from sqlite_schema where name = 'tblAccount'";

TEST(Schema, IsMadeOnceAndThenLeftAlone) {
  const File file;
  {
    SQLite::Database database = file.open();
    openSchema(database);
    database.exec("insert into tblAccount (Code) values ('1')");
  }
  SQLite::Database reader(file.path(), SQLite::OPEN_READONLY);
  openSchema(reader);
  EXPECT_EQ(number(reader, "select count(*) from tblAccount"), 1);
}

TEST(Schema, TwoProgramsThatFindAnEmptyFileMakeItTogether) {
  for (int round = 0; round < 10; ++round) {
    const File file;
    static_cast<void>(file.open());
    std::vector<std::thread> programs;
    for (int program = 0; program < 4; ++program) {
      programs.emplace_back([&file] {
        SQLite::Database database = file.open();
        EXPECT_NO_THROW(openSchema(database));
        EXPECT_EQ(number(database, kTables), 1);
      });
    }
    for (std::thread& program : programs) program.join();
  }
}

void expectRefused(const File& file, const std::string& words) {
  SQLite::Database database = file.open();
  try {
    openSchema(database);
    ADD_FAILURE() << "opened";
  } catch (const data::DataError& error) {
    EXPECT_EQ(error.reason(), data::DataError::Reason::Connection);
    EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
  }
}

TEST(Schema, LeavesTheFileOfANewerProgramAlone) {
  const File file;
  {
    SQLite::Database database = file.open();
    openSchema(database);
    database.exec("pragma user_version = 1000; drop view vwAccount");
  }
  expectRefused(file, "نسخه جديدتري");
  SQLite::Database database = file.open();
  EXPECT_EQ(number(database, "select count(*) from sqlite_schema where name = 'vwAccount'"), 0);
}

TEST(Schema, LeavesTheDatabaseOfAnotherProgramAlone) {
  const File tables;
  tables.open().exec("create table tblInvoice (ID int)");
  expectRefused(tables, "برنامه ديگري");

  const File numbered;  // it counts versions of its own
  numbered.open().exec("create table tblInvoice (ID int); pragma user_version = 1");
  expectRefused(numbered, "برنامه ديگري");

  const File marked;
  marked.open().exec("pragma application_id = 99; create table t (ID int); drop table t");
  expectRefused(marked, "برنامه ديگري");
}

TEST(Schema, AFileThatIsNoDatabaseAndOneThatCantBeWrittenFail) {
  const File letter;
  std::ofstream(letter.path()) << std::string(5000, 'x');
  SQLite::Database noDatabase(letter.path(), SQLite::OPEN_READWRITE);
  EXPECT_THROW(openSchema(noDatabase), SQLite::Exception);

  const File empty;
  std::ofstream(empty.path()).flush();
  SQLite::Database reader(empty.path(), SQLite::OPEN_READONLY);
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
