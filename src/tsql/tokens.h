#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ledgertree::tsql {

/// A number or a text that stands in a statement as a value.
struct Literal {
  enum class Kind : std::uint8_t { Integer, Decimal, Text };
  Kind kind = Kind::Integer;
  bool hasQuotes = false;    ///< a Text whose apostrophes stand doubled in `text`
  std::int64_t integer = 0;  ///< of an Integer, 0 or more: a sign is a token of its own
  double decimal = 0;        ///< of a Decimal
  std::string_view text;     ///< of a Text: what stands between the apostrophes; of a number: its digits

  /// The value of a Text.
  [[nodiscard]] std::string plainText() const;
};

struct Token {
  enum class Kind : std::uint8_t { Word, QuotedName, Literal, Symbol, End };
  Kind kind = Kind::End;
  std::size_t begin = 0;  ///< where the token stands in the statement, in bytes
  std::size_t end = 0;
  std::string_view text;  ///< a Word or Symbol as written; a QuotedName without its brackets or quotes
  Literal literal;        ///< of a Literal
};

/// Takes a statement apart. It looks at every byte once, since it runs for every statement, the cached ones
/// included.
///
/// Throws data::DataError(Statement) for what no statement of the dialect holds: comments, variables, control
/// characters, a text or name without its end, a number that fits no 64 bits, text that is no UTF-8. A view
/// of the statement is kept.
class Tokens {
 public:
  /// The longest statement, in bytes: longer ones come from a fault, not from a screen.
  static constexpr std::size_t kMostBytes = 262144;

  explicit Tokens(std::string_view statement);

  /// The next token; of kind End at the end, and from then on.
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

/// The refusal of a statement, which says behind data::kStatementRefused what isn't understood and where.
/// `place` counts bytes; the message counts characters.
[[noreturn]] void refuse(std::string_view statement, std::size_t place, const std::string& what);

}  // namespace ledgertree::tsql
