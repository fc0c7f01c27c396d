#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <filesystem>
#include <string>

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

/// All rows of a query: columns joined by "|", rows by "\n", NULL as "null".
[[nodiscard]] std::string allRows(SQLite::Database& database, const std::string& query);

/// A database file with the schema and no account, and a second program that has it open: what a story puts
/// in and looks up goes past the product. The second program waits for nothing on the disk.
class TemporaryDatabase {
 public:
  TemporaryDatabase();

  [[nodiscard]] std::filesystem::path file() const { return folder_.path() / "chart.db"; }
  [[nodiscard]] std::string connectionText() const;
  [[nodiscard]] SQLite::Database& other() { return other_; }

  /// Statements in SQLite's own dialect.
  void execute(const std::string& statements) { other_.exec(statements); }
  [[nodiscard]] std::int64_t number(const std::string& query) { return other_.execAndGet(query).getInt64(); }
  [[nodiscard]] std::string text(const std::string& query) { return other_.execAndGet(query).getString(); }
  [[nodiscard]] std::string rows(const std::string& query) { return allRows(other_, query); }

 private:
  TemporaryFolder folder_;
  SQLite::Database other_;
};

}  // namespace ledgertree::testing
