#pragma once

#include <optional>
#include <string_view>

#include "tsql/syntax.h"

namespace ledgertree::tsql {

/// What an engine knows about its database's columns.
class Columns {
 public:
  virtual ~Columns() = default;
  /// The type of a column of a table or view; nothing if there is no such column. Names ignore case.
  [[nodiscard]] virtual std::optional<ValueType> typeOf(std::string_view table, std::string_view column) = 0;
};

/// Determines the type of every value of a statement, by which "+" joins or adds; a column's type is that of
/// `columns`, for the table that its name refers to.
void tellTypes(Statement& statement, Columns& columns);

}  // namespace ledgertree::tsql
