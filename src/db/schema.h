#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <functional>
#include <string>
#include <vector>

namespace ledgertree::db {

/// Which trees of files of the present version are mended. Nothing: of a file that was looked at lately.
enum class Mend { Nothing, WhatLooksWrong, Everything };

/// Brings an opened database file to the present schema: creates it in an empty file, takes up that of an
/// older version, leaves a present one alone whose tree looks true (a few reads, no write). All of it or
/// nothing happens, also where the process is killed. Safe when several programs do so at once.
///
/// A file whose tree doesn't look true, since triggers are gone or the newest account was written past them,
/// is taken up too, and so is any with Mend::Everything. What is taken up has its tree mended (see tree.h).
///
/// Taking up a large file takes its time: `onTakeUp` is called ahead of it, when nothing is waited for any
/// more. Gives what there is to tell a person about the rows of a file that was taken up, mostly nothing.
///
/// Throws data::DataError(Connection) for a newer schema, for a database that belongs to another program and
/// for accounts that are below themselves; SQLite::Exception where the engine fails.
std::vector<std::string> openSchema(SQLite::Database& database, const std::function<void()>& onTakeUp = {},
                                    Mend mend = Mend::WhatLooksWrong);

/// Throws data::DataError(Connection) for a file that isn't a chart of this or an older version.
void requireChart(SQLite::Database& database);
/// Throws data::DataError(Connection) for a file that isn't a chart of this version.
void requirePresentChart(SQLite::Database& database);

/// Opens a file that stands there, for reading alone or for writing too, as one that nobody vouches for: what
/// it holds calls no more than what SQLite holds for harmless. Throws SQLite::Exception.
[[nodiscard]] SQLite::Database openChartFile(const std::string& path, bool forWriting);

/// Fills a database that has the schema and no account with the demo chart. Atomic.
void createDemoChart(SQLite::Database& database);

}  // namespace ledgertree::db
