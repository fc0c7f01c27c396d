#include "accounts/field_rules_ceiling.h"

#include <algorithm>
#include <stdexcept>

#include "data/numbers.h"
#include "text/utf8.h"
#include "ui/key.h"

namespace ledgertree::accounts {

namespace {

constexpr char kSeparator = '/';

std::string latinDigits(std::string_view text) {
  std::u32string characters = text::charactersOf(text);
  std::transform(characters.begin(), characters.end(), characters.begin(), ui::latinDigit);
  return text::textOf(characters);
}

/// The amount as the field shows it.
std::string grouped(std::string_view text) {
  std::string digits = latinDigits(text);
  try {
    digits = data::digitsToCurrency(digits).toText();
  } catch (const std::range_error&) {
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  }
  return data::groupDigits(digits, std::string_view(&kSeparator, 1));
}

/// The characters other than separators from a position on.
std::size_t digitsBehind(std::u32string_view text, std::size_t place) {
  const std::u32string_view rest = text.substr(std::min(place, text.size()));
  return rest.size() - static_cast<std::size_t>(std::count(rest.begin(), rest.end(), kSeparator));
}

/// The caret's position from the text length alone: a separator more or less moves it by one.
std::size_t shifted(std::size_t caret, std::size_t lengthBefore, std::size_t lengthNow) {
  if (lengthNow > lengthBefore) return caret + 1;
  return lengthNow < lengthBefore && caret > 0 ? caret - 1 : caret;
}

}  // namespace

data::Money ceilingAmount(std::string_view text) {
  std::string digits = latinDigits(text);
  return data::digitsToCurrency(digits);
}

EditedText formatCeiling(std::string_view text, std::size_t caret, bool afterBackspace) {
  const std::u32string before = text::charactersOf(text);
  EditedText now{.text = grouped(text), .caret = caret};
  if (now.text == text) return now;

  const std::u32string characters = text::charactersOf(now.text);
  const std::size_t wanted = std::min(digitsBehind(before, caret), digitsBehind(characters, 0));
  now.caret = std::min(shifted(caret, before.size(), characters.size()), characters.size());
  while (digitsBehind(characters, now.caret) < wanted) --now.caret;
  while (digitsBehind(characters, now.caret) > wanted) ++now.caret;
  const bool behindSeparator = now.caret > 0 && characters[now.caret - 1] == U'/';
  if (afterBackspace && behindSeparator) --now.caret;
  return now;
}

}  // namespace ledgertree::accounts
