#pragma once

#include <string>

#include "data/connection.h"

namespace ledgertree::testing {

/// The SQL Server named by LEDGERTREE_TEST_CONNECTION for the stories; empty for the embedded engine.
[[nodiscard]] const std::string& testServer();

[[nodiscard]] inline bool onServer() { return !testServer().empty(); }

/// The provider of the database that the stories run on.
[[nodiscard]] std::string testProvider();

/// The chart on that server, emptied for a story, and a second program that has it open. One story at a time
/// works there. A database is accepted if its name contains "test", or if the chart's tables are empty; the
/// table tblLedgerTreeStories records that, and which scripts its schema comes from.
class ServerChart {
 public:
  /// Throws std::runtime_error for any other database, since the tables are emptied.
  ServerChart();
  ServerChart(const ServerChart&) = delete;
  ServerChart& operator=(const ServerChart&) = delete;
  ~ServerChart();

  /// Runs statements in SQLite's dialect, as far as stories need it; drops their objects at the end.
  void execute(const std::string& statements);
  /// All rows of a query in that dialect.
  [[nodiscard]] data::Rows query(const std::string& query);
  void fillWithDemoChart();
  [[nodiscard]] data::Connection& program() { return connection_; }
  /// Drops everything that the scripts of any version create.
  static void dropSchema(data::Connection& connection);

 private:
  void takeDatabase();
  void installSchema();
  void dropWhatStoriesMade();
  void forgetHistory();
  void empty();

  int lock_ = -1;
  data::Connection& connection_;
};

}  // namespace ledgertree::testing
