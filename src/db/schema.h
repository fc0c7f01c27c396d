#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

namespace ledgertree::db {

/// The version of the embedded schema, kept in PRAGMA user_version.
inline constexpr int kSchemaVersion = 1;

/// Brings an opened database file to the present schema: creates it in an empty file, leaves a present one
/// alone (two PRAGMAs, no write). Safe when several programs do so at once. Throws
/// data::DataError(Connection) for a newer schema or for a database that belongs to another program,
/// SQLite::Exception where the engine fails.
void openSchema(SQLite::Database& database);

/// Fills a database that has the schema and no account with the demo chart. Atomic.
void createDemoChart(SQLite::Database& database);

}  // namespace ledgertree::db
