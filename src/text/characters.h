#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text is UTF-8 everywhere. Lengths and places count characters (code points), never bytes; this is the one
/// place of the product that knows how. A byte that is no UTF-8 counts as one character.
namespace ledgertree::text {

/// The bytes of the first character of a text that isn't empty: 1 to 4, and 1 for a byte that is no UTF-8.
[[nodiscard]] std::size_t characterLength(std::string_view text);
[[nodiscard]] std::size_t characterCount(std::string_view text);
/// The first / last `count` characters; the whole text where it is shorter.
[[nodiscard]] std::string_view leftCharacters(std::string_view text, std::size_t count);
[[nodiscard]] std::string_view rightCharacters(std::string_view text, std::size_t count);
/// What is left of the text behind its first `count` characters; empty where it is no longer.
[[nodiscard]] std::string_view withoutFirstCharacters(std::string_view text, std::size_t count);
/// Whether the text is well-formed UTF-8 and holds no NUL, as everything that goes into a statement has to
/// be.
[[nodiscard]] bool isCleanText(std::string_view text);
/// The text without the blanks (U+0020, no other white space) at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);
/// ASCII letters compare equal in either case.
[[nodiscard]] bool equalsIgnoringCase(std::string_view a, std::string_view b);

}  // namespace ledgertree::text
