#include "text/characters.h"

namespace ledgertree::text {
namespace {

constexpr unsigned byteAt(std::string_view text, std::size_t place) {
  return static_cast<unsigned char>(text[place]);
}

constexpr bool continues(unsigned byte) { return (byte & 0xC0U) == 0x80U; }

/// The bytes of the well-formed character of several bytes that the text begins with; 0 where there is none.
/// Overlong forms, surrogates and what lies above U+10FFFF are told by the second byte alone.
std::size_t longCharacter(std::string_view text) {
  const unsigned lead = byteAt(text, 0);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  const unsigned second = byteAt(text, 1);
  if (!continues(second)) return 0;
  if (lead == 0xE0 && second < 0xA0) return 0;
  if (lead == 0xED && second > 0x9F) return 0;
  if (lead == 0xF0 && second < 0x90) return 0;
  if (lead == 0xF4 && second > 0x8F) return 0;
  for (std::size_t place = 2; place < length; ++place) {
    if (!continues(byteAt(text, place))) return 0;
  }
  return length;
}

/// The bytes of the first `count` characters.
std::size_t bytesOf(std::string_view text, std::size_t count) {
  std::size_t place = 0;
  for (; count != 0 && place < text.size(); --count) place += characterLength(text.substr(place));
  return place;
}

constexpr char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

std::size_t characterLength(std::string_view text) {
  if (byteAt(text, 0) < 0x80) return 1;
  const std::size_t length = longCharacter(text);
  return length == 0 ? 1 : length;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t place = 0; place < text.size(); ++count) place += characterLength(text.substr(place));
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
    const unsigned byte = byteAt(text, place);
    const std::size_t length = byte == 0 ? 0 : byte < 0x80 ? 1 : longCharacter(text.substr(place));
    if (length == 0) return false;
    place += length;
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
