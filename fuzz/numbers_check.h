#pragma once

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "data/numbers.h"

namespace ledgertree::fuzz {

/// The number at the start of a text, as the C library reads it: the text without blanks, cut where the
/// number ends. An independent way to the same value.
inline double numberByLibrary(std::string_view text) {
  std::string plain;
  for (const char letter : text) {
    if (letter != ' ' && letter != '\t' && letter != '\r' && letter != '\n') plain += letter;
  }
  std::size_t end = plain.find_first_not_of("+-") == 0 || plain.empty() ? 0 : 1;
  const auto digits = [&] {
    const std::size_t from = end;
    while (end < plain.size() && plain[end] >= '0' && plain[end] <= '9') ++end;
    return end - from;
  };
  std::size_t count = digits();
  if (end < plain.size() && plain[end] == '.') {
    ++end;
    count += digits();
  }
  if (count == 0) return 0;
  const std::size_t mantissa = end;
  if (end < plain.size() && std::string_view("eEdD").find(plain[end]) != std::string_view::npos) {
    plain[end++] = 'e';
    if (end < plain.size() && (plain[end] == '+' || plain[end] == '-')) ++end;
    if (digits() == 0) end = mantissa;
  }
  return std::strtod(plain.substr(0, end).c_str(), nullptr);
}

/// Reads any text as a number, an ID and an amount of money. A fault throws std::logic_error; a text may only
/// be refused by a std::range_error.
inline void checkNumbers(std::string_view text) {
  const auto require = [](bool holds, const char* fault) {
    if (!holds) throw std::logic_error(fault);
  };
  std::string plain(text);
  std::erase(plain, '/');
  const double expected = numberByLibrary(plain);
  const bool overflow = expected > 1e308 * 1.797693134862316 || expected < -1e308 * 1.797693134862316;

  const data::NumberOrEmpty number = data::toNumber(text);
  if (!number.isInteger()) require(number.asDouble() == expected, "not the number that the library reads");
  if (overflow) require(number == data::NumberOrEmpty::ofInteger(0), "a number past the range");
  try {
    const std::int32_t id = number.asInt32();
    const double distance = number.asDouble() - id;
    require(distance <= 0.5 && distance >= -0.5, "an id that is another number");
  } catch (const std::range_error&) {
    require(number.asDouble() > 2147483647 || number.asDouble() < -2147483648.0, "a refused id");
  }

  std::string field(text);
  try {
    const data::Money amount = data::digitsToCurrency(field);
    require(field == plain, "separators are left in the field");
    const double tolerance = 0.0001 + (expected < 0 ? -expected : expected) * 1e-15;
    require(
        !overflow && amount.toDouble() - expected <= tolerance && expected - amount.toDouble() <= tolerance,
        "an amount far from the number");
    std::string again = data::groupDigits(amount.toText(), "/");
    require(data::digitsToCurrency(again) == amount, "an amount that changes on the screen");
    require(data::Money::parse(amount.toText()) == amount, "an amount that changes in the database");
  } catch (const std::range_error&) {
    require(expected > 922337203685477 || expected < -922337203685477, "a refused amount");
  }

  std::string grouped = data::groupDigits(plain, "/");
  std::erase(grouped, '/');
  require(grouped == plain, "grouping that loses letters");
}

}  // namespace ledgertree::fuzz
