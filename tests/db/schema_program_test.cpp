#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

namespace ledgertree::db {
namespace {

int statusOf(const std::string& arguments) {
  const std::string command = std::string(LEDGERTREE_SCHEMA) + " " + arguments + " >/dev/null 2>&1";
  return WEXITSTATUS(std::system(command.c_str()));
}

TEST(SchemaProgram, TellsTheCallingScriptWhatBecameOfIt) {
  for (const char* const wrong : {"", "--install-schema", "--dry-run x", "--install-demo --without a x",
                                  "--install-schema x y", "--install-schema x --none"})
    EXPECT_EQ(statusOf(wrong), 2) << wrong;
  const std::string nowhere = "'Provider=SQLOLEDB;Data Source=127.0.0.1,1;Connect Timeout=1'";
  EXPECT_EQ(statusOf("--install-schema " + nowhere), 1);
}

}  // namespace
}  // namespace ledgertree::db
