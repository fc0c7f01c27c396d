#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdio>

#include "support/temporary_database.h"
#include "support/text_table.h"

namespace ledgertree {
namespace {

/// What is printed where this is typed into a shell that stands in a folder.
std::string printed(const std::string& typed, const std::filesystem::path& folder) {
  const std::string surroundings = "cd '" + folder.string() +
                                   "' && export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen "
                                   "XDG_DATA_HOME=\"$PWD\" PATH=" LEDGERTREE_PROGRAMS ":$PATH && ";
  std::FILE* const pipe = popen((surroundings + typed).c_str(), "r");
  std::string text;
  for (int letter = std::fgetc(pipe); letter != EOF; letter = std::fgetc(pipe))
    text += letter == '\n' ? "//" : std::string(1, static_cast<char>(letter));
  pclose(pipe);
  return text.ends_with("//") ? text.substr(0, text.size() - 2) : text;
}

TEST(Programs, AnswerWhatIsTyped) {
  const testing::TemporaryFolder folder;
  for (const auto& row : testing::tableOf("host/programs.txt", "typed"))
    EXPECT_EQ(printed(row[0], folder.path()), row[1]) << row[0];
}

TEST(Programs, CheckAFileAndMendItsTree) {
  testing::TemporaryDatabase database;
  if (testing::onServer()) GTEST_SKIP() << "it is about a file";
  database.fillWithDemoChart();
  const auto schema = [&](const std::string& act) {
    // The connection text comes by the standard input.
    return printed("echo 'Provider=SQLite;Data Source=" + database.file().string() +
                       "' | ledgertree-schema " + act + " -; echo $?",
                   database.file().parent_path());
  };
  EXPECT_EQ(schema("--check"), "no errors found//0");
  EXPECT_EQ(schema("--prune-history 2025-01-01 2>told"), "1");
  for (const std::string state : {"on", "on", "off", "on"})
    EXPECT_EQ(schema("--history " + state), "the history is " + state + "//0");
  database.execute("update tblAccount set Title = 'x' where ID = 4");
  EXPECT_EQ(database.number("select count(*) from tblAccountChange"), 1);
  EXPECT_EQ(schema("--prune-history 2999-01-01"), "0 operations were deleted//0");
  EXPECT_EQ(database.number("select count(*) from tblAccountChange"), 0);
  EXPECT_EQ(schema("--check"), "no errors found//0");
  EXPECT_EQ(schema("--install-schema"), "done//0");

  sqlite3_db_config(database.other().getHandle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  database.execute("pragma foreign_keys = off; pragma ignore_check_constraints = on");
  for (const std::string& statement : testing::linesOf("host/programs.txt", "what a check is given"))
    database.execute(statement);
  std::string everything;
  for (const std::string& line : testing::linesOf("host/programs.txt", "what a check finds"))
    everything += line + "//";
  const auto tree = [&] {
    return database.rows("select * from tblAccount") + database.rows("select * from tblAccountParent");
  };
  const std::string before = tree();
  EXPECT_EQ(schema("--check"), everything + "3");
  EXPECT_EQ(tree(), before);
}

}  // namespace
}  // namespace ledgertree
