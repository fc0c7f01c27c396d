#include "db/schema.h"

#include <string>
#include <string_view>
#include <vector>

#include "data/data_error.h"
#include "db/scripts.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

/// Marks a file as ours in PRAGMA application_id: "LdgT".
constexpr int kApplicationId = 0x4C646754;

int pragma(SQLite::Database& database, const char* name) {
  return database.execAndGet(std::string("pragma ") + name).getInt();
}

bool isPresent(SQLite::Database& database) {
  return pragma(database, "user_version") == kSchemaVersion &&
         pragma(database, "application_id") == kApplicationId;
}

[[noreturn]] void refuse(const char* message) {
  throw data::DataError(data::DataError::Reason::Connection, 0, message);
}

void runScripts(SQLite::Database& database, const std::vector<std::string_view>& paths) {
  for (const std::string_view path : paths) database.exec(std::string(embeddedText(path)));
}

/// Refuses what is not an empty file: anything else that has no present schema was made by another program,
/// or by a later version of this one.
void requireEmpty(SQLite::Database& database) {
  const bool ours = pragma(database, "application_id") == kApplicationId;
  if (ours && pragma(database, "user_version") > kSchemaVersion) {
    refuse("اين پايگاه داده با نسخه جديدتري از برنامه ساخته شده است. برنامه را به روز نماييد.");
  }
  const bool blank = pragma(database, "application_id") == 0 && pragma(database, "user_version") == 0 &&
                     database.execAndGet("select count(*) from sqlite_schema").getInt() == 0;
  if (!blank) {
    refuse("اين فايل پايگاه داده برنامه ديگري است و حسابها در آن نگهداري نميشود. فايل ديگري انتخاب نماييد.");
  }
}

}  // namespace

void openSchema(SQLite::Database& database) {
  if (isPresent(database)) return;
  // Another program may be creating the schema at this moment; who comes second finds it done.
  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
  if (isPresent(database)) return;
  requireEmpty(database);
  runScripts(database, scriptsIn("db/embedded/"));
  database.exec("pragma application_id = " + std::to_string(kApplicationId));
  database.exec("pragma user_version = " + std::to_string(kSchemaVersion));
  transaction.commit();
}

void createDemoChart(SQLite::Database& database) {
  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
  if (database.execAndGet("select exists (select 1 from tblAccount)").getInt() != 0) {
    throw data::DataError(data::DataError::Reason::Misuse, 0,
                          "The demo chart needs a database without accounts.");
  }
  runScripts(database, demoScripts("db/demo/embedded/"));
  transaction.commit();
}

}  // namespace ledgertree::db
