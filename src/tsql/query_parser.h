#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/decisions.h"
#include "tsql/syntax.h"
#include "tsql/token_reader.h"

namespace ledgertree::tsql {

/// Parses selects, conditions and values, which contain one another. Every
/// operation throws data::DataError(Statement) for unsupported input; nesting is
/// limited, so that no text can overflow the stack.
class QueryParser {
 public:
  explicit QueryParser(TokenReader& reader) : reader_(reader) {}

  [[nodiscard]] std::unique_ptr<Select> select();
  /// An optional WHERE with its condition; null if there is none.
  [[nodiscard]] ExpressionPtr where();
  [[nodiscard]] ExpressionPtr value();

  /// The decisions of all literals parsed so far.
  [[nodiscard]] std::vector<Decision> takeDecisions() { return std::move(decisions_); }

 private:
  class Deeper;

  SelectCore selectCore();
  Item item();
  void sources(SelectCore& core);
  Source source();
  std::vector<OrderTerm> order();

  // Lowest precedence first.
  ExpressionPtr condition();
  ExpressionPtr disjunction();
  ExpressionPtr conjunction();
  ExpressionPtr negation();
  ExpressionPtr predicate();
  ExpressionPtr comparison(ExpressionPtr left);
  ExpressionPtr membership(ExpressionPtr left, bool negated);
  ExpressionPtr between(ExpressionPtr left, bool negated);
  ExpressionPtr sum();
  ExpressionPtr product();
  ExpressionPtr arithmetic(ExpressionPtr left, std::string_view op, ExpressionPtr right);
  ExpressionPtr signedValue();
  ExpressionPtr primary();
  ExpressionPtr parenthesis();
  ExpressionPtr literalValue();
  ExpressionPtr columnOrCall();
  ExpressionPtr call(const Token& word);

  std::string pin(std::size_t literal);
  [[nodiscard]] ExpressionPtr requireValue(ExpressionPtr found, const Token& at) const;
  [[nodiscard]] ExpressionPtr requireCondition(ExpressionPtr found, const Token& at) const;

  TokenReader& reader_;
  std::vector<Decision> decisions_;
  int depth_ = 0;
  int callDepth_ = 0;
  int operators_ = 0;
};

}  // namespace ledgertree::tsql
