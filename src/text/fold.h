#pragma once

#include <string>
#include <string_view>

namespace ledgertree::text {

/// Whether a character is displayed as a gap between two words.
[[nodiscard]] constexpr bool isBlank(char32_t letter) {
  return letter == ' ' || (letter >= '\t' && letter <= '\r') || letter == 0x00A0 ||
         (letter >= 0x2000 && letter <= 0x200A) || letter == 0x202F || letter == 0x205F || letter == 0x3000;
}

/// A text in the form that searches compare. Texts that a user would consider the same become equal: it
/// ignores letter case (Latin, Greek, Cyrillic, Armenian), which form of yeh, kaf, heh and alef was typed,
/// and whether digits are Persian, Arabic or ASCII. Blanks, joiners, direction marks, tatweel and Arabic
/// diacritics are dropped: where some write a joiner, most type a blank.
///
/// The result is never longer than the text. Invalid UTF-8 bytes stay as they are.
[[nodiscard]] std::string fold(std::string_view text);

/// The same into the caller's buffer, for searches that fold many texts: once the buffer is large enough for
/// the longest, nothing more is allocated. `text` must not be in the buffer.
void fold(std::string_view text, std::string& folded);

}  // namespace ledgertree::text
