#include "data/persian_calendar.h"

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace ledgertree::data {
namespace {

std::unique_ptr<icu::Calendar> makePersianCalendar() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(
      icu::TimeZone::getGMT()->clone(), icu::Locale("fa_IR@calendar=persian"), status));
  if (U_FAILURE(status) != 0 || calendar == nullptr)
    throw std::runtime_error("تقويم شمسي در دسترس نيست؛ نصب ICU را بررسي کنيد.");
  return calendar;
}

std::chrono::sys_seconds secondsOf(const DateTime& time) {
  const std::chrono::sys_days day = std::chrono::year_month_day(
      std::chrono::year(time.year), std::chrono::month(static_cast<unsigned>(time.month)),
      std::chrono::day(static_cast<unsigned>(time.day)));
  return std::chrono::sys_seconds(day) + std::chrono::hours(time.hour) + std::chrono::minutes(time.minute) +
         std::chrono::seconds(time.second);
}

DateTime timeOf(std::chrono::sys_seconds seconds) {
  const auto day = std::chrono::floor<std::chrono::days>(seconds);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(seconds - day);
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .hour = static_cast<int>(clock.hours().count()),
          .minute = static_cast<int>(clock.minutes().count()),
          .second = static_cast<int>(clock.seconds().count())};
}

/// How far the clock of this machine is ahead of UTC at a moment, or at a time of its own.
std::chrono::seconds aheadOfUtc(std::chrono::sys_seconds time, bool isLocal) {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createDefault());
  std::int32_t fixed = 0;
  std::int32_t summer = 0;
  UErrorCode status = U_ZERO_ERROR;
  const auto milliseconds = std::chrono::milliseconds(time.time_since_epoch()).count();
  zone->getOffset(static_cast<UDate>(milliseconds), static_cast<UBool>(isLocal), fixed, summer, status);
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::milliseconds(fixed + summer));
}

/// The numbers of "1405/9/2"; nothing for any other text.
std::optional<std::array<int, 3>> threeNumbers(std::string_view text) {
  std::array<int, 3> numbers{};
  const char* next = text.data();
  const char* const end = next + text.size();
  for (std::size_t place = 0; place < numbers.size(); ++place) {
    if (place != 0 && (next == end || *next++ != '/')) return std::nullopt;
    const auto [behind, failure] = std::from_chars(next, end, numbers.at(place));
    if (failure != std::errc() || behind - next > 4 || numbers.at(place) < 1) return std::nullopt;
    next = behind;
  }
  return next == end ? std::optional(numbers) : std::nullopt;
}

}  // namespace

std::string toPersianDate(const DateTime& date) {
  if (!date.valid()) return {};
  const std::chrono::sys_days day = std::chrono::year_month_day(
      std::chrono::year(date.year), std::chrono::month(static_cast<unsigned>(date.month)),
      std::chrono::day(static_cast<unsigned>(date.day)));
  // Noon, so that rounding can't reach an adjacent day.
  const auto noon = std::chrono::milliseconds(day.time_since_epoch()) + std::chrono::hours(12);
  UErrorCode status = U_ZERO_ERROR;
  const auto calendar = makePersianCalendar();
  calendar->setTime(static_cast<UDate>(noon.count()), status);
  const int year = calendar->get(UCAL_EXTENDED_YEAR, status);
  const int month = calendar->get(UCAL_MONTH, status) + 1;
  const int dayOfMonth = calendar->get(UCAL_DATE, status);
  if (U_FAILURE(status) != 0) throw std::runtime_error("تاريخ را نميتوان به تقويم شمسي برد.");
  if (year < 1) return {};
  std::array<char, 32> text{};
  const int length = std::snprintf(text.data(), text.size(), "%04d/%02d/%02d", year, month, dayOfMonth);
  return {text.data(), static_cast<std::size_t>(length)};
}

std::optional<DateTime> fromPersianDate(std::string_view text) {
  const auto numbers = threeNumbers(text);
  if (!numbers) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const auto calendar = makePersianCalendar();
  calendar->clear();
  calendar->setLenient(false);
  calendar->set(UCAL_EXTENDED_YEAR, (*numbers)[0]);
  calendar->set(UCAL_MONTH, (*numbers)[1] - 1);
  calendar->set(UCAL_DATE, (*numbers)[2]);
  const UDate midnight = calendar->getTime(status);
  if (U_FAILURE(status) != 0) return std::nullopt;
  const std::chrono::milliseconds sinceEpoch(static_cast<std::int64_t>(midnight));
  const DateTime day = timeOf(
      std::chrono::floor<std::chrono::seconds>(std::chrono::sys_time<std::chrono::milliseconds>(sinceEpoch)));
  return day.valid() ? std::optional(day) : std::nullopt;
}

DateTime toLocalTime(const DateTime& utc) {
  const auto moment = secondsOf(utc);
  return timeOf(moment + aheadOfUtc(moment, false));
}

DateTime toUtc(const DateTime& local) {
  const auto time = secondsOf(local);
  return timeOf(time - aheadOfUtc(time, true));
}

DateTime dayAfter(const DateTime& date) { return timeOf(secondsOf(date) + std::chrono::days(1)); }

}  // namespace ledgertree::data
