#include "data/view_name.h"

#include <gtest/gtest.h>

#include <string>

#include "support/text_table.h"

namespace ledgertree::data {
namespace {

TEST(ViewName, GoesIntoAStatementOnlyWhereItIsANameAndNothingElse) {
  for (const std::string& name : testing::linesOf("data/texts.txt", "names of views"))
    EXPECT_EQ(plainViewName(name), name);
  EXPECT_EQ(plainViewName("  vwThing "), "vwThing");
  auto more = testing::linesOf("data/texts.txt", "more than names of views");
  for (const char* text : {"", " ", "[a\n]", "a\tb",
                           "a\xC2\xA0"
                           "b",
                           "a\xE2\x80\xA8"
                           "b",
                           "a\xFF"})
    more.emplace_back(text);
  for (const std::string& text : more) EXPECT_FALSE(plainViewName(text).has_value()) << text;
  EXPECT_FALSE(plainViewName(std::string("a\0b", 3)).has_value());
  EXPECT_TRUE(plainViewName(std::string(128, 'a') + "." + std::string(128, 'b')).has_value());
  EXPECT_TRUE(plainViewName("[" + std::string(128, 'a') + "]").has_value());
  EXPECT_FALSE(plainViewName(std::string(129, 'a')).has_value());
  EXPECT_FALSE(plainViewName(std::string(10'000, 'a')).has_value());
}

}  // namespace
}  // namespace ledgertree::data
