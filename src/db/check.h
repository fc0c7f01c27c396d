#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstddef>
#include <functional>
#include <string_view>

#include "data/connection.h"

namespace ledgertree::db {

/// Called with one line per kind of fault: what is wrong, how often, and the first accounts by ID and code.
using Findings = std::function<void(std::string_view line)>;

/// Checks a chart's integrity: parents, levels and ancestors; codes that are duplicate or too long; dangling
/// references, including those to objects in the views of their classes; the triggers that maintain all this.
/// It only reads, and sees one consistent state if the database offers one: in a file always, on a server
/// with read_committed_snapshot per query.
///
/// Returns the number of kinds of faults; 0: none. Throws data::DataError if a
/// query fails, as on a database without the chart.
[[nodiscard]] std::size_t checkChart(data::Connection& connection, const Findings& told);

/// The same for an open file. Throws data::DataError(Connection) also for
/// one that isn't a chart of this or an older version.
[[nodiscard]] std::size_t checkChart(SQLite::Database& database, const Findings& told);

}  // namespace ledgertree::db
