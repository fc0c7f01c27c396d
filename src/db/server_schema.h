#pragma once

#include <functional>
#include <string_view>

#include "data/connection.h"

namespace ledgertree::db {

/// Told of each script ("db/sqlserver/010_tables.sql") ahead of it.
using ScriptReport = std::function<void(std::string_view script)>;

/// Brings a database of SQL Server to the present schema; run again, it changes nothing but the views,
/// triggers and procedures of the chart, which it makes anew. Tables and what belongs to the host stay as
/// they are. Everything happens in one transaction: what fails leaves the database as it was, and whoever
/// works meanwhile waits.
///
/// Throws data::DataError that names the script and the line of the batch that failed.
void installServerSchema(data::Connection& connection, const ScriptReport& report);

/// Fills a database that has the schema and empty tables with the demo chart, in one transaction. Throws as
/// above, also where a table has rows.
void installServerDemo(data::Connection& connection, const ScriptReport& report);

}  // namespace ledgertree::db
