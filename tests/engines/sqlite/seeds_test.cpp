// The seeds of the fuzzers and what they have found, run again by every build.

#include "support/seeds.h"

#include <gtest/gtest.h>

#include "connection_text_check.h"
#include "dialect_check.h"
#include "numbers_check.h"

namespace ledgertree::fuzz {
namespace {

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
