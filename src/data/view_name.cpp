#include "data/view_name.h"

#include <algorithm>

#include "text/characters.h"
#include "text/utf8.h"

namespace ledgertree::data {

namespace {

constexpr std::size_t kGreatestLength = 128;

/// Latin letters and those of the Arabic block, including the Persian ones: no punctuation, no marks.
constexpr bool isLetter(char32_t character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= 0x0620 && character <= 0x064A) || (character >= 0x0671 && character <= 0x06D3);
}

/// The length in bytes of the plain name at the start of the text; 0 if there is none.
std::size_t bareName(std::string_view text) {
  for (std::size_t place = 0; place < text.size();) {
    const std::size_t begin = place;
    const char32_t character = text::nextCharacter(text, place);
    const bool follows = begin != 0 && (text::isDigit(character) || character == '$');
    if (!isLetter(character) && character != '_' && !follows) return begin;
  }
  return text.size();
}

/// The length in bytes, brackets included, of the bracketed
/// name at the start of the text; 0 if there is none.
std::size_t bracketedName(std::string_view text) {
  const std::size_t close = text.find(']');
  if (close == std::string_view::npos) return 0;
  const std::string_view name = text.substr(1, close - 1);
  const bool fits = !text::trimmed(name).empty() && std::none_of(name.begin(), name.end(), [](char byte) {
    return byte == '[' || byte == '\'' || byte == '"' || byte == '`' ||
           (static_cast<unsigned char>(byte) < 0x20) || byte == 0x7F;
  });
  return fits ? close + 1 : 0;
}

/// The length in bytes of the name at the start of the text,
/// in brackets or not; 0 for none, or too long a one.
std::size_t nameAhead(std::string_view text) {
  if (text.empty()) return 0;
  const bool bracketed = text.front() == '[';
  const std::size_t length = bracketed ? bracketedName(text) : bareName(text);
  const std::size_t marks = bracketed ? 2 : 0;
  return text::characterCount(text.substr(0, length)) > kGreatestLength + marks ? 0 : length;
}

}  // namespace

std::optional<std::string_view> plainViewName(std::string_view text) {
  const std::string_view name = text::trimmed(text);
  if (!text::isCleanText(name)) return std::nullopt;
  std::size_t end = nameAhead(name);
  for (int dots = 0; dots < 2 && end != 0 && end < name.size() && name[end] == '.'; ++dots) {
    const std::size_t next = nameAhead(name.substr(end + 1));
    end = next == 0 ? 0 : end + 1 + next;
  }
  if (end == 0 || end != name.size()) return std::nullopt;
  return name;
}

}  // namespace ledgertree::data
