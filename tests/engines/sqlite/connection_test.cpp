// A connection and its file: what users see when the file, the disk or another program misbehaves.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "data/catalogue.h"
#include "data/data_error.h"
#include "db/schema.h"
#include "engines/sqlite/embedded_connection.h"
#include "engines/sqlite/errors.h"
#include "support/failure.h"
#include "support/first_version.h"
#include "support/small_disk.h"
#include "support/temporary_database.h"
#include "support/text_table.h"

namespace ledgertree::engines::sqlite {
namespace {

using Reason = data::DataError::Reason;
using std::chrono::milliseconds;

const std::string kCount = "Select count(*) as cnt from tblAccount";

using testing::failureOf;

std::int64_t number(EmbeddedConnection& connection, const std::string& statement) {
  return connection.run(statement)->value(0, 0).toInt64();
}

std::string renamed(int id, const std::string& title) {
  return "Update tblAccount Set Title = '" + title + "' Where ID=" + std::to_string(id);
}

class FileFaults : public ::testing::Test {
 protected:
  data::DataError failureOfOpening(const std::filesystem::path& path) {
    EmbeddedConnection connection(path.string(), {milliseconds(5000), milliseconds(5000)});
    data::DataError failure = failureOf([&] { connection.run(kCount); });
    EXPECT_NE(std::string(failure.what()).find(path.string()), std::string::npos) << failure.what();
    return failure;
  }

  testing::TemporaryFolder folder;
};

TEST_F(FileFaults, WhatSqliteFailsWithIsToldInTheWordsOfAPerson) {
  for (const auto& row : testing::tableOf("engines/sqlite/dialect.txt", "failures")) {
    const data::DataError failure = engineError(std::stoi(row[0]), "X constraint failed: t.A", "s");
    EXPECT_EQ(std::to_string(static_cast<int>(failure.reason())) + " " + failure.what(), row[1]) << row[0];
    EXPECT_EQ(failure.number(), std::stoi(row[0]));
  }
}

/// A function that a program adds to each of its connections, and how often it was called.
int planted = 0;
void plant(sqlite3_context* context, int, sqlite3_value**) { sqlite3_result_int(context, ++planted); }
int addPlant(sqlite3* database, char**, const sqlite3_api_routines*) {
  return sqlite3_create_function(database, "plant", 0, SQLITE_UTF8, nullptr, &plant, nullptr, nullptr);
}

TEST(FileFromElsewhere, CallsNothingThatItShouldnt) {
  const auto entry = reinterpret_cast<void (*)()>(&addPlant);
  ASSERT_EQ(sqlite3_auto_extension(entry), SQLITE_OK);
  testing::TemporaryDatabase database;
  database.fillWithDemoChart();
  database.execute("create virtual table tblWords using fts5(Word); insert into tblWords values ('a')");
  const std::string before = database.rows("select * from tblAccount order by ID");
  const auto told = [&](const std::string& made, const std::string& statement) {
    database.execute("create " + made);
    const data::DataError failure =
        failureOf([&] { EmbeddedConnection(database.file().string()).run(statement); });
    database.execute("drop " + made.substr(0, made.find(' ', made.find(' ') + 1)));
    const std::string message = failure.what();
    return message.substr(std::min(message.find('('), message.size()));
  };
  for (const auto& row : testing::tableOf("engines/sqlite/dialect.txt", "planted"))
    EXPECT_EQ(told(row[0], row[1]), row[2]) << row[0];
  EXPECT_EQ(planted, 0);
  EXPECT_EQ(database.rows("select * from tblAccount order by ID"), before);
  sqlite3_cancel_auto_extension(entry);
}

TEST_F(FileFaults, AFileThatIsntThereIsMadeAndAnythingElseIsToldApart) {
  const std::filesystem::path& root = folder.path();
  EmbeddedConnection fresh((root / "حساب‌ها.db").string());
  EXPECT_EQ(number(fresh, kCount), 0);
  EXPECT_TRUE(std::filesystem::exists(root / "حساب‌ها.db"));
  const std::filesystem::path home = std::filesystem::current_path();
  std::filesystem::current_path(root);
  for (const char* const special : {":memory:", "file:books.db?mode=memory"}) {
    EXPECT_EQ(EmbeddedConnection(special).run(kCount)->count(), 1U);
    EXPECT_TRUE(std::filesystem::exists(root / special));
  }
  std::filesystem::current_path(home);

  EXPECT_EQ(failureOfOpening(root / "none" / "books.db").reason(), Reason::Connection);
  EXPECT_FALSE(std::filesystem::exists(root / "none"));
  EXPECT_EQ(failureOfOpening(root).reason(), Reason::Connection);

  std::ofstream(root / "letter.db") << std::string(5000, 'x');
  EXPECT_EQ(failureOfOpening(root / "letter.db").reason(), Reason::Connection);
  EXPECT_EQ(std::filesystem::file_size(root / "letter.db"), 5000U);

  SQLite::Database other((root / "other.db").string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  other.exec("create table Letters (Text)");
  EXPECT_EQ(failureOfOpening(root / "other.db").reason(), Reason::Connection);
  EXPECT_EQ(other.execAndGet("pragma journal_mode").getString(), "delete");

  testing::TemporaryDatabase later;
  later.execute("pragma user_version = 99");
  EXPECT_EQ(failureOfOpening(later.file()).reason(), Reason::Connection);
}

TEST_F(FileFaults, AReadOnlyFileIsToldAtOnce) {
  testing::TemporaryDatabase database;
  using std::filesystem::perms;
  std::filesystem::permissions(database.file(), perms::owner_read | perms::group_read | perms::others_read);
  // The administrator may write to everything.
  const bool administrator = geteuid() == 0;
  ASSERT_EQ(administrator ? seteuid(65534) : 0, 0);
  const data::DataError failure = failureOfOpening(database.file());
  ASSERT_EQ(administrator ? seteuid(0) : 0, 0);
  EXPECT_EQ(failure.reason(), Reason::Storage) << failure.what();
}

TEST_F(FileFaults, AFileThatVanishesOrIsReplacedFailsOneStatementAndIsNeverMadeAnew) {
  const std::filesystem::path file = folder.path() / "books.db";
  const auto vanish = [&file] {
    for (const char* end : {"", "-wal", "-shm"}) std::filesystem::remove(file.string() + end);
  };
  EmbeddedConnection connection(file.string());
  connection.run("Insert into tblAccount (Code, Title) values ('1', 'a')");
  vanish();
  std::ofstream(file.string() + "-wal") << "another file's";
  EXPECT_EQ(failureOf([&] { connection.run(renamed(1, "b")); }).reason(), Reason::Connection);
  EXPECT_EQ(std::filesystem::file_size(file.string() + "-wal"), 14U);
  vanish();
  EXPECT_EQ(failureOf([&] { connection.run(kCount); }).reason(), Reason::Connection);
  EXPECT_FALSE(std::filesystem::exists(file));

  // Another database takes its place, and is read from then on.
  {
    EmbeddedConnection second(file.string());
    EXPECT_EQ(number(second, kCount), 0);
  }
  EXPECT_EQ(number(connection, kCount), 0);
  const std::filesystem::path replacement = folder.path() / "replacement.db";
  {
    EmbeddedConnection third(replacement.string());
    third.run("Insert into tblAccount (Code, Title) values ('1', 'c'), ('2', 'd')");
  }
  connection.walk(kCount, [&](const data::Rows&) {
    std::filesystem::rename(replacement, file);
    std::this_thread::sleep_for(milliseconds(150));
    for (int look = 0; look < 2; ++look)
      EXPECT_EQ(failureOf([&] { connection.run(kCount); }).reason(), Reason::Connection);
    return true;
  });
  EXPECT_EQ(number(connection, kCount), 2);
}

TEST_F(FileFaults, AWriteIntoAFileThatMovesMeanwhileIsNoSuccess) {
  const std::filesystem::path file = folder.path() / "books.db";
  EmbeddedConnection connection(file.string());
  connection.run("Insert into tblAccount (Code, Title) values ('1', 'a')");
  SQLite::Database other(file.string(), SQLite::OPEN_READWRITE);
  other.exec("begin immediate");
  std::thread mover([&] {
    std::this_thread::sleep_for(milliseconds(300));
    std::filesystem::rename(file, folder.path() / "moved.db");
    other.exec("rollback");
  });
  EXPECT_EQ(failureOf([&] { connection.run(renamed(1, "b")); }).reason(), Reason::Connection);
  mover.join();
}

TEST_F(FileFaults, AFullDiskFailsTheStatementAndLosesNothing) {
  testing::SmallDisk disk(folder.path());
  EmbeddedConnection connection((folder.path() / "books.db").string());
  const std::string account =
      "Insert into tblAccount (Code, Title, Notes) values ('1', 'a', '" + std::string(250, 'n') + "')";
  std::int64_t written = 0;
  const data::DataError failure = failureOf([&] {
    for (; written < 20000; ++written) connection.run(account);
  });
  EXPECT_EQ(failure.reason(), Reason::Storage) << failure.what();
  EXPECT_EQ(failure.statement(), account);
  EXPECT_EQ(number(connection, kCount), written);
  disk.grow();
  connection.run(account);
  EXPECT_EQ(number(connection, kCount), written + 1);
}

TEST_F(FileFaults, AnOlderFileIsTakenUpHoweverLongThatTakes) {
  const std::filesystem::path file = folder.path() / "books.db";
  static_cast<void>(testing::firstVersion(file));
  EmbeddedConnection connection(file.string(), {milliseconds(0), milliseconds(5000)});
  EXPECT_GT(number(connection, kCount), 0);

  SQLite::Database other(file.string(), SQLite::OPEN_READWRITE);
  other.exec("drop trigger trAccountMove");
  for (const bool wasOpen : {true, false}) {
    EmbeddedConnection later(file.string(), {}, std::make_shared<std::atomic<bool>>(wasOpen));
    number(later, kCount);
    EXPECT_EQ(other.execAndGet("select count(*) from sqlite_schema where name = 'trAccountMove'").getInt(),
              wasOpen ? 0 : 1)
        << "a process looks once at a file";
  }
}

class Commands : public ::testing::Test {
 protected:
  Commands() { db::createDemoChart(database.other()); }

  testing::TemporaryDatabase database;
  EmbeddedConnection connection{database.file().string()};
  /// For commands that must time out: those that succeed may take as long as the machine needs.
  EmbeddedConnection hasty{database.file().string(), {milliseconds(2000), milliseconds(600)}};
};

TEST_F(Commands, AStatementPastItsTimeIsInterruptedAndLeavesNothingBehind) {
  const std::string many = " from tblAccount a, tblAccount b, tblAccount c, tblAccount d";
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(failureOf([&] { hasty.run("Select count(*) as cnt" + many); }).reason(), Reason::TimeOut);
  const data::DataError failure =
      failureOf([&] { hasty.run("Insert into tblAccountRelatedObjects (AccountID) Select a.ID" + many); });
  EXPECT_EQ(failure.reason(), Reason::TimeOut);
  EXPECT_FALSE(failure.leavesOpen());
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60));
  EXPECT_EQ(number(connection, "Select count(*) as cnt from tblAccountRelatedObjects Where AccountID=1"), 0);
  // The time that the caller spends on the rows isn't the statement's.
  int rows = 0;
  hasty.walk("Select a.ID From tblAccount a, tblAccount b", [&rows](const data::Rows&) {
    if (rows < 5) std::this_thread::sleep_for(milliseconds(150));
    return ++rows < 5000;
  });
  EXPECT_EQ(rows, 5000);
}

TEST_F(Commands, AProcedureThatFailsInItsMiddleLeavesNoHalfAndNoTransaction) {
  database.execute(
      "create trigger trRefuse before insert on tblAccountRelatedObjects when new.AccountGroupID = 666 "
      "begin select raise(abort, 'no'); end");
  const auto relate = [this](int group) {
    const std::vector<data::Value> values{data::Value(79), data::Value(group), data::Value(-1),
                                          data::Value(-1)};
    static_cast<void>(connection.call(data::procedures::spAccountInsertRelatedObject, values));
  };
  relate(5);
  connection.walk("Select top 1 * From tblAccount", [&](const data::Rows&) {
    EXPECT_EQ(failureOf([&] { relate(666); }).reason(), Reason::Constraint);
    connection.run(renamed(7, "y"));
    EXPECT_EQ(database.text("select Title from tblAccount where ID = 7"), "y") << "for everybody, at once";
    return true;
  });
  EXPECT_EQ(database.text("select AccountGroupID from tblAccountRelatedObjects where AccountID = 79"), "5");
}

TEST_F(Commands, WhatIsReadTogetherFitsTogetherAndKeepsNobodyFromWriting) {
  const std::string count = "Select count(*) as cnt from tblAccount Where Title='later'";
  connection.readTogether([&] {
    database.execute("update tblAccount set Title = 'later' where ID = 7");
    EXPECT_EQ(number(connection, count), 0);
  });
  EXPECT_EQ(number(connection, count), 1);
}

TEST_F(Commands, AnotherProgramsLockIsWaitedForAndThenTold) {
  EXPECT_EQ(number(connection, kCount), 355);
  database.execute("begin immediate");
  const data::DataError failure = failureOf([&] { hasty.run(renamed(7, "x")); });
  EXPECT_EQ(failure.reason(), Reason::Busy) << failure.what();
  EXPECT_EQ(
      failureOf([&] { hasty.call(data::procedures::spAccountDeleteAccount, {{data::Value(79)}}); }).reason(),
      Reason::Busy);
  EXPECT_EQ(number(connection, kCount), 355);  // readers never wait
  int questions = 0;
  int over = 0;
  const auto givesUp = [&](bool harmless) {
    EXPECT_TRUE(harmless);
    EXPECT_EQ(failureOf([&] { hasty.run(kCount); }).reason(), Reason::Busy) << "in the middle of a step";
    return ++questions == 1 ? throw std::runtime_error("no answer") : questions == 3;
  };
  hasty.whileWaiting({.givesUp = givesUp, .over = [&] { ++over; }});
  EXPECT_EQ(failureOf([&] { hasty.run(renamed(7, "x")); }).reason(), Reason::Busy);
  EXPECT_EQ(questions * 10 + over, 31);
  // A statement that only computes for long asks, too.
  bool reads = false;
  connection.whileWaiting({.givesUp = [&](bool harmless) { return reads = harmless; }, .over = {}});
  const std::string many = " from tblAccount a, tblAccount b, tblAccount c, tblAccount d";
  const data::DataError given = failureOf([&] { connection.run("Select count(*) as cnt" + many); });
  EXPECT_TRUE(reads && given.reason() == Reason::Cancelled) << given.what();
  connection.whileWaiting({});
  std::thread release([this] {
    std::this_thread::sleep_for(milliseconds(60));
    database.execute("rollback");
  });
  connection.run(renamed(7, "x"));
  release.join();
  EXPECT_EQ(database.text("select Title from tblAccount where ID = 7"), "x");
}

TEST_F(FileFaults, ProgramsThatMakeAndFillOneFileAtOnceMeetNoError) {
  for (int round = 0; round < 10; ++round) {
    const std::string file = (folder.path() / ("books" + std::to_string(round) + ".db")).string();
    std::vector<std::thread> programs;
    for (int program = 0; program < 4; ++program) {
      programs.emplace_back([&file, program] {
        EXPECT_NO_THROW({
          EmbeddedConnection connection(file);
          for (int account = 0; account < 5; ++account) {
            const std::string code = std::to_string(program) + "-" + std::to_string(account);
            connection.run("Insert into tblAccount (Code, Title) values ('" + code + "', 'a')");
            connection.run("Update tblAccount Set Title='b' Where Code='" + code + "'");
            connection.run(kCount);
          }
        });
      });
    }
    for (std::thread& program : programs) program.join();
    EmbeddedConnection connection(file);
    EXPECT_EQ(number(connection, kCount + " where Title='b'"), 20);
  }
}

TEST_F(Commands, RowsFollowTheSchema) {
  // The contents of a column decide whether + joins or adds, in a cached statement as in a new one.
  bool writesFirst = false;
  const auto write = [&](const char* sum) {
    connection.run("Update tblAccountGroup Set Colour = colour + Colour Where ID = 1");
    EXPECT_EQ(database.text("select Colour from tblAccountGroup where ID = 1"), sum);
    database.execute("update tblAccountGroup set Colour = 2");
  };
  for (const auto& [type, sum] : {std::pair("int", "4"), {"nvarchar(9)", "22"}, {"", "4"}, {"Text", "22"}}) {
    database.execute("alter table tblAccountGroup add column Colour " + std::string(type) + ";" +
                     "update tblAccountGroup set Colour = 2; create view vwGroups as select Colour from "
                     "tblAccountGroup");
    writesFirst = !writesFirst;
    if (writesFirst) write(sum);
    EXPECT_EQ(connection.run("Select g.Colour + Colour as x From TblAccountGroup g")->value(0, 0).toText(),
              sum);
    EXPECT_EQ(connection.run("Select Colour + Colour as x From vwGroups")->value(0, 0).toText(), sum);
    if (!writesFirst) write(sum);
    EXPECT_TRUE(connection.run("Select * From tblAccountGroup")->column("Colour").has_value());
    database.execute("drop view vwGroups; alter table tblAccountGroup drop column Colour");
  }
  EXPECT_FALSE(connection.run("Select * From tblAccountGroup")->column("Colour").has_value());
  // With a partial index, a write would be started again for ever.
  database.execute("create index ixSome on tblAccount (Title) where NoLevel = 4");
  connection.run("Update tblAccount Set Title = 'x' Where NoLevel = 5");
}

}  // namespace
}  // namespace ledgertree::engines::sqlite
