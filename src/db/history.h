#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"

namespace ledgertree::db {

/// A table of rows that belong to accounts; the memory of the chart keeps each row that comes or goes.
struct LinkTable {
  int link;  ///< its number in tblAccountLinkChange
  std::string_view name;
  std::vector<std::string_view> columns;  ///< at most four, AccountID first
  std::size_t keys;              ///< how many of the columns, from the first, are its key; 0: it has none
  std::string_view rowKey = {};  ///< of a table without one, what tells its rows apart on a server
};
[[nodiscard]] const std::vector<LinkTable>& linkTables();

/// The columns of tblAccount that the memory keeps, from data::kAccountFields. The bit of a column in
/// tblAccountChange.Fields is 1 shifted by its place here, for good, as fields are added behind the others.
struct RememberedColumn {
  std::string_view name;
  std::string_view type;  ///< as an embedded column is declared
  std::int64_t bit;
};
[[nodiscard]] const std::vector<RememberedColumn>& rememberedColumns();
/// The bits of all of them.
[[nodiscard]] std::int64_t allRemembered();

/// Whether a file keeps the changes of its chart.
[[nodiscard]] bool historyIsOn(SQLite::Database& database);

/// Switches the memory of a file on or off, within one transaction. What it holds stays when it is switched
/// off; on again, it knows all since then. Throws data::DataError(Connection) for a file that isn't a chart
/// of the present version, and SQLite::Exception.
void switchHistory(SQLite::Database& database, bool on);

/// Makes what is missing of a memory that is on, and its triggers anew, within a transaction of the caller.
void remakeHistory(SQLite::Database& database);

/// Throws data::DataError(Misuse) for a text that is no day, "yyyy-mm-dd".
void requireDay(const std::string& day);

/// Forgets what was changed ahead of a day, "yyyy-mm-dd", of UTC; the one way to shorten the memory. Gives
/// how many operations are gone. Throws data::DataError(Misuse) for another text, and for a file that never
/// kept anything.
int pruneHistory(SQLite::Database& database, const std::string& day);

/// The triggers of a memory that is on which aren't there, or are others than this program makes.
[[nodiscard]] std::vector<std::string> historyFaults(SQLite::Database& database);

// The same of a database of SQL Server, by a connection that takes any version. Each change is one
// transaction, for which whoever writes meanwhile waits. A session that is open when the memory is switched
// on is known by its user from its next opening on. They throw data::DataError: Connection for a database
// without a chart of the present version, and what the connection throws.

[[nodiscard]] bool historyIsOn(data::Connection& connection);
void switchHistory(data::Connection& connection, bool on);
void remakeHistory(data::Connection& connection);
int pruneHistory(data::Connection& connection, const std::string& day);
/// A trigger that is switched off is among them.
[[nodiscard]] std::vector<std::string> historyFaults(data::Connection& connection);

}  // namespace ledgertree::db
