#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "support/server_chart.h"

namespace ledgertree::testing {

/// A folder of its own, in memory-backed storage where there is one, that goes with the object.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// The file is whole, and no row refers to one that isn't there.
void expectSound(SQLite::Database& database);
/// All rows of a query, with the names of their columns.
[[nodiscard]] data::Rows readRows(SQLite::Database& database, const std::string& query);
/// The same as text: columns joined by "|", rows by "\n", NULL as "null".
[[nodiscard]] std::string allRows(SQLite::Database& database, const std::string& query);
/// The same of rows that the product read.
[[nodiscard]] std::string allRows(const data::Rows& rows);
/// One value of them: NULL as "null", money as the number of ten-thousandths that a file holds.
[[nodiscard]] std::string cellText(const data::Value& value);

/// A database with the schema and no account, a file or the server of the environment, and a second program
/// that has it open: what a story puts in and looks up goes past the product.
class TemporaryDatabase {
 public:
  TemporaryDatabase();

  [[nodiscard]] std::filesystem::path file() const { return folder_.path() / "chart.db"; }
  [[nodiscard]] std::string connectionText() const;
  /// The file itself; throws std::bad_optional_access on the server.
  [[nodiscard]] SQLite::Database& other() { return file_.value(); }
  /// What a tool of the DBA has open: the file, or the server.
  template <typename Work>
  auto asDba(const Work& work) {
    return server_ ? work(server_->program()) : work(file_.value());
  }

  /// Statements in SQLite's own dialect.
  void execute(const std::string& statements);
  [[nodiscard]] std::int64_t number(const std::string& query);
  [[nodiscard]] std::string text(const std::string& query);
  [[nodiscard]] std::string rows(const std::string& query) { return allRows(read(query)); }
  /// The rows with the names of their columns.
  [[nodiscard]] data::Rows read(const std::string& query);
  /// An amount of ten-thousandths as it stands in a statement.
  [[nodiscard]] std::string amount(std::int64_t tenThousandths) const;
  /// Rows `first` to `last`, whose values `row` gives, into "table (columns)".
  void insertMany(const std::string& into, int first, int last, const std::function<std::string(int)>& row);
  /// A text as this database gives it back: on the server in the letters of its code page.
  [[nodiscard]] static std::string letters(const std::string& text);
  void fillWithDemoChart();

 private:
  TemporaryFolder folder_;
  std::optional<SQLite::Database> file_;
  std::optional<ServerChart> server_;
};

}  // namespace ledgertree::testing
