#include "data/value.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "text/characters.h"

namespace ledgertree::data {
namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();

template <class... Visitors>
struct Overloaded : Visitors... {
  using Visitors::operator()...;
};
template <class... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

/// A value as shown in a message.
std::string shown(const Value& value) { return std::string(text::leftCharacters(value.toText(), 40)); }

[[noreturn]] void refuseKind(const Value& value) {
  if (value.isNull()) throw std::invalid_argument("مقداري که بايد پر باشد خالي است.");
  throw std::invalid_argument("مقدار «" + shown(value) + "» از نوع درست نيست.");
}

[[noreturn]] void refuseRange(const Value& value) {
  throw std::range_error("عدد " + shown(value) + " در محدوده مجاز نيست.");
}

/// A double as the shortest decimal text that reads back as the same number. Past 15 digits an exponent is
/// clearer than a row of zeros.
std::string doubleText(double number) {
  if (number == 0) return "0";
  const double size = std::fabs(number);
  std::array<char, 64> buffer{};
  char* const begin = buffer.data();
  char* const end = begin + buffer.size();
  const bool plain = size >= 1e-5 && size < 1e15;
  const auto written =
      std::to_chars(begin, end, number, plain ? std::chars_format::fixed : std::chars_format::scientific);
  return {begin, written.ptr};
}

/// Appends a digit to `number`, which must stay at or below `limit`.
bool readDigit(char letter, std::uint64_t limit, std::uint64_t& number) {
  const auto digit = static_cast<std::uint64_t>(letter - '0');
  if (number > (limit - digit) / 10) return false;
  number = number * 10 + digit;
  return true;
}

/// Reads a fixed number of digits as part of a date; -1 if there are fewer.
int takeDigits(std::string_view& text, std::size_t count) {
  if (text.size() < count) return -1;
  int number = 0;
  for (const char letter : text.substr(0, count)) {
    if (!text::isDigit(letter)) return -1;
    number = number * 10 + (letter - '0');
  }
  text.remove_prefix(count);
  return number;
}

bool take(std::string_view& text, char letter) {
  if (text.empty() || text.front() != letter) return false;
  text.remove_prefix(1);
  return true;
}

bool takeTimeOfDay(std::string_view& text, DateTime& time) {
  time.hour = takeDigits(text, 2);
  if (!take(text, ':')) return false;
  time.minute = takeDigits(text, 2);
  if (!take(text, ':')) return true;
  time.second = takeDigits(text, 2);
  if (!take(text, '.')) return true;
  if (text.empty()) return false;
  while (!text.empty() && text::isDigit(text.front())) text.remove_prefix(1);
  return true;
}

int daysOf(int year, int month) {
  constexpr std::array<int, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && leap ? 1 : 0);
}

void appendPadded(std::string& text, int number, int width) {
  const std::string digits = std::to_string(number);
  for (auto missing = width - static_cast<int>(digits.size()); missing > 0; --missing) text += '0';
  text += digits;
}

}  // namespace

std::optional<Money> Money::parse(std::string_view text) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  const std::uint64_t limit = negative ? kLargest + 1 : kLargest;

  std::uint64_t count = 0;
  std::size_t digits = 0;
  std::size_t decimals = 0;
  bool fraction = false;
  for (const char letter : text) {
    if (letter == '.' && !fraction && digits != 0) {
      fraction = true;
      continue;
    }
    if (!text::isDigit(letter)) return std::nullopt;
    ++digits;
    if (fraction && ++decimals > 4) {
      if (letter != '0') return std::nullopt;
      continue;
    }
    if (!readDigit(letter, limit, count)) return std::nullopt;
  }
  if (digits == 0 || (fraction && decimals == 0)) return std::nullopt;
  for (; decimals < 4; ++decimals) {
    if (!readDigit('0', limit, count)) return std::nullopt;
  }
  // 0 - count is well-defined for unsigned numbers, and yields the
  // smallest amount, which has no positive counterpart.
  return Money(static_cast<std::int64_t>(negative ? 0 - count : count));
}

std::string Money::toText() const {
  const bool negative = count_ < 0;
  const auto bits = static_cast<std::uint64_t>(count_);
  const std::uint64_t size = negative ? 0 - bits : bits;
  std::string text = negative ? "-" : "";
  text += std::to_string(size / kScale);
  if (const std::uint64_t decimals = size % kScale; decimals != 0) {
    text += '.';
    appendPadded(text, static_cast<int>(decimals), 4);
    text.erase(text.find_last_not_of('0') + 1);
  }
  return text;
}

std::optional<DateTime> DateTime::parse(std::string_view text) {
  DateTime time;
  time.year = takeDigits(text, 4);
  if (!take(text, '-')) return std::nullopt;
  time.month = takeDigits(text, 2);
  if (!take(text, '-')) return std::nullopt;
  time.day = takeDigits(text, 2);
  if (!text.empty()) {
    if (!take(text, ' ') && !take(text, 'T')) return std::nullopt;
    if (!takeTimeOfDay(text, time)) return std::nullopt;
  }
  if (!text.empty() || !time.valid()) return std::nullopt;
  return time;
}

bool DateTime::valid() const {
  if (year < 1 || year > 9999 || month < 1 || month > 12) return false;
  if (day < 1 || day > daysOf(year, month)) return false;
  return hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 59;
}

std::string DateTime::toIso() const {
  std::string text;
  const auto part = [&text](int number, int width, const char* behind) {
    appendPadded(text, number, width);
    text += behind;
  };
  part(year, 4, "-");
  part(month, 2, "-");
  part(day, 2, " ");
  part(hour, 2, ":");
  part(minute, 2, ":");
  part(second, 2, "");
  return text;
}

std::string Value::toText() const {
  return std::visit(
      Overloaded{
          [](Null) { return std::string(); }, [](std::int64_t number) { return std::to_string(number); },
          [](double number) { return doubleText(number); }, [](Money amount) { return amount.toText(); },
          [](const std::string& text) { return text; }, [](const DateTime& time) { return time.toIso(); }},
      value_);
}

std::int64_t Value::toInt64() const {
  if (const auto* number = std::get_if<std::int64_t>(&value_)) return *number;
  if (const auto* number = std::get_if<double>(&value_)) {
    // 2^63 is the first double past the range; every double from -2^63 up to it that is whole converts
    // exactly.
    if (!(*number >= -0x1p63 && *number < 0x1p63) || std::trunc(*number) != *number) refuseRange(*this);
    return static_cast<std::int64_t>(*number);
  }
  if (const auto* amount = std::get_if<Money>(&value_)) {
    if (amount->tenThousandths() % Money::kScale != 0) refuseRange(*this);
    return amount->tenThousandths() / Money::kScale;
  }
  if (const auto* text = std::get_if<std::string>(&value_)) {
    std::int64_t number = 0;
    const char* const end = text->data() + text->size();
    const auto read = std::from_chars(text->data(), end, number);
    if (read.ptr == end && read.ec == std::errc::result_out_of_range) refuseRange(*this);
    if (read.ptr == end && read.ec == std::errc()) return number;
  }
  refuseKind(*this);
}

std::int32_t Value::toInt32() const {
  const std::int64_t number = toInt64();
  if (number < std::numeric_limits<std::int32_t>::min() ||
      number > std::numeric_limits<std::int32_t>::max()) {
    refuseRange(*this);
  }
  return static_cast<std::int32_t>(number);
}

double Value::toDouble() const {
  if (const auto* number = std::get_if<double>(&value_)) return *number;
  if (const auto* amount = std::get_if<Money>(&value_)) return amount->toDouble();
  if (const auto* number = std::get_if<std::int64_t>(&value_)) {
    const auto nearest = static_cast<double>(*number);
    if (nearest >= 0x1p63 || static_cast<std::int64_t>(nearest) != *number) refuseRange(*this);
    return nearest;
  }
  if (const auto* text = std::get_if<std::string>(&value_)) {
    double number = 0;
    const char* const end = text->data() + text->size();
    const auto read = std::from_chars(text->data(), end, number);
    if (read.ptr == end && read.ec == std::errc::result_out_of_range) refuseRange(*this);
    if (read.ptr == end && read.ec == std::errc() && std::isfinite(number)) return number;
  }
  refuseKind(*this);
}

Money Value::toMoney() const {
  if (const auto* amount = std::get_if<Money>(&value_)) return *amount;
  if (const auto* number = std::get_if<std::int64_t>(&value_)) {
    const auto amount = Money::parse(std::to_string(*number));
    if (!amount) refuseRange(*this);
    return *amount;
  }
  if (const auto* number = std::get_if<double>(&value_)) {
    const double scaled = std::round(*number * static_cast<double>(Money::kScale));
    if (!(scaled >= -0x1p63 && scaled < 0x1p63)) refuseRange(*this);
    const Money amount = Money::fromTenThousandths(static_cast<std::int64_t>(scaled));
    if (amount.toDouble() != *number) refuseRange(*this);
    return amount;
  }
  if (const auto* text = std::get_if<std::string>(&value_)) {
    if (const auto amount = Money::parse(*text)) return *amount;
  }
  refuseKind(*this);
}

DateTime Value::toDateTime() const {
  if (const auto* time = std::get_if<DateTime>(&value_)) return *time;
  if (const auto* text = std::get_if<std::string>(&value_)) {
    if (const auto time = DateTime::parse(*text)) return *time;
  }
  refuseKind(*this);
}

}  // namespace ledgertree::data
