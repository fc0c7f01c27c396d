#pragma once

#include <optional>
#include <string_view>

#include "tsql/syntax.h"

namespace ledgertree::tsql {

/// What an engine knows of the columns of its database.
class Columns {
 public:
  virtual ~Columns() = default;
  /// What a column of a table or view holds; nothing where there is no such column. Names count in any case.
  [[nodiscard]] virtual std::optional<ValueType> typeOf(std::string_view table, std::string_view column) = 0;
};

/// Gives every value of a statement its type, by which "+" joins or adds: that of a column is asked of
/// `columns`, by the table that its name means where it stands.
void tellTypes(Statement& statement, Columns& columns);

}  // namespace ledgertree::tsql
