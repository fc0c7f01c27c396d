#include "data/numbers.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace ledgertree::data {
namespace {

TEST(Numbers, AFieldReadsAsTheNumberThatItBeginsWith) {
  EXPECT_EQ(toNumber(""), NumberOrEmpty::ofInteger(-1));
  EXPECT_EQ(toNumber("   "), NumberOrEmpty::ofInteger(-1));
  EXPECT_EQ(toNumber("True"), NumberOrEmpty::ofInteger(1));
  EXPECT_EQ(toNumber("1" + std::string(400, '0')), NumberOrEmpty::ofInteger(0)) << "an overflow";

  // clang-format off
  const std::pair<const char*, double> doubles[] = {
      {"/", 0}, {"12/5", 125}, {"true", 0}, {"True ", 0}, {"1/000/001", 1'000'001}, {"-1", -1},
      {" - 1 2 .5", -12.5}, {"+3", 3}, {"4.5.6", 4.5}, {"7حساب", 7}, {"حساب 7", 0}, {".25", 0.25}, {".", 0},
      {"-", 0}, {"--1", 0}, {"1e3", 1000}, {"1 e - 2", 0.01}, {"1d2", 100}, {"1e", 1}, {"1e+", 1},
      {"2,5", 2}, {"۱۲", 0}, {"0x10", 0}, {"1e-999", 0}, {"inf", 0}, {"nan", 0}, {"9\n9", 99}};
  // clang-format on
  for (const auto& [text, number] : doubles)
    EXPECT_EQ(toNumber(text), NumberOrEmpty::ofDouble(number)) << text;
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
  // clang-format off
  const std::pair<const char*, const char*> amounts[] = {
      {"922/337/203/685/477.5807", "922337203685477.5807"},
      {"-922337203685477.5808", "-922337203685477.5808"}, {"922337203685477", "922337203685477"},
      {"123456789012345.6789", "123456789012345.6789"}, {"", "0"}, {"/", "0"}, {"007", "7"},
      {"1.00005", "1"}, {"1.00015", "1.0002"}, {"1.000050001", "1.0001"}, {"0.00005", "0"},
      {"0.00006", "0.0001"}, {"0.000009", "0"}, {"-0.00004", "0"}, {"12e2 ريال", "1200"}, {"-1.5", "-1.5"}};
  // clang-format on
  for (const auto& [typed, amount] : amounts) {
    std::string text = typed;
    EXPECT_EQ(digitsToCurrency(text).toText(), amount) << typed;
    EXPECT_EQ(text.find('/'), std::string::npos);
  }
  for (const char* typed : {"922337203685477.5808", "922337203685477.58075", "-922337203685477.5809", "1e15",
                            "1e99999", "99999999999999999999999999"}) {
    std::string text = typed;
    EXPECT_THROW(static_cast<void>(digitsToCurrency(text)), std::range_error) << typed;
  }
}

}  // namespace
}  // namespace ledgertree::data
