#include "text/characters.h"

#include "text/utf8.h"

namespace ledgertree::text {
namespace {

/// The length in bytes of the first `count` characters.
std::size_t bytesOf(std::string_view text, std::size_t count) {
  std::size_t place = 0;
  for (; count != 0 && place < text.size(); --count) static_cast<void>(nextCharacter(text, place));
  return place;
}

constexpr char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

std::size_t characterLength(std::string_view text) { return bytesOf(text, 1); }

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t place = 0; place < text.size(); ++count) static_cast<void>(nextCharacter(text, place));
  return count;
}

std::string_view leftCharacters(std::string_view text, std::size_t count) {
  return text.substr(0, bytesOf(text, count));
}

std::string_view rightCharacters(std::string_view text, std::size_t count) {
  const std::size_t all = characterCount(text);
  return all <= count ? text : withoutFirstCharacters(text, all - count);
}

std::string_view withoutFirstCharacters(std::string_view text, std::size_t count) {
  return text.substr(bytesOf(text, count));
}

bool isCleanText(std::string_view text) {
  for (std::size_t place = 0; place < text.size();) {
    const char32_t character = nextCharacter(text, place);
    if (character == 0 || character == kNoCharacter) return false;
  }
  return true;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t place = 0; place < a.size(); ++place) {
    if (lowered(a[place]) != lowered(b[place])) return false;
  }
  return true;
}

}  // namespace ledgertree::text
