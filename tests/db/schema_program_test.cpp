#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>

#include "support/temporary_database.h"
#include "support/text_table.h"

namespace ledgertree::db {
namespace {

int statusOf(const std::string& arguments) {
  const std::string command = std::string(LEDGERTREE_SCHEMA) + " " + arguments + " >/dev/null 2>&1";
  return WEXITSTATUS(std::system(command.c_str()));
}

/// What it prints; the connection text comes by the standard input.
std::string told(const std::string& arguments, const std::string& file, int status) {
  const std::string command =
      "echo 'Provider=SQLite;Data Source=" + file + "' | " LEDGERTREE_SCHEMA " " + arguments + " -";
  std::FILE* const pipe = popen(command.c_str(), "r");
  std::string text;
  for (int letter = std::fgetc(pipe); letter != EOF; letter = std::fgetc(pipe))
    text += static_cast<char>(letter);
  EXPECT_EQ(WEXITSTATUS(pclose(pipe)), status) << arguments << "\n" << text;
  return text;
}

TEST(SchemaProgram, ChecksAFileAndMendsItsTree) {
  testing::TemporaryDatabase database;
  if (testing::onServer()) GTEST_SKIP() << "it is about a file";
  const std::string file = database.file().string();
  database.fillWithDemoChart();
  EXPECT_EQ(told("--check", file, 0), "all is true\n");
  EXPECT_EQ(told("--prune-history 2025-01-01", file, 1), "");
  for (const std::string state : {"on", "on", "off", "on"})
    EXPECT_EQ(told("--history " + state, file, 0), "the memory is " + state + "\n");
  database.execute("update tblAccount set Title = 'x' where ID = 4");
  EXPECT_EQ(database.number("select count(*) from tblAccountChange"), 1);
  EXPECT_EQ(told("--prune-history 2999-01-01", file, 0), "0 operations were forgotten\n");
  EXPECT_EQ(database.number("select count(*) from tblAccountChange"), 0);
  EXPECT_EQ(told("--check", file, 0), "all is true\n");
  EXPECT_EQ(told("--install-schema", file, 0), "done\n");

  sqlite3_db_config(database.other().getHandle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  database.execute("pragma foreign_keys = off; pragma ignore_check_constraints = on");
  for (const std::string& statement : testing::linesOf("db/stories.txt", "what a check is given"))
    database.execute(statement);
  std::string everything;
  for (const std::string& line : testing::linesOf("db/stories.txt", "what a check finds"))
    everything += line + "\n";
  const std::string before =
      database.rows("select * from tblAccount") + database.rows("select * from tblAccountParent");
  EXPECT_EQ(told("--check", file, 3), everything);
  EXPECT_EQ(database.rows("select * from tblAccount") + database.rows("select * from tblAccountParent"),
            before);
}

TEST(SchemaProgram, TellsTheCallingScriptWhatBecameOfIt) {
  for (const char* const wrong :
       {"", "--install-schema", "--dry-run x", "--install-demo --without a x", "--install-schema x y",
        "--install-schema x --none", "--check", "--check --install-demo x", "--check --dry-run x",
        "--check --without a x", "--history x", "--history yes x", "--history on --check x",
        "--history on --prune-history 2025-01-01 x", "--prune-history x"})
    EXPECT_EQ(statusOf(wrong), 2) << wrong;
  const std::string nowhere = "'Provider=SQLOLEDB;Data Source=127.0.0.1,1;Connect Timeout=1'";
  const std::string noFile = "'Provider=SQLite;Data Source=/no/file'";
  for (const char* const act :
       {"--install-schema ", "--check ", "--history on ", "--prune-history 2025-01-01 "}) {
    EXPECT_EQ(statusOf(act + nowhere), 1) << act;
    EXPECT_EQ(statusOf(act + noFile), 1) << act;
  }
  EXPECT_EQ(statusOf("--install-schema --dry-run " + noFile), 1);
}

}  // namespace
}  // namespace ledgertree::db
