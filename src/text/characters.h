#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text is UTF-8 everywhere. Lengths and positions count characters (code points), never bytes; only this
/// file knows how. An invalid UTF-8 byte counts as one character.
namespace ledgertree::text {

/// The length in bytes of the first character of a non-empty text: 1 to 4, and 1 for an invalid UTF-8 byte.
[[nodiscard]] std::size_t characterLength(std::string_view text);
[[nodiscard]] std::size_t characterCount(std::string_view text);
/// The first / last `count` characters; the whole text if it is shorter.
[[nodiscard]] std::string_view leftCharacters(std::string_view text, std::size_t count);
[[nodiscard]] std::string_view rightCharacters(std::string_view text, std::size_t count);
/// The text after its first `count` characters; empty if there is none.
[[nodiscard]] std::string_view withoutFirstCharacters(std::string_view text, std::size_t count);
/// Whether the text is valid UTF-8 without NUL, which is required of everything that goes into a
/// statement.
[[nodiscard]] bool isCleanText(std::string_view text);
/// The text without leading and trailing blanks (U+0020, no other white space).
[[nodiscard]] std::string_view trimmed(std::string_view text);
/// ASCII digits only.
[[nodiscard]] constexpr bool isDigit(char32_t character) { return character >= '0' && character <= '9'; }

/// Compares ignoring the case of ASCII letters.
[[nodiscard]] bool equalsIgnoringCase(std::string_view a, std::string_view b);

}  // namespace ledgertree::text
