#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "data/connection.h"

namespace ledgertree::testing {

/// The connection text of the SQL Server that the stories are to run on, from LEDGERTREE_TEST_CONNECTION;
/// empty where they run on the embedded engine.
[[nodiscard]] const std::string& testServer();

/// The provider of the database that the stories run on.
[[nodiscard]] std::string testProvider();

/// The chart on that server, emptied for a story, and a second program that has it open. One story at a time
/// works there, whatever process it runs in.
class ServerChart {
 public:
  /// Throws std::runtime_error for a database whose name doesn't hold "test": the tables lose their rows.
  ServerChart();
  ServerChart(const ServerChart&) = delete;
  ServerChart& operator=(const ServerChart&) = delete;
  ~ServerChart();

  /// Statements in the dialect of SQLite as far as stories need it, parted by semicolons.
  void execute(const std::string& statements);
  /// All rows of a query in that dialect.
  [[nodiscard]] data::Rows query(const std::string& query);
  void fillWithDemoChart();

 private:
  void empty();

  int lock_ = -1;
  data::Providers providers_;
  std::unique_ptr<data::Connection> connection_;
};

}  // namespace ledgertree::testing
