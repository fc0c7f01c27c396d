#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "db/version.h"

namespace ledgertree::db {

/// Told what is done, line by line: each script ("db/sqlserver/010_tables.sql") ahead of it, what was found
/// of rows that stay as they are, and what a script says of those that it changed.
using Report = std::function<void(std::string_view line)>;

/// The scripts to leave out, by name ("031_tree_index.sql").
using LeftOut = std::vector<std::string>;

/// What an installation does with a database.
struct ServerPlan {
  int version = 0;  ///< of the database as it is; 0: there is no chart
  std::vector<Step> steps;
  std::vector<std::string_view> scripts;  ///< they run behind the steps
};

/// Reads how far the database is. Throws data::DataError for a newer one, and for a script to leave out that
/// there isn't.
[[nodiscard]] ServerPlan planServerSchema(data::Connection& connection, const LeftOut& leftOut = {});

/// Asks what there is to tell ahead of a step, without a change.
void reportStep(data::Connection& connection, const Step& step, const Report& report);

/// Does some work in a transaction of its own, one such work at a time, and gives its failure on.
void inSchemaTransaction(data::Connection& connection, const std::function<void()>& work);

/// Brings a database of SQL Server to the present schema: takes up an older one step by step, and runs the
/// scripts, which make what is missing, and the views, triggers and procedures of the chart anew. Tables and
/// what belongs to the host stay as they are but for the steps. Ancestors and levels that aren't what the
/// parents say are made so; accounts that are below themselves are refused, with their IDs (number 51009).
/// The triggers of a memory that is on are made anew too (see history.h). Everything happens in one
/// transaction: what fails leaves the database as it was, and whoever works
/// meanwhile waits.
///
/// Throws data::DataError that names the script and the line of the batch that failed.
void installServerSchema(data::Connection& connection, const Report& report, const LeftOut& leftOut = {});

/// Fills a database that has the schema and empty tables with the demo chart, in one transaction. Throws as
/// above, also where a table has rows.
void installServerDemo(data::Connection& connection, const Report& report);

}  // namespace ledgertree::db
