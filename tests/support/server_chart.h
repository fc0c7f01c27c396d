#pragma once

#include <string>

#include "data/connection.h"

namespace ledgertree::testing {

/// The connection text of the SQL Server that the stories are to run on, from LEDGERTREE_TEST_CONNECTION;
/// empty where they run on the embedded engine.
[[nodiscard]] const std::string& testServer();

[[nodiscard]] inline bool onServer() { return !testServer().empty(); }

/// The provider of the database that the stories run on.
[[nodiscard]] std::string testProvider();

/// The chart on that server, emptied for a story, and a second program that has it open. One story at a time
/// works there, whatever process it runs in.
///
/// A database is taken for the stories where its name holds "test", or where none of its tables of the chart
/// has a row; the table tblLedgerTreeStories remembers it. The schema is installed anew where the scripts are
/// others than the time before.
class ServerChart {
 public:
  /// Throws std::runtime_error for any other database: the tables lose their rows.
  ServerChart();
  ServerChart(const ServerChart&) = delete;
  ServerChart& operator=(const ServerChart&) = delete;
  ~ServerChart();

  /// Statements in the dialect of SQLite as far as stories need it, parted by semicolons. The tables and
  /// views that they make go with this object.
  void execute(const std::string& statements);
  /// All rows of a query in that dialect.
  [[nodiscard]] data::Rows query(const std::string& query);
  void fillWithDemoChart();

 private:
  void takeDatabase();
  void installSchema();
  void dropWhatStoriesMade();
  void empty();

  int lock_ = -1;
  data::Connection& connection_;
};

}  // namespace ledgertree::testing
