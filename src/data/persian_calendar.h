#pragma once

#include <string>

#include "data/value.h"

namespace ledgertree::data {

/// A date in the Persian calendar as "yyyy/mm/dd" with leading zeros, so that the texts sort by time.
/// Ignores the time of day and time zones. Empty for a date that isn't valid(), and for days before
/// 0001/01/01.
[[nodiscard]] std::string toPersianDate(const DateTime& date);

}  // namespace ledgertree::data
