#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <optional>

#include "data/operation.h"

namespace ledgertree::engines::sqlite {

/// Tells the triggers of a file that keeps its changes (see src/db/embedded/history) which operation a
/// statement belongs to: by a row that exists only within the statement's transaction.
///
/// A program that has the file open when the memory is switched on notices it at its next read.
class OperationMarks {
 public:
  explicit OperationMarks(SQLite::Database& database) : database_(database) {}

  /// Whether the file keeps its changes, according to the schema that the connection sees.
  [[nodiscard]] bool areKept() const;
  void set(const data::Operation& operation);
  /// Returns the operation's number, 0 if it hasn't changed anything. Both throw
  /// data::DataError.
  [[nodiscard]] std::int64_t clear();

 private:
  SQLite::Database& database_;
  std::optional<SQLite::Statement> put_;
  std::optional<SQLite::Statement> take_;
};

}  // namespace ledgertree::engines::sqlite
