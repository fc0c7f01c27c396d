#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/value.h"

namespace ledgertree::data {

/// A date in the Persian calendar as "yyyy/mm/dd" with leading zeros, so that the texts sort by time.
/// Ignores the time of day and time zones. Empty for a date that isn't valid(), and for days before
/// 0001/01/01.
[[nodiscard]] std::string toPersianDate(const DateTime& date);

/// The day that a text such as "1405/09/02" or "1405/9/2" names in that calendar, at midnight; nothing where
/// it names none.
[[nodiscard]] std::optional<DateTime> fromPersianDate(std::string_view text);

/// A moment of UTC on the clock of this machine's time zone, and back. A time of day that the clock leaves
/// out or has twice counts as one of the moments beside it.
[[nodiscard]] DateTime toLocalTime(const DateTime& utc);
[[nodiscard]] DateTime toUtc(const DateTime& local);
/// The same time of day on the next day.
[[nodiscard]] DateTime dayAfter(const DateTime& date);

}  // namespace ledgertree::data
