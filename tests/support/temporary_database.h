#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "support/server_chart.h"

namespace ledgertree::testing {

/// A temporary folder, in memory-backed storage if there is one, deleted with the object.
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

/// Expects an intact file without dangling references.
void expectSound(SQLite::Database& database);
/// All rows of a query, with column names.
[[nodiscard]] data::Rows readRows(SQLite::Database& database, const std::string& query);
/// The same as text: columns joined by "|", rows by "\n", NULL as "null".
[[nodiscard]] std::string allRows(SQLite::Database& database, const std::string& query);
/// The same for rows that the product read.
[[nodiscard]] std::string allRows(const data::Rows& rows);
/// One such value: NULL as "null", money as the number of ten-thousandths that a file stores.
[[nodiscard]] std::string cellText(const data::Value& value);

/// A database with the schema and no accounts, in a file or on the environment's server, and a second program
/// that has it open, whose reads and writes bypass the product.
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

  /// Runs statements in SQLite's own dialect.
  void execute(const std::string& statements);
  [[nodiscard]] std::int64_t number(const std::string& query);
  [[nodiscard]] std::string text(const std::string& query);
  [[nodiscard]] std::string rows(const std::string& query) { return allRows(read(query)); }
  /// The rows with the names of their columns.
  [[nodiscard]] data::Rows read(const std::string& query);
  /// An amount of ten-thousandths, formatted for a statement.
  [[nodiscard]] std::string amount(std::int64_t tenThousandths) const;
  /// Inserts rows `first` to `last`, whose values `row` returns, into "table (columns)".
  void insertMany(const std::string& into, int first, int last, const std::function<std::string(int)>& row);
  /// A text as this database returns it: on a server, in its code page.
  [[nodiscard]] static std::string letters(const std::string& text);
  void fillWithDemoChart();

 private:
  TemporaryFolder folder_;
  std::optional<SQLite::Database> file_;
  std::optional<ServerChart> server_;
};

}  // namespace ledgertree::testing
