#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace ledgertree::data {

/// An amount of money, exact to four decimals: a whole number of ten-thousandths of the currency unit.
/// The range is that of the database's money type: -922337203685477.5808 to 922337203685477.5807.
class Money {
 public:
  static constexpr std::int64_t kScale = 10000;

  constexpr Money() = default;
  static constexpr Money fromTenThousandths(std::int64_t count) { return Money(count); }
  /// Reads "[-]digits[.digits]" and nothing else. Decimals past the fourth must be zeros. Nothing if the text
  /// is no such number or is out of range.
  [[nodiscard]] static std::optional<Money> parse(std::string_view text);

  [[nodiscard]] constexpr std::int64_t tenThousandths() const { return count_; }
  /// Decimal text without trailing zeros: 1500, 12.5.
  [[nodiscard]] std::string toText() const;
  [[nodiscard]] double toDouble() const { return static_cast<double>(count_) / kScale; }

  // clang-tidy 14 takes the 0 of a comparison by <=> for a pointer.
  auto operator<=>(const Money&) const = default;  // NOLINT(modernize-use-nullptr)

 private:
  explicit constexpr Money(std::int64_t count) : count_(count) {}
  std::int64_t count_ = 0;
};

/// A Gregorian date and time, to the second. No time zone: what was typed is what is stored.
struct DateTime {
  int year = 1900;  ///< 1 to 9999
  int month = 1;    ///< 1 to 12
  int day = 1;      ///< 1 to 31
  int hour = 0;     ///< 0 to 23
  int minute = 0;   ///< 0 to 59
  int second = 0;   ///< 0 to 59

  /// Reads "yyyy-mm-dd", optionally followed by a blank or "T" and "hh:mm[:ss[.fraction]]" (the fraction is
  /// dropped). Nothing if the text isn't a calendar date.
  [[nodiscard]] static std::optional<DateTime> parse(std::string_view text);
  [[nodiscard]] bool valid() const;
  /// "yyyy-mm-dd hh:mm:ss".
  [[nodiscard]] std::string toIso() const;

  auto operator<=>(const DateTime&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// The value of an empty column. It is distinct: it never converts to 0 or empty text by
/// itself.
struct Null {
  auto operator<=>(const Null&) const = default;
};

/// The value of a column or a parameter, independent of the rows it came from.
///
/// The conversions throw std::range_error if a number doesn't fit, and std::invalid_argument if the value is
/// of another type or NULL; none of them changes the number stored.
class Value {
 public:
  Value() = default;
  Value(Null) {}                                                // NOLINT(google-explicit-constructor)
  Value(std::int32_t number) : value_(std::int64_t{number}) {}  // NOLINT(google-explicit-constructor)
  Value(std::int64_t number) : value_(number) {}                // NOLINT(google-explicit-constructor)
  Value(double number) : value_(number) {}                      // NOLINT(google-explicit-constructor)
  Value(Money amount) : value_(amount) {}                       // NOLINT(google-explicit-constructor)
  Value(std::string text) : value_(std::move(text)) {}          // NOLINT(google-explicit-constructor)
  Value(std::string_view text) : value_(std::string(text)) {}   // NOLINT(google-explicit-constructor)
  Value(const char* text) : value_(std::string(text)) {}        // NOLINT(google-explicit-constructor)
  Value(DateTime time) : value_(time) {}                        // NOLINT(google-explicit-constructor)

  using Variant = std::variant<Null, std::int64_t, double, Money, std::string, DateTime>;
  [[nodiscard]] const Variant& variant() const { return value_; }

  [[nodiscard]] bool isNull() const { return std::holds_alternative<Null>(value_); }

  /// The value as a field on the screen shows it: NULL gives empty text, numbers
  /// their decimal text, a date "yyyy-mm-dd hh:mm:ss".
  [[nodiscard]] std::string toText() const;

  /// A whole number. A double with decimals and non-numeric text are refused, not rounded.
  [[nodiscard]] std::int64_t toInt64() const;
  [[nodiscard]] std::int32_t toInt32() const;
  [[nodiscard]] double toDouble() const;
  [[nodiscard]] Money toMoney() const;
  [[nodiscard]] DateTime toDateTime() const;

  bool operator==(const Value&) const = default;

 private:
  Variant value_;
};

}  // namespace ledgertree::data
