#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/tokens.h"

namespace ledgertree::tsql {

/// The tokens of a statement, taken one by one with a look ahead. A word that is expected and isn't there is
/// refused by the name of what stands in its place.
class TokenReader {
 public:
  /// Reads all tokens. Throws data::DataError(Statement) as Tokens does, and for more words than any
  /// statement has.
  explicit TokenReader(std::string_view statement);

  [[nodiscard]] std::string_view statement() const { return statement_; }
  /// The literals of the whole statement in their order.
  [[nodiscard]] const std::vector<Literal>& literals() const { return literals_; }

  [[nodiscard]] const Token& peek(std::size_t ahead = 0) const {
    return tokens_[std::min(place_ + ahead, tokens_.size() - 1)];
  }
  /// Of the literal that peek() gives: its place among the literals.
  [[nodiscard]] std::size_t literalPlace() const { return literalPlaces_[place_]; }
  Token take();

  [[nodiscard]] bool atWord(std::string_view word, std::size_t ahead = 0) const;
  [[nodiscard]] bool atSymbol(std::string_view symbol, std::size_t ahead = 0) const;
  bool takeWord(std::string_view word);
  bool takeSymbol(std::string_view symbol);
  void requireWord(std::string_view word);
  void requireSymbol(std::string_view symbol);
  /// Takes one of the symbols, and gives the one of the array, which outlives the statement.
  template <std::size_t Count>
  std::optional<std::string_view> takeOneOf(const std::string_view (&symbols)[Count]) {
    for (const std::string_view symbol : symbols) {
      if (takeSymbol(symbol)) return symbol;
    }
    return std::nullopt;
  }

  /// Whether a name comes next: in brackets, or a word that isn't reserved.
  [[nodiscard]] bool atName() const;
  [[nodiscard]] std::string name();
  /// The name of a table or view. A schema ahead of it is passed over: the system uses one alone.
  [[nodiscard]] std::string tableName();

  /// Refuses the statement for a token.
  [[noreturn]] void refuseAt(const Token& token) const;
  [[noreturn]] void refuseHere() const { refuseAt(peek()); }

 private:
  std::string_view statement_;
  std::vector<Token> tokens_;
  std::vector<std::size_t> literalPlaces_;  ///< for each token, how many literals stand ahead of it
  std::vector<Literal> literals_;
  std::size_t place_ = 0;
};

}  // namespace ledgertree::tsql
