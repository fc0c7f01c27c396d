#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <map>
#include <span>

#include "data/catalogue.h"
#include "data/value.h"

namespace ledgertree::engines::sqlite {

/// Runs the catalogue's procedures on a database that has the schema of
/// src/db/embedded. DtEn's operations document their results.
///
/// Each call is atomic, and joins the caller's transaction if there is one. The statements stay
/// prepared for the object's lifetime, so a connection keeps one object, and destroys it before the
/// database.
class ProcedureRunner {
 public:
  explicit ProcedureRunner(SQLite::Database& database) : database_(database) {}

  /// The values must have passed checkArguments. Throws SQLite::Exception if the engine fails;
  /// data::DataError(Constraint) if the parent or the account itself is gone, which can only mean that
  /// another program deleted it; data::DataError(Misuse) for an unknown procedure.
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
  /// Runs a statement that returns no rows, with the values as its
  /// parameters ?1, ?2, …; returns the number of rows changed.
  int change(const char* statement, Values values);
  /// The first column of the first row, `otherwise` if there is no row or it is null.
  std::int32_t look(const char* statement, Values values, std::int32_t otherwise);

  SQLite::Database& database_;
  std::map<const char*, SQLite::Statement> statements_;
};

}  // namespace ledgertree::engines::sqlite
