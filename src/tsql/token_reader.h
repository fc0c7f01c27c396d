#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/tokens.h"

namespace ledgertree::tsql {

/// The tokens of a statement, taken one by one with one token of lookahead. If an expected word is missing,
/// the statement is refused naming the actual token.
class TokenReader {
 public:
  /// Reads all tokens. Throws data::DataError(Statement) as Tokens does,
  /// and for more words than any real statement has.
  explicit TokenReader(std::string_view statement);

  [[nodiscard]] std::string_view statement() const { return statement_; }
  /// All literals of the statement, in order.
  [[nodiscard]] const std::vector<Literal>& literals() const { return literals_; }

  [[nodiscard]] const Token& peek(std::size_t ahead = 0) const {
    return tokens_[std::min(place_ + ahead, tokens_.size() - 1)];
  }
  /// The index of the literal at peek() among the literals.
  [[nodiscard]] std::size_t literalIndex() const { return literalIndices_[place_]; }
  Token take();

  [[nodiscard]] bool atWord(std::string_view word, std::size_t ahead = 0) const;
  [[nodiscard]] bool atSymbol(std::string_view symbol, std::size_t ahead = 0) const;
  bool takeWord(std::string_view word);
  bool takeSymbol(std::string_view symbol);
  void requireWord(std::string_view word);
  void requireSymbol(std::string_view symbol);
  /// Takes one of the symbols, and returns the array's own, which outlives the statement.
  template <std::size_t Count>
  std::optional<std::string_view> takeOneOf(const std::string_view (&symbols)[Count]) {
    for (const std::string_view symbol : symbols) {
      if (takeSymbol(symbol)) return symbol;
    }
    return std::nullopt;
  }

  /// Whether a name comes next: bracketed, or a word that isn't reserved.
  [[nodiscard]] bool atName() const;
  [[nodiscard]] std::string name();
  /// Takes the name of a table or view. A leading schema is skipped: the system uses just one.
  [[nodiscard]] std::string tableName();

  /// Refuses the statement because of a token.
  [[noreturn]] void refuseAt(const Token& token) const;
  [[noreturn]] void refuseHere() const { refuseAt(peek()); }

 private:
  std::string_view statement_;
  std::vector<Token> tokens_;
  std::vector<std::size_t> literalIndices_;  ///< for each token, how many literals precede it
  std::vector<Literal> literals_;
  std::size_t place_ = 0;
};

}  // namespace ledgertree::tsql
