#include "data/numbers.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/text_table.h"

namespace ledgertree::data {
namespace {

TEST(Numbers, AFieldReadsAsTheNumberThatItBeginsWith) {
  EXPECT_EQ(toNumber(""), NumberOrEmpty::ofInteger(-1));
  EXPECT_EQ(toNumber("   "), NumberOrEmpty::ofInteger(-1));
  EXPECT_EQ(toNumber("True"), NumberOrEmpty::ofInteger(1));
  EXPECT_EQ(toNumber("1" + std::string(400, '0')), NumberOrEmpty::ofInteger(0)) << "an overflow";

  for (const auto& row : testing::tableOf("data/texts.txt", "numbers"))
    EXPECT_EQ(toNumber(row[0]), NumberOrEmpty::ofDouble(std::stod(row[1]))) << row[0];
  EXPECT_EQ(toNumber("True "), NumberOrEmpty::ofDouble(0));
  EXPECT_EQ(toNumber(" 9\n9").asDouble(), 99);
  EXPECT_EQ(toNumber("0." + std::string(10'000, '0') + "5e10001").asDouble(), 5);
  EXPECT_EQ(toNumber(std::string("5\0006", 3)).asDouble(), 5);
}

TEST(Numbers, NothingBecomesAnotherNumberOnTheWayToAnId) {
  EXPECT_EQ(toNumber("2147483647").asInt32(), 2147483647);
  EXPECT_EQ(toNumber("2.5").asInt32(), 2);
  EXPECT_EQ(toNumber("3.5").asInt32(), 4);
  EXPECT_EQ(toNumber("32767.4").asInt16(), 32767);
  EXPECT_EQ(NumberOrEmpty().asInt32(), 0);
  EXPECT_THROW(static_cast<void>(toNumber("2147483648").asInt32()), std::range_error);
  EXPECT_THROW(static_cast<void>(toNumber("-1e300").asInt32()), std::range_error);
  EXPECT_THROW(static_cast<void>(toNumber("32767.5").asInt16()), std::range_error);
  EXPECT_THROW(static_cast<void>(toInt16(-32769)), std::range_error);
  EXPECT_THROW(static_cast<void>(toInt32(std::int64_t{1} << 32)), std::range_error);
}

TEST(Numbers, DigitsStandInGroupsOfThreeFromTheRight) {
  EXPECT_EQ(groupDigits("1000001", "/"), "1/000/001");
  EXPECT_EQ(groupDigits("123456", "/"), "123/456");
  EXPECT_EQ(groupDigits("123", "/"), "123");
  EXPECT_EQ(groupDigits("", "/"), "");
  EXPECT_EQ(groupDigits("-123.5", "/"), "-12/3.5") << "characters are counted, whatever they are";
  EXPECT_EQ(groupDigits("۱۲۳۴", "،"), "۱،۲۳۴");
}

TEST(Numbers, AnAmountIsExactWhereADoubleWouldNotBe) {
  for (const auto& row : testing::tableOf("data/texts.txt", "amounts")) {
    std::string text = row[0];
    if (row[1].empty()) {
      EXPECT_THROW(static_cast<void>(digitsToCurrency(text)), std::range_error) << row[0];
    } else {
      EXPECT_EQ(digitsToCurrency(text).toText(), row[1]) << row[0];
      EXPECT_EQ(text.find('/'), std::string::npos);
    }
  }
  std::string nothing;
  EXPECT_EQ(digitsToCurrency(nothing).toText(), "0");
}

}  // namespace
}  // namespace ledgertree::data
