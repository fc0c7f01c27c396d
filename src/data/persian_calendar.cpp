#include "data/persian_calendar.h"

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <array>
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

}  // namespace ledgertree::data
