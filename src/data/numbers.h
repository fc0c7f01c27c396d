#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "data/value.h"

/// Numbers in the texts of fields and columns. Nothing here knows a locale: the decimal sign is ".", digits
/// are ASCII, and "/" between thousands is for the eye alone. Numbers that don't fit throw std::range_error
/// with a message for the screen; none becomes another number.
namespace ledgertree::data {

/// The number that a text begins with: a sign, digits with a decimal point, an exponent (E or D). Blanks,
/// tabs and line ends are skipped wherever they stand, and the first character that can't continue the number
/// ends it. 0 for a text that begins with none. Throws std::range_error past the range of a double.
[[nodiscard]] double leadingNumber(std::string_view text);

/// Rounds to the nearest whole number, a half to the even one.
[[nodiscard]] std::int32_t roundToInt32(double number);
[[nodiscard]] std::int16_t roundToInt16(double number);
[[nodiscard]] std::int32_t toInt32(std::int64_t number);
[[nodiscard]] std::int16_t toInt16(std::int64_t number);

/// What toNumber gives: a 16-bit integer for its marks, a double for a number that was read, or nothing.
class NumberOrEmpty {
 public:
  NumberOrEmpty() = default;
  [[nodiscard]] static NumberOrEmpty ofInteger(std::int16_t number) { return NumberOrEmpty(number); }
  [[nodiscard]] static NumberOrEmpty ofDouble(double number) { return NumberOrEmpty(number); }

  [[nodiscard]] bool isInteger() const { return std::holds_alternative<std::int16_t>(number_); }
  /// Nothing reads as 0.
  [[nodiscard]] double asDouble() const;
  /// Rounded as by roundToInt32. Throws std::range_error where it doesn't fit.
  [[nodiscard]] std::int32_t asInt32() const { return roundToInt32(asDouble()); }
  [[nodiscard]] std::int16_t asInt16() const { return roundToInt16(asDouble()); }

  bool operator==(const NumberOrEmpty&) const = default;

 private:
  using Number = std::variant<std::monostate, std::int16_t, double>;
  explicit NumberOrEmpty(Number number) : number_(number) {}
  Number number_;
};

/// Reads a number out of a field or a column: -1 for blank text, which is the mark for no value; 1 for
/// exactly "True"; else the number that the text begins with once every "/" is out of it. A number past the
/// range of a double gives 0.
[[nodiscard]] NumberOrEmpty toNumber(std::string_view text);

/// Puts the separator between groups of three characters, counted from the right. It knows no signs or
/// decimals.
[[nodiscard]] std::string groupDigits(std::string_view text, std::string_view separator);

/// Cuts every "/" out of the text, and gives the number that it then begins with, exact to four decimals (a
/// half goes to the even ten-thousandth). Throws std::range_error past the range of money.
[[nodiscard]] Money digitsToCurrency(std::string& text);

}  // namespace ledgertree::data
