#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <map>
#include <span>

#include "data/catalogue.h"
#include "data/value.h"

namespace ledgertree::engines::sqlite {

/// Carries out the procedures of the catalogue on a database that has the schema of src/db/embedded. What
/// their results mean stands at the operations of DtEn.
///
/// Each call is atomic: it has done all of its work or none; within a transaction of the caller it is a part
/// of that. The statements stay prepared as long as the object lives, so a connection keeps one, and drops it
/// before the database.
class ProcedureRunner {
 public:
  explicit ProcedureRunner(SQLite::Database& database) : database_(database) {}

  /// The values have passed checkArguments. Throws SQLite::Exception where the engine fails;
  /// data::DataError(Constraint) where the parent or the account itself is gone, which can only mean that
  /// another program deleted it; data::DataError(Misuse) for a procedure without a body.
  [[nodiscard]] std::int32_t call(const data::Procedure& procedure, std::span<const data::Value> values);

 private:
  using Values = std::span<const data::Value>;
  class Together;

  std::int32_t hasPermission(Values values);
  std::int32_t currentUserPeriod(Values values);
  std::int32_t insertAccount(Values values);
  std::int32_t updateAccount(Values values);
  std::int32_t insertRelatedObject(Values values);
  std::int32_t deleteAccount(Values values);

  SQLite::Statement& prepared(const char* statement);
  /// Runs a statement that gives no rows, with the values as its parameters ?1, ?2, …; gives the number of
  /// rows changed.
  int change(const char* statement, Values values);
  /// The first column of the first row, `otherwise` where there is no row or it holds null.
  std::int32_t look(const char* statement, Values values, std::int32_t otherwise);

  SQLite::Database& database_;
  std::map<const char*, SQLite::Statement> statements_;
};

}  // namespace ledgertree::engines::sqlite
