#include "text/utf8.h"

#include <array>

namespace ledgertree::text {

void appendCharacter(char32_t character, std::string& text) {
  if (character > 0x10FFFF || U_IS_SURROGATE(character)) character = kReplacement;
  std::array<char, U8_MAX_LENGTH> bytes{};
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, character);
  text.append(bytes.data(), length);
}

std::u32string charactersOf(std::string_view text) {
  std::u32string characters;
  characters.reserve(text.size());
  for (std::size_t place = 0; place < text.size();) {
    const char32_t character = nextCharacter(text, place);
    characters += character == kNoCharacter ? kReplacement : character;
  }
  return characters;
}

std::string textOf(std::u32string_view characters) {
  std::string text;
  text.reserve(characters.size());
  for (const char32_t character : characters) appendCharacter(character, text);
  return text;
}

std::u16string wideText(std::string_view text) {
  std::u16string wide;
  wide.reserve(text.size());
  appendWide(text, wide);
  return wide;
}

void appendUtf8(std::u16string_view wide, std::string& text) {
  for (std::size_t place = 0; place < wide.size();) {
    char32_t character = 0;
    U16_NEXT(wide.data(), place, wide.size(), character);
    appendCharacter(character, text);
  }
}

std::string utf8Text(std::u16string_view wide) {
  std::string text;
  text.reserve(wide.size());
  appendUtf8(wide, text);
  return text;
}

}  // namespace ledgertree::text
