#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <functional>
#include <string>
#include <vector>

namespace ledgertree::db {

/// Which trees are repaired in files of the present version. Nothing: for a file checked recently.
enum class Mend { Nothing, WhatLooksWrong, Everything };

/// Brings an open database file to the present schema: creates it in an empty file, upgrades an older
/// version, leaves a present one alone if its tree looks right (a few reads, no write). All or nothing
/// happens, even if the process is killed. Safe when several programs do so at once.
///
/// A file whose tree looks wrong, because triggers are missing or the newest account bypassed them, is
/// upgraded too, and so is any file with Mend::Everything. An upgrade repairs the tree (see tree.h).
///
/// Upgrading a large file takes time: `onTakeUp` is called before it, when there is nothing left to wait for.
/// Returns what to tell the user about the rows of an upgraded file, usually nothing.
///
/// Throws data::DataError(Connection) for a newer schema, for another program's database and for accounts
/// that are their own descendants; SQLite::Exception if the engine fails.
std::vector<std::string> openSchema(SQLite::Database& database, const std::function<void()>& onTakeUp = {},
                                    Mend mend = Mend::WhatLooksWrong);

/// Throws data::DataError(Connection) for a file that isn't a chart of this or an older version.
void requireChart(SQLite::Database& database);
/// Throws data::DataError(Connection) for a file that isn't a chart of this version.
void requirePresentChart(SQLite::Database& database);

/// Opens an existing file, read-only or for writing, as untrusted: its contents may only call what SQLite
/// considers harmless. Throws SQLite::Exception.
[[nodiscard]] SQLite::Database openChartFile(const std::string& path, bool forWriting);

/// Adds the demo chart to a database that has the schema but no accounts. Atomic.
void createDemoChart(SQLite::Database& database);

}  // namespace ledgertree::db
