#include "data/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "text/characters.h"

namespace ledgertree::data {
namespace {

/// A parsed decimal number: 0.d1d2d3… times 10 to the power of
/// `point`. Without digits it is 0; otherwise d1 isn't 0.
struct Decimal {
  bool negative = false;
  std::string digits;
  std::int64_t point = 0;
};

/// Scans a text, skipping its white space.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) { skip(); }

  [[nodiscard]] char peek() const { return place_ < text_.size() ? text_[place_] : '\0'; }
  [[nodiscard]] bool onDigit() const { return peek() >= '0' && peek() <= '9'; }
  char next() {
    const char letter = peek();
    ++place_;
    skip();
    return letter;
  }
  /// Consumes one of the letters if it comes next.
  bool take(std::string_view letters) {
    if (peek() == '\0' || letters.find(peek()) == std::string_view::npos) return false;
    next();
    return true;
  }
  /// Consumes a sign if one comes next: true for "-".
  bool takeMinus() {
    const bool minus = peek() == '-';
    take("+-");
    return minus;
  }

 private:
  void skip() { place_ = std::min(text_.find_first_not_of(" \t\r\n", place_), text_.size()); }

  std::string_view text_;
  std::size_t place_ = 0;
};

/// The exponent that comes next; 0 if there is none.
std::int64_t readExponent(Scanner scanner) {
  if (!scanner.take("eEdD")) return 0;
  const bool negative = scanner.takeMinus();
  // More digits than any text in memory can have, so that exponent and digits can still cancel out.
  constexpr std::int64_t kEnough = 1'000'000'000'000;
  std::int64_t exponent = 0;
  while (scanner.onDigit()) exponent = std::min(exponent * 10 + (scanner.next() - '0'), kEnough);
  return negative ? -exponent : exponent;
}

Decimal readDecimal(std::string_view text) {
  Scanner scanner(text);
  Decimal number;
  number.negative = scanner.takeMinus();
  bool fraction = false;
  bool any = false;
  for (; scanner.onDigit() || (scanner.peek() == '.' && !fraction);) {
    const char letter = scanner.next();
    if (letter == '.') {
      fraction = true;
      continue;
    }
    any = true;
    const bool significant = letter != '0' || !number.digits.empty();
    if (significant) number.digits += letter;
    if (!fraction && significant) ++number.point;
    if (fraction && !significant) --number.point;
  }
  if (any) number.point += readExponent(scanner);
  return number;
}

[[noreturn]] void refuse(const std::string& number) {
  throw std::range_error("عدد " + number + " در محدوده مجاز نيست. عدد ديگري وارد کنيد.");
}

/// Nothing if the number is out of a double's range. Too small a number becomes 0.
std::optional<double> nearestDouble(const Decimal& number) {
  constexpr std::int64_t kDecades = 400;
  if (number.digits.empty() || number.point < -kDecades) return 0.0;
  if (number.point > kDecades) return std::nullopt;
  const std::string text =
      (number.negative ? "-0." : "0.") + number.digits + "e" + std::to_string(number.point);
  double nearest = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), nearest);
  if (read.ec != std::errc::result_out_of_range) return nearest;
  if (number.point > 0) return std::nullopt;
  return 0.0;
}

/// The number times 10 to the power of `decimals` as a whole number, rounded; nothing past `limit`.
std::optional<std::uint64_t> scaledWhole(const Decimal& number, int decimals, std::uint64_t limit) {
  const std::int64_t point = number.point + decimals;
  if (number.digits.empty() || point < 0) return 0;
  if (point > std::numeric_limits<std::uint64_t>::digits10) return std::nullopt;
  const auto wholeDigits = static_cast<std::size_t>(point);
  std::uint64_t whole = 0;
  for (std::size_t place = 0; place < wholeDigits; ++place) {
    const char digit = place < number.digits.size() ? number.digits[place] : '0';
    whole = whole * 10 + static_cast<std::uint64_t>(digit - '0');
  }
  if (number.digits.size() > wholeDigits) {
    const std::string_view rest = std::string_view(number.digits).substr(wholeDigits);
    const bool exactHalf = rest.front() == '5' && rest.find_first_not_of('0', 1) == std::string_view::npos;
    if (exactHalf ? whole % 2 == 1 : rest.front() >= '5') ++whole;
  }
  if (whole > limit) return std::nullopt;
  return whole;
}

/// A copy without its "/".
std::string withoutSeparators(std::string_view text) {
  std::string digits(text);
  std::erase(digits, '/');
  return digits;
}

template <class Integer>
Integer rounded(double number) {
  const double whole = std::nearbyint(number);
  constexpr double kLowest = std::numeric_limits<Integer>::min();
  constexpr double kHighest = std::numeric_limits<Integer>::max();
  if (!(whole >= kLowest && whole <= kHighest)) refuse(Value(number).toText());
  return static_cast<Integer>(whole);
}

template <class Integer>
Integer narrowed(std::int64_t number) {
  if (number < std::numeric_limits<Integer>::min() || number > std::numeric_limits<Integer>::max()) {
    refuse(std::to_string(number));
  }
  return static_cast<Integer>(number);
}

}  // namespace

double leadingNumber(std::string_view text) {
  const auto number = nearestDouble(readDecimal(text));
  if (!number) refuse(std::string(text::leftCharacters(text, 40)));
  return *number;
}

std::int32_t roundToInt32(double number) { return rounded<std::int32_t>(number); }
std::int16_t roundToInt16(double number) { return rounded<std::int16_t>(number); }
std::int32_t toInt32(std::int64_t number) { return narrowed<std::int32_t>(number); }
std::int16_t toInt16(std::int64_t number) { return narrowed<std::int16_t>(number); }

double NumberOrEmpty::asDouble() const {
  if (const auto* integer = std::get_if<std::int16_t>(&number_)) return *integer;
  if (const auto* real = std::get_if<double>(&number_)) return *real;
  return 0;
}

NumberOrEmpty toNumber(std::string_view text) {
  if (text::trimmed(text).empty()) return NumberOrEmpty::ofInteger(-1);
  if (text == "True") return NumberOrEmpty::ofInteger(1);
  const auto number = nearestDouble(readDecimal(withoutSeparators(text)));
  return number ? NumberOrEmpty::ofDouble(*number) : NumberOrEmpty::ofInteger(0);
}

std::string groupDigits(std::string_view text, std::string_view separator) {
  const std::size_t count = text::characterCount(text);
  const std::size_t groups = count == 0 ? 0 : (count - 1) / 3;
  const std::string_view head = text::leftCharacters(text, count - groups * 3);
  std::string grouped(head);
  for (std::string_view rest = text.substr(head.size()); !rest.empty();) {
    const std::string_view group = text::leftCharacters(rest, 3);
    grouped.append(separator).append(group);
    rest.remove_prefix(group.size());
  }
  return grouped;
}

Money digitsToCurrency(std::string& text) {
  std::erase(text, '/');
  const Decimal number = readDecimal(text);
  const std::uint64_t limit =
      static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (number.negative ? 1 : 0);
  const auto count = scaledWhole(number, 4, limit);
  if (!count) {
    throw std::range_error("مبلغ " + std::string(text::leftCharacters(text, 40)) +
                           " در محدوده مجاز نيست. مبلغ ديگري وارد کنيد.");
  }
  return Money::fromTenThousandths(static_cast<std::int64_t>(number.negative ? 0 - *count : *count));
}

}  // namespace ledgertree::data
