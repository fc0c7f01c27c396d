#include "shell/lookup/date_field.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <string>

#include "data/persian_calendar.h"
#include "support/scripted_desktop.h"

namespace ledgertree::shell {
namespace {

/// The leap years of the published calendar from 1300 to 1500.
constexpr std::array kLeapYears{1300, 1304, 1309, 1313, 1317, 1321, 1325, 1329, 1333, 1337, 1342, 1346, 1350,
                                1354, 1358, 1362, 1366, 1370, 1375, 1379, 1383, 1387, 1391, 1395, 1399, 1403,
                                1408, 1412, 1416, 1420, 1424, 1428, 1432, 1436, 1441, 1445, 1449, 1453, 1457,
                                1461, 1465, 1469, 1474, 1478, 1482, 1486, 1490, 1494, 1498};

data::DateTime gregorian(std::chrono::sys_days day) {
  const std::chrono::year_month_day date(day);
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day()))};
}

std::string written(int year, int month, int day) {
  const std::string text = std::to_string(100000000 + year * 10000 + month * 100 + day);
  return text.substr(1, 4) + "/" + text.substr(5, 2) + "/" + text.substr(7, 2);
}

TEST(PersianCalendar, EveryDayOf1300To1500) {
  using namespace std::chrono;
  sys_days day = year(1921) / March / 21;
  std::size_t leap = 0;
  for (int year = 1300; year <= 1500; ++year) {
    const bool isLeap = leap < kLeapYears.size() && kLeapYears.at(leap) == year;
    if (isLeap) ++leap;
    for (int month = 1; month <= 12; ++month) {
      const int days = month <= 6 ? 31 : month < 12 || isLeap ? 30 : 29;
      for (int date = 1; date <= days; ++date, day += std::chrono::days(1)) {
        ASSERT_EQ(data::toPersianDate(gregorian(day)), written(year, month, date));
        ASSERT_EQ(data::fromPersianDate(written(year, month, date)), gregorian(day));
      }
      ASSERT_EQ(data::fromPersianDate(written(year, month, days + 1)), std::nullopt);
    }
  }
  EXPECT_EQ(data::fromPersianDate("1405/9/2"), data::fromPersianDate("1405/09/02"));
  for (const char* none : {"", "1405", "1405/9", "1405/9/2/1", "1405-9-2", "0/1/1", "99999/1/1", "1405/13/1"})
    EXPECT_EQ(data::fromPersianDate(none), std::nullopt) << none;
}

TEST(PersianCalendar, NoClockTimeOrZoneMovesADay) {
  for (const char* zone : {"Asia/Tehran", "Pacific/Kiritimati", "America/Los_Angeles"}) {
    ASSERT_EQ(setenv("TZ", zone, 1), 0);
    tzset();
    for (const int hour : {0, 12, 23}) {
      EXPECT_EQ(data::toPersianDate({.year = 2017, .month = 2, .day = 11, .hour = hour, .minute = 59}),
                "1395/11/23");
      const data::DateTime utc{.year = 2017, .month = 2, .day = 11, .hour = hour, .minute = 59};
      EXPECT_EQ(data::toUtc(data::toLocalTime(utc)), utc);
    }
  }
  unsetenv("TZ");
  tzset();
  EXPECT_EQ(data::toPersianDate({.year = 622, .month = 3, .day = 1}), "") << "ahead of the calendar";
  EXPECT_EQ(data::toPersianDate({.year = 622, .month = 6, .day = 22}).substr(0, 8), "0001/04/");
  EXPECT_EQ(data::toPersianDate({.year = 2023, .month = 2, .day = 30}), "") << "no date";
  EXPECT_EQ(data::toPersianDate({.year = 9999, .month = 12, .day = 31}).size(), 10U);
}

TEST(DateField, TodayThenTheDateOfARecord) {
  testing::ScriptedDesktop desktop;
  Shell shell(desktop);
  ui::Form form(shell.surroundings(), "Form", "", {});
  DateField datCreate(form, "datCreate", {});
  EXPECT_TRUE(datCreate.IsEmpty());
  EXPECT_EQ(datCreate.farsidate(), "");
  EXPECT_THROW((void)datCreate.englishdate(), std::logic_error);

  datCreate.setToday(
      [] { return data::DateTime{.year = 2024, .month = 3, .day = 20, .hour = 23, .minute = 59}; });
  EXPECT_EQ(datCreate.englishdate().toIso(), "2024-03-20 00:00:00");
  EXPECT_EQ(datCreate.text(), "1403/01/01");
  const data::DateTime stored{.year = 2024, .month = 3, .day = 19, .hour = 8};
  datCreate.setEnglishdate(stored);
  EXPECT_EQ(datCreate.englishdate(), stored);
  EXPECT_EQ(datCreate.farsidate(), "1402/12/29");
  EXPECT_THROW(datCreate.setEnglishdate({.year = 2023, .month = 13, .day = 1}), std::invalid_argument);
  EXPECT_EQ(datCreate.englishdate(), stored);
  datCreate.Clear();
  EXPECT_TRUE(datCreate.IsEmpty());
}

}  // namespace
}  // namespace ledgertree::shell
