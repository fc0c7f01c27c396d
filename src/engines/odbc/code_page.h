#pragma once

#include <string>
#include <string_view>

/// The one place where this engine fits letters to the code page of the server's columns. Columns in a
/// Persian or Arabic collation hold what Windows-1256 holds: ي, ك and ک, but neither ی nor the Persian
/// digits. The server would put "?" in their place without a word.
namespace ledgertree::engines::odbc {

enum class CodePage {
  Arabic,   ///< Windows-1256: what it lacks is folded or refused
  Unknown,  ///< another one: letters are folded, nothing is refused
  Unicode,  ///< columns hold every letter; nothing changes
};

/// A text for a parameter: ی as ي, Persian and Arabic digits as ASCII ones, and some rarer letters as the one
/// that looks alike; marks of direction are dropped. Never longer than the text. Throws
/// data::DataError(Misuse) that shows the character for any other that an Arabic code page lacks. `text` is
/// clean (see characters.h).
[[nodiscard]] std::string foldText(std::string_view text, CodePage page);

/// The same for the plain literals ('...') of a statement; literals behind an N, names and comments stay. In
/// a statement that only reads a literal with a letter that is lost becomes one behind an N, which equals no
/// row.
[[nodiscard]] std::string foldStatement(std::string_view statement, CodePage page);

/// The first word of a statement, behind blanks, comments and parentheses.
[[nodiscard]] std::string_view firstWord(std::string_view statement);
[[nodiscard]] bool beginsWithWord(std::string_view statement, std::string_view word);

}  // namespace ledgertree::engines::odbc
