#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "db/version.h"

namespace ledgertree::db {

/// Called line by line with what is done: each script ("db/sqlserver/010_tables.sql") before it runs, what
/// was found about rows that stay as they are, and what a script says about those that it changed.
using Report = std::function<void(std::string_view line)>;

/// The scripts to skip, by name ("031_tree_index.sql").
using LeftOut = std::vector<std::string>;

/// What an installation will do to a database.
struct ServerPlan {
  int version = 0;  ///< the database's current version; 0: no chart
  std::vector<Step> steps;
  std::vector<std::string_view> scripts;  ///< run after the steps
};

/// Reads the database's version. Throws data::DataError for a
/// newer one, and for an unknown script in `leftOut`.
[[nodiscard]] ServerPlan planServerSchema(data::Connection& connection, const LeftOut& leftOut = {});

/// Reports what there is to tell before a step, without changing anything.
void reportStep(data::Connection& connection, const Step& step, const Report& report);

/// Runs `work` in a transaction of its own, one such work at a time, and rethrows its failure.
void inSchemaTransaction(data::Connection& connection, const std::function<void()>& work);

/// Brings a SQL Server database to the present schema: upgrades an older one step by step, and runs the
/// scripts, which create what is missing and recreate the chart's views, triggers and procedures. Tables
/// and the host's objects change only by the steps. Ancestors and levels that contradict the parents are
/// corrected; accounts that are their own descendants are refused, with their IDs (number 51009). The
/// triggers of a history that is on are recreated too (see history.h). Everything happens in one
/// transaction: a failure leaves the database as it was, and other users wait meanwhile.
///
/// Throws data::DataError naming the script and the line of the failed batch.
void installServerSchema(data::Connection& connection, const Report& report, const LeftOut& leftOut = {});

/// Adds the demo chart to a database that has the schema and empty tables, in one transaction. Throws as
/// above, also if a table has rows.
void installServerDemo(data::Connection& connection, const Report& report);

}  // namespace ledgertree::db
