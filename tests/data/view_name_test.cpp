#include "data/view_name.h"

#include <gtest/gtest.h>

#include <string>

namespace ledgertree::data {
namespace {

// clang-format off
constexpr const char* kNames[] = {
    "vwThing", "_v1$", "dbo.vwThing", "[vw of things; really]", "[dbo].[vwThing]", "dbo.[a.b]", "نماي_ها",
    "Host.dbo.vwThing", "[Host].[dbo].[vw Thing]"};
constexpr const char* kMoreThanNames[] = {
    "", " ", ".", "a.", ".a", "a.b.c.d", "a..b", "1a", "$a", "پروژه۱", "a b", "a;delete tblAccount", "a--", "a/**/",
    "(select 1 as ID)", "a'", "\"a\"", "[a", "a]", "[]", "[ ]", "[a]]]", "[a]b", "[[a]", "[a']", "[a\n]", "a\tb",
    "a\xC2\xA0" "b", "a\xE2\x80\xA8" "b", "a\xFF", "a،b", "a as x, tblAccount"};
// clang-format on

TEST(ViewName, GoesIntoAStatementOnlyWhereItIsANameAndNothingElse) {
  for (const char* name : kNames) EXPECT_EQ(plainViewName(name), name);
  EXPECT_EQ(plainViewName("  vwThing "), "vwThing");
  for (const char* text : kMoreThanNames) EXPECT_FALSE(plainViewName(text).has_value()) << text;
  EXPECT_FALSE(plainViewName(std::string("a\0b", 3)).has_value());
  EXPECT_TRUE(plainViewName(std::string(128, 'a') + "." + std::string(128, 'b')).has_value());
  EXPECT_FALSE(plainViewName(std::string(129, 'a')).has_value());
  EXPECT_FALSE(plainViewName(std::string(10'000, 'a')).has_value());
}

}  // namespace
}  // namespace ledgertree::data
