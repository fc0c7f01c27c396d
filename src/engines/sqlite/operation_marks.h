#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <optional>

#include "data/operation.h"

namespace ledgertree::engines::sqlite {

/// Tells the triggers of a file that keeps its changes (see src/db/embedded/history) what a statement belongs
/// to: a row that is put there and taken away within the transaction of the statement.
///
/// A program that has the file open when its memory is switched on knows of it from its next reading on.
class OperationMarks {
 public:
  explicit OperationMarks(SQLite::Database& database) : database_(database) {}

  /// Whether the file keeps its changes, by the schema that the connection knows.
  [[nodiscard]] bool areKept() const;
  void set(const data::Operation& operation);
  /// Gives the number of the operation, 0 where nothing of it has changed anything. Both throw
  /// data::DataError.
  [[nodiscard]] std::int64_t clear();

 private:
  SQLite::Database& database_;
  std::optional<SQLite::Statement> put_;
  std::optional<SQLite::Statement> take_;
};

}  // namespace ledgertree::engines::sqlite
