#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "data/value.h"

/// Numbers in the texts of fields and columns, independent of locale: the decimal point is ".", digits are
/// ASCII, and "/" between thousands is only for display. Numbers that don't fit throw std::range_error with a
/// message for the screen; none is silently changed.
namespace ledgertree::data {

/// The number at the start of a text: a sign, digits with a decimal point, an exponent (E or D). Blanks, tabs
/// and line ends are skipped anywhere, and the first character that can't continue the number ends it. 0 for
/// a text that starts with none. Throws std::range_error beyond the range of a double.
[[nodiscard]] double leadingNumber(std::string_view text);

/// Rounds to the nearest whole number, ties to even.
[[nodiscard]] std::int32_t roundToInt32(double number);
[[nodiscard]] std::int16_t roundToInt16(double number);
[[nodiscard]] std::int32_t toInt32(std::int64_t number);
[[nodiscard]] std::int16_t toInt16(std::int64_t number);

/// The result of toNumber: a 16-bit integer for its special values, a double for a parsed number, or nothing.
class NumberOrEmpty {
 public:
  NumberOrEmpty() = default;
  [[nodiscard]] static NumberOrEmpty ofInteger(std::int16_t number) { return NumberOrEmpty(number); }
  [[nodiscard]] static NumberOrEmpty ofDouble(double number) { return NumberOrEmpty(number); }

  [[nodiscard]] bool isInteger() const { return std::holds_alternative<std::int16_t>(number_); }
  /// Nothing converts to 0.
  [[nodiscard]] double asDouble() const;
  /// Rounded as by roundToInt32. Throws std::range_error if it doesn't fit.
  [[nodiscard]] std::int32_t asInt32() const { return roundToInt32(asDouble()); }
  [[nodiscard]] std::int16_t asInt16() const { return roundToInt16(asDouble()); }

  bool operator==(const NumberOrEmpty&) const = default;

 private:
  using Number = std::variant<std::monostate, std::int16_t, double>;
  explicit NumberOrEmpty(Number number) : number_(number) {}
  Number number_;
};

/// Parses a field or a column: -1, meaning no value, for blank text; 1 for exactly "True"; otherwise the
/// number at the start of the text once every "/" is removed. A number beyond the range of a double gives
/// 0.
[[nodiscard]] NumberOrEmpty toNumber(std::string_view text);

/// Inserts the separator between groups of three characters, counted
/// from the right. Doesn't handle signs or decimals.
[[nodiscard]] std::string groupDigits(std::string_view text, std::string_view separator);

/// Removes every "/" from the text, and returns the number at its start, exact to four decimals (ties to
/// even). Throws std::range_error past the range of money.
[[nodiscard]] Money digitsToCurrency(std::string& text);

}  // namespace ledgertree::data
