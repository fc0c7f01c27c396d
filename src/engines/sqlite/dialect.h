#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engines/sqlite/tables.h"
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

enum class Form {
  Fast,   ///< by the rules of rewrites.h
  Plain,  ///< as it is written: the same rows, for tests that watch over the rules
};

/// Translates one statement of SQL Server's dialect for a database with these tables, on a connection with
/// the function of sum.h and the collation of persian_order.h. Throws data::DataError(Statement) for what it
/// doesn't know.
///
/// Literals that are compared or inserted become parameters, so that the same statement with other values has
/// the same translation. Text compares without regard to letter case and to blanks at the end.
[[nodiscard]] Translation translate(std::string_view statement, Tables& tables, Form form = Form::Fast);

}  // namespace ledgertree::engines::sqlite
