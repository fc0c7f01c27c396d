#pragma once

#include <string>
#include <string_view>

namespace ledgertree::text {

/// What shows as a gap between two words.
[[nodiscard]] constexpr bool isBlank(char32_t letter) {
  return letter == ' ' || (letter >= '\t' && letter <= '\r') || letter == 0x00A0 ||
         (letter >= 0x2000 && letter <= 0x200A) || letter == 0x202F || letter == 0x205F || letter == 0x3000;
}

/// A text as a search compares it. Two texts that a person would call the same become equal: letter case
/// doesn't count (Latin, Greek, Cyrillic, Armenian), nor which of the forms of yeh, kaf, heh and alef was
/// typed, nor whether digits are Persian, Arabic or ASCII. Blanks, joiners, direction marks, tatweel and the
/// signs above and below Arabic letters are dropped: where one writes a joiner most people type a blank.
///
/// The result is never longer than the text. Bytes that are no UTF-8 stay as they are.
[[nodiscard]] std::string fold(std::string_view text);

/// The same into a buffer of the caller, for a search that folds many texts: once the buffer has grown to the
/// longest of them nothing is allocated any more. `text` may not stand in the buffer.
void fold(std::string_view text, std::string& folded);

}  // namespace ledgertree::text
