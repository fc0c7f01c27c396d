#pragma once

#include <string>

#include "data/value.h"

namespace ledgertree::data {

/// A day in the Persian calendar as "yyyy/mm/dd" with leading zeros, so that such texts sort by time. The
/// time of day doesn't count, and no time zone plays a part. Empty for a date that isn't valid(), and for
/// days ahead of 0001/01/01.
[[nodiscard]] std::string toPersianDate(const DateTime& date);

}  // namespace ledgertree::data
