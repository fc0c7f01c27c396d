#pragma once

#include <array>
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
///
/// A walk asks the same for one number after the other. So a statement that is one of the last few but for
/// the last number in it is only compared with that one.
class StatementShape {
 public:
  /// Throws data::DataError(Statement) as Tokens does. The literals stand until the next call, as long as
  /// the statement does.
  void read(std::string_view statement);

  [[nodiscard]] std::string_view key() const { return recent_[current_].key; }
  [[nodiscard]] const std::vector<tsql::Literal>& literals() const { return recent_[current_].literals; }

 private:
  struct Recent {
    std::string statement;
    std::string key;
    std::vector<tsql::Literal> literals;  ///< views of `statement`, but for the last number
    std::size_t numberBegin = 0;          ///< where the last literal stands, if it is a whole number
    std::size_t numberEnd = 0;            ///< 0: it isn't

    void read(std::string_view text);
    /// Takes the number of a statement that is the same but for that; false for any other.
    [[nodiscard]] bool takeNumber(std::string_view text);
  };
  std::array<Recent, 4> recent_;
  std::size_t current_ = 0;
  std::size_t oldest_ = 0;
};

}  // namespace ledgertree::engines::sqlite
