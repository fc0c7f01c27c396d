#pragma once

#include <string>
#include <string_view>

/// The code page of the server's columns, to which this engine folds letters here and nowhere else. Columns
/// in a Persian or Arabic collation hold what Windows-1256 holds: ي, ك and ک, but neither ی nor the Persian
/// digits, which the server would silently replace by "?".
namespace ledgertree::engines::odbc {

enum class CodePage {
  Arabic,   ///< Windows-1256: letters that it lacks are folded or refused
  Unknown,  ///< any other: letters are folded, none is refused
  Unicode,  ///< columns hold every letter; nothing is changed
};

/// Folds a text for a parameter: ی to ي, Persian and Arabic digits to ASCII, and some rarer letters to ones
/// that look alike; direction marks are dropped. The result is never longer than the text. Throws
/// data::DataError(Misuse) naming the character for any other that an Arabic code page lacks. `text` is clean
/// (see characters.h).
[[nodiscard]] std::string foldText(std::string_view text, CodePage page);

/// Does the same to the plain literals ('...') of a statement; N'...' literals, names and comments stay. In a
/// statement that only reads, a literal with a letter that the code page lacks becomes N'...', which matches
/// no row.
[[nodiscard]] std::string foldStatement(std::string_view statement, CodePage page);

/// The first word of a statement, after blanks, comments and parentheses.
[[nodiscard]] std::string_view firstWord(std::string_view statement);
[[nodiscard]] bool beginsWithWord(std::string_view statement, std::string_view word);

}  // namespace ledgertree::engines::odbc
