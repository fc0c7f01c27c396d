#pragma once

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Text is UTF-8 in general, code points where positions matter, and UTF-16 for drivers. Invalid UTF-8 bytes,
/// unpaired surrogates and invalid code points are all read as U+FFFD.
namespace ledgertree::text {

inline constexpr char32_t kReplacement = U'\uFFFD';
/// The value of an invalid UTF-8 byte where it must differ from U+FFFD itself.
inline constexpr char32_t kNoCharacter = 0xFFFFFFFF;

/// The character at a position, which then advances to the next one, by one byte for kNoCharacter.
[[nodiscard]] inline char32_t nextCharacter(std::string_view text, std::size_t& place) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const std::size_t begin = place;
  UChar32 character = 0;
  U8_NEXT(bytes, place, text.size(), character);
  if (character < 0) place = begin + 1;
  return static_cast<char32_t>(character);
}

void appendCharacter(char32_t character, std::string& text);

[[nodiscard]] std::u32string charactersOf(std::string_view text);
[[nodiscard]] std::string textOf(std::u32string_view characters);

/// Appends a text as UTF-16. `Wide` is std::u16string, or any type with "+=" for its code units.
template <typename Wide>
void appendWide(std::string_view text, Wide& wide) {
  for (std::size_t place = 0; place < text.size();) {
    const char32_t next = nextCharacter(text, place);
    const char32_t character = next == kNoCharacter ? kReplacement : next;
    if (character > 0xFFFF) wide += static_cast<char16_t>(U16_LEAD(character));
    wide += static_cast<char16_t>(character > 0xFFFF ? U16_TRAIL(character) : character);
  }
}

[[nodiscard]] std::u16string wideText(std::string_view text);
void appendUtf8(std::u16string_view wide, std::string& text);
[[nodiscard]] std::string utf8Text(std::u16string_view wide);

}  // namespace ledgertree::text
