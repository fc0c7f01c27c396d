#include "db/schema.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "data/data_error.h"
#include "db/scratch_database.h"

namespace ledgertree::db {
namespace {

using test::number;
using test::ScratchFile;

constexpr const char* kTables = "select count(*) from sqlite_schema where name = 'tblAccount'";

TEST(Schema, IsMadeOnceAndThenLeftAlone) {
  const ScratchFile file;
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
    const ScratchFile file;
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

void expectRefused(const ScratchFile& file, const std::string& words) {
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
  const ScratchFile file;
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
  const ScratchFile tables;
  tables.open().exec("create table tblInvoice (ID int)");
  expectRefused(tables, "برنامه ديگري");

  const ScratchFile numbered;  // it counts versions of its own
  numbered.open().exec("create table tblInvoice (ID int); pragma user_version = 1");
  expectRefused(numbered, "برنامه ديگري");

  const ScratchFile marked;
  marked.open().exec("pragma application_id = 99; create table t (ID int); drop table t");
  expectRefused(marked, "برنامه ديگري");
}

TEST(Schema, AFileThatIsNoDatabaseAndOneThatCantBeWrittenFail) {
  const ScratchFile letter;
  std::ofstream(letter.path()) << std::string(5000, 'x');
  SQLite::Database noDatabase(letter.path(), SQLite::OPEN_READWRITE);
  EXPECT_THROW(openSchema(noDatabase), SQLite::Exception);

  const ScratchFile empty;
  std::ofstream(empty.path()).flush();
  SQLite::Database reader(empty.path(), SQLite::OPEN_READONLY);
  EXPECT_THROW(openSchema(reader), SQLite::Exception);
}

}  // namespace
}  // namespace ledgertree::db
