#include "data/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "data/rows.h"
#include "support/text_table.h"

namespace ledgertree::data {
namespace {

constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();

TEST(Value, MoneyIsExactToItsEdgesAndReadsBackWhatItWrites) {
  for (const auto& row : testing::tableOf("data/texts.txt", "money")) {
    const Money amount = Money::fromTenThousandths(std::stoll(row[1]));
    EXPECT_EQ(amount.toText(), row[0]);
    EXPECT_EQ(Money::parse(row[0]), amount) << row[0];
  }
  EXPECT_EQ(Money::parse("007.25000000"), Money::fromTenThousandths(72'500));
  for (const std::string& text : testing::linesOf("data/texts.txt", "no money"))
    EXPECT_EQ(Money::parse(text), std::nullopt) << text;
  for (const char* text : {"", " 1", "1 "}) EXPECT_EQ(Money::parse(text), std::nullopt) << text;
}

TEST(Value, DatesAreDaysOfTheCalendar) {
  EXPECT_EQ(DateTime::parse("2024-02-29")->toIso(), "2024-02-29 00:00:00");
  EXPECT_EQ(DateTime::parse("0001-01-01T23:59:59.999")->toIso(), "0001-01-01 23:59:59");
  EXPECT_EQ(DateTime::parse("9999-12-31 08:05")->toIso(), "9999-12-31 08:05:00");
  for (const std::string& text : testing::linesOf("data/texts.txt", "no day"))
    EXPECT_EQ(DateTime::parse(text), std::nullopt) << text;
  for (const char* text : {"", "2024-01-01 10:00:00 "}) EXPECT_EQ(DateTime::parse(text), std::nullopt);
  EXPECT_LT(*DateTime::parse("2023-12-31 23:59:59"), *DateTime::parse("2024-01-01"));
  const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int month = 1; month <= 12; ++month)
    EXPECT_TRUE((DateTime{2023, month, days[month - 1]}.valid() &&
                 !DateTime{2023, month, days[month - 1] + 1}.valid()))
        << month;
}

TEST(Value, NoReaderGivesAnotherNumberThanTheOneStored) {
  EXPECT_EQ(Value(-0x1p63).toInt64(), kLeast);
  EXPECT_EQ(Value("-2147483648").toInt32(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(Value(12.5).toMoney().toText(), "12.5");
  EXPECT_EQ(Value(0.1).toMoney().toText(), "0.1");
  EXPECT_EQ(Value("1e3").toDouble(), 1000);

  EXPECT_THROW(static_cast<void>(Value(std::int64_t{2147483648}).toInt32()), std::range_error);
  try {
    static_cast<void>(Value(0x1p63).toInt64());
    FAIL() << "it is too large";
  } catch (const std::range_error& error) {
    EXPECT_STREQ(error.what(), "عدد 9.223372036854776e+18 در محدوده مجاز نيست.");
  }
  EXPECT_THROW(static_cast<void>(Value(std::nan("")).toInt64()), std::range_error);
  EXPECT_THROW(static_cast<void>(Value(2.5).toInt32()), std::range_error);
  EXPECT_THROW(static_cast<void>(Value("99999999999999999999").toInt64()), std::range_error);
  EXPECT_THROW(static_cast<void>(Value(kMost).toDouble()), std::range_error);
  EXPECT_THROW(static_cast<void>(Value(kMost).toMoney()), std::range_error);
  EXPECT_THROW(static_cast<void>(Value(1.0 / 3).toMoney()), std::range_error);
  EXPECT_THROW(static_cast<void>(Value(1e300).toMoney()), std::range_error);

  EXPECT_THROW(static_cast<void>(Value().toInt64()), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Value().toMoney()), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Value("12 حساب").toInt32()), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Value("").toDouble()), std::invalid_argument);
  EXPECT_THROW(static_cast<void>(Value(5).toDateTime()), std::invalid_argument);
  EXPECT_NE(Value(), Value(0));
  EXPECT_NE(Value(), Value(""));
}

TEST(Rows, OneRowAfterTheOtherTakesTheRoomOfOne) {
  Rows rows;
  rows.addColumn("Title");
  const std::string title(200, 'x');
  rows.addText(title);
  const char* const place = rows.text(0, 0).data();
  rows.clearRows();
  rows.addText(title);
  EXPECT_EQ(rows.text(0, 0).data(), place);
}

TEST(Value, AppearsOnTheScreenAsDecimalText) {
  EXPECT_EQ(Value().toText(), "");
  EXPECT_EQ(Value(kLeast).toText(), "-9223372036854775808");
  EXPECT_EQ(Value(100000.0).toText(), "100000");
  EXPECT_EQ(Value(-0.0).toText(), "0");
  EXPECT_EQ(Value(0.1).toText(), "0.1");
  EXPECT_EQ(Value(-1234.5).toText(), "-1234.5");
  EXPECT_EQ(Value(DateTime{2024, 3, 20, 0, 0, 0}).toText(), "2024-03-20 00:00:00");
}

}  // namespace
}  // namespace ledgertree::data
