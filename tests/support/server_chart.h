#pragma once

#include <string>

#include "data/connection.h"

namespace ledgertree::testing {

/// The SQL Server that LEDGERTREE_TEST_CONNECTION names for the stories; empty for the embedded engine.
[[nodiscard]] const std::string& testServer();

[[nodiscard]] inline bool onServer() { return !testServer().empty(); }

/// The provider of the database that the stories run on.
[[nodiscard]] std::string testProvider();

/// The chart on that server, emptied for a story, and a second program that has it open. One story at a time
/// works there. A database is taken whose name holds "test", or whose tables of the chart have no row; the
/// table tblLedgerTreeStories remembers it, and the scripts that its schema is of.
class ServerChart {
 public:
  /// Throws std::runtime_error for any other database: the tables lose their rows.
  ServerChart();
  ServerChart(const ServerChart&) = delete;
  ServerChart& operator=(const ServerChart&) = delete;
  ~ServerChart();

  /// Statements in SQLite's dialect, as far as stories need it; what they create goes with this object.
  void execute(const std::string& statements);
  /// All rows of a query in that dialect.
  [[nodiscard]] data::Rows query(const std::string& query);
  void fillWithDemoChart();
  [[nodiscard]] data::Connection& program() { return connection_; }
  /// Takes away all that the scripts of any version make.
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
