#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <functional>
#include <string>
#include <vector>

namespace ledgertree::db {

/// Brings an opened database file to the present schema: creates it in an empty file, takes up that of an
/// older version, leaves a present one alone (two PRAGMAs, no write). All of it or nothing happens, also
/// where the process is killed. Safe when several programs do so at once.
///
/// Taking up a large file takes its time: `onTakeUp` is called ahead of it, when nothing is waited for any
/// more. Gives what there is to tell a person about the rows of a file that was taken up, mostly nothing.
///
/// Throws data::DataError(Connection) for a newer schema or for a database that belongs to another program,
/// SQLite::Exception where the engine fails.
std::vector<std::string> openSchema(SQLite::Database& database, const std::function<void()>& onTakeUp = {});

/// Fills a database that has the schema and no account with the demo chart. Atomic.
void createDemoChart(SQLite::Database& database);

}  // namespace ledgertree::db
