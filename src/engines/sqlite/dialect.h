#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/parser.h"
#include "tsql/tokens.h"

namespace ledgertree::engines::sqlite {

/// A literal of a statement that is bound to its translation.
struct Binding {
  std::size_t literal = 0;  ///< its place among the literals of the statement
  bool negated = false;
  bool trimmed = false;  ///< a text that is compared, where blanks at the end don't count
};

/// A statement in SQLite's dialect.
struct Translation {
  std::string sql;
  std::vector<Binding> bindings;          ///< of ?1, ?2, ...
  std::vector<tsql::Decision> decisions;  ///< see appendOutcome
};

/// Translates one statement of SQL Server's dialect. Throws data::DataError(Statement) for what it doesn't
/// know.
///
/// Literals that are compared or inserted become parameters, so that the same statement with other values has
/// the same translation. Text compares without regard to letter case and to blanks at the end.
[[nodiscard]] Translation translate(std::string_view statement);

/// The form of a statement without its literals, found in one pass over the text: statements of one shape
/// have one translation for each outcome of their decisions.
class StatementShape {
 public:
  /// Throws data::DataError(Statement) as Tokens does. The statement has to outlive the literals.
  void read(std::string_view statement);

  [[nodiscard]] std::string_view key() const { return key_; }
  [[nodiscard]] const std::vector<tsql::Literal>& literals() const { return literals_; }

 private:
  std::string key_;
  std::vector<tsql::Literal> literals_;
};

}  // namespace ledgertree::engines::sqlite
