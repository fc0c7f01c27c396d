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
  /// Reads "[-]digits[.digits]", with nothing else around it. Decimals past the fourth must be zeros.
  /// Nothing where the text is no such number or is out of range.
  [[nodiscard]] static std::optional<Money> parse(std::string_view text);

  [[nodiscard]] constexpr std::int64_t tenThousandths() const { return count_; }
  /// Decimal text without decimals that are zero: 1500, 12.5.
  [[nodiscard]] std::string toText() const;
  [[nodiscard]] double toDouble() const { return static_cast<double>(count_) / kScale; }

  // clang-tidy 14 takes the 0 of a comparison by <=> for a pointer.
  auto operator<=>(const Money&) const = default;  // NOLINT(modernize-use-nullptr)

 private:
  explicit constexpr Money(std::int64_t count) : count_(count) {}
  std::int64_t count_ = 0;
};

/// A Gregorian date with a time of day, to the second. No time zone: what was typed is what is stored.
struct DateTime {
  int year = 1900;  ///< 1 to 9999
  int month = 1;    ///< 1 to 12
  int day = 1;      ///< 1 to 31
  int hour = 0;     ///< 0 to 23
  int minute = 0;   ///< 0 to 59
  int second = 0;   ///< 0 to 59

  /// Reads "yyyy-mm-dd", optionally followed by a blank or "T" and "hh:mm[:ss[.fraction]]" (the fraction is
  /// dropped). Nothing where the text is no date of the calendar.
  [[nodiscard]] static std::optional<DateTime> parse(std::string_view text);
  [[nodiscard]] bool valid() const;
  /// "yyyy-mm-dd hh:mm:ss".
  [[nodiscard]] std::string toIso() const;

  auto operator<=>(const DateTime&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// The value of a column that holds nothing. It is a value of its own: it never reads as 0 or as empty text
/// by itself.
struct Null {
  auto operator<=>(const Null&) const = default;
};

/// What a column or a parameter holds. A value is independent of the rows it came from.
///
/// The readers throw std::range_error where a number doesn't fit, and std::invalid_argument where the value
/// is of another kind or NULL; none of them ever gives another number than the one stored.
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

  /// The value with empty text appended, as a field on the screen shows it: NULL gives empty text, numbers
  /// their decimal text, a date "yyyy-mm-dd hh:mm:ss".
  [[nodiscard]] std::string toText() const;

  /// A whole number. A double with decimals and text that isn't a number are refused, not rounded.
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
