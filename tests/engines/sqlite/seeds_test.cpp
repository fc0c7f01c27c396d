// What the fuzzers start from and what they have found, once more on every build.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "connection_text_check.h"
#include "dialect_check.h"
#include "numbers_check.h"

namespace ledgertree::fuzz {
namespace {

int replay(const std::string& folder, const std::function<void(std::string_view)>& check) {
  int count = 0;
  for (const auto& seed :
       std::filesystem::directory_iterator(std::string(LEDGERTREE_FUZZ_FOLDER "/seeds/") + folder)) {
    std::ifstream file(seed.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NO_THROW(check(text)) << seed.path();
    ++count;
  }
  return count;
}

TEST(Seeds, NoStatementMakesTheDialectFail) {
  DialectCheck check;
  EXPECT_GT(replay("dialect", [&check](std::string_view text) { check(text); }), 70);
}

TEST(Seeds, NoTextReadsAsAnotherNumber) { EXPECT_GT(replay("numbers", checkNumbers), 10); }

TEST(Seeds, NoConnectionTextMakesItsReaderFail) {
  EXPECT_GT(replay("connection_text", checkConnectionText), 2);
}

}  // namespace
}  // namespace ledgertree::fuzz
