#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ledgertree::tsql {

/// A number or a text given as a value in a statement.
struct Literal {
  enum class Kind : std::uint8_t { Integer, Decimal, Text };
  Kind kind = Kind::Integer;
  bool hasQuotes = false;    ///< a Text with doubled apostrophes in `text`
  std::int64_t integer = 0;  ///< of an Integer, 0 or more: a minus is a separate token
  double decimal = 0;        ///< of a Decimal
  std::string_view text;     ///< of a Text: what is between the apostrophes; of a number: its digits

  /// A Text's value.
  [[nodiscard]] std::string plainText() const;
};

struct Token {
  enum class Kind : std::uint8_t { Word, QuotedName, Literal, Symbol, End };
  Kind kind = Kind::End;
  std::size_t begin = 0;  ///< byte offset of the token in the statement
  std::size_t end = 0;
  std::string_view text;  ///< a Word or Symbol as written; a QuotedName without its brackets or quotes
  Literal literal;        ///< of a Literal
};

/// Splits a statement into tokens. It looks at every byte once, since it
/// runs for every statement, including cached ones.
///
/// Throws data::DataError(Statement) for what no statement of the dialect contains:
/// comments, variables, control characters, an unterminated text or name, a number beyond 64
/// bits, invalid UTF-8. Keeps a view of the statement.
class Tokens {
 public:
  /// The longest statement, in bytes: longer ones come from a fault, not from a screen.
  static constexpr std::size_t kMostBytes = 262144;

  explicit Tokens(std::string_view statement);

  /// The next token; at the end, always one of kind End.
  [[nodiscard]] Token next();

 private:
  [[nodiscard]] Token symbol();
  [[nodiscard]] Token word();
  [[nodiscard]] Token number();
  [[nodiscard]] Token text(std::size_t begin);
  [[nodiscard]] Token quotedName(char closing);
  [[nodiscard]] std::string_view between(std::size_t begin, std::size_t end) const {
    return statement_.substr(begin, end - begin);
  }

  std::string_view statement_;
  std::size_t place_ = 0;
};

/// Refuses a statement with data::kStatementRefused, followed by what isn't understood and where. `place`
/// counts bytes; the message counts characters.
[[noreturn]] void refuse(std::string_view statement, std::size_t place, const std::string& what);

}  // namespace ledgertree::tsql
