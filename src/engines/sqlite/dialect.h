#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engines/sqlite/tables.h"
#include "tsql/parser.h"
#include "tsql/tokens.h"

namespace ledgertree::engines::sqlite {

/// A literal of a statement, bound as a parameter of its translation.
struct Binding {
  std::size_t literal = 0;  ///< its index among the statement's literals
  bool negated = false;
  bool trimmed = false;  ///< a compared text, whose trailing blanks don't count
};

/// A statement in SQLite's dialect.
struct Translation {
  std::string sql;
  std::vector<Binding> bindings;          ///< of ?1, ?2, ...
  std::vector<tsql::Decision> decisions;  ///< see appendOutcome
};

enum class Form {
  Fast,   ///< with the rewrites of rewrites.h
  Plain,  ///< as written: the same rows, for tests that check the rewrites
};

/// Translates one statement from SQL Server's dialect for a database with these tables, on a
/// connection with the function of sum.h and the collation of persian_order.h. Throws
/// data::DataError(Statement) for anything unsupported.
///
/// Literals that are compared or inserted become parameters, so that the same statement with other values has
/// the same translation. Text is compared ignoring letter case and trailing blanks.
[[nodiscard]] Translation translate(std::string_view statement, Tables& tables, Form form = Form::Fast);

}  // namespace ledgertree::engines::sqlite
