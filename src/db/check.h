#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstddef>
#include <functional>
#include <string_view>

#include "data/connection.h"

namespace ledgertree::db {

/// Told each kind of fault in a line: what is wrong, how often, and the first accounts by ID and code.
using Findings = std::function<void(std::string_view line)>;

/// Looks whether a chart is true: parents, levels and ancestors; codes that two accounts have or that are too
/// long; rows that point at nothing, objects in the views of their classes among them; the triggers that keep
/// all this. It only reads, and its answer is of one moment where the database has one to give: that of a
/// file, and on a server with read_committed_snapshot of each question.
///
/// Gives the number of kinds of faults; 0: all is true. Throws data::DataError where a question can't be
/// asked, as of a database without the chart.
[[nodiscard]] std::size_t checkChart(data::Connection& connection, const Findings& told);

/// The same of an open file. Throws data::DataError(Connection) for one that isn't a chart of this or an
/// older version too.
[[nodiscard]] std::size_t checkChart(SQLite::Database& database, const Findings& told);

}  // namespace ledgertree::db
