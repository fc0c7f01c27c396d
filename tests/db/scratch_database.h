#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>

#include "db/schema.h"

namespace ledgertree::test {

/// A database file in memory-backed storage that goes with the object.
class ScratchFile {
 public:
  ScratchFile() {
    static std::atomic<int> count{0};
    const std::filesystem::path memory = "/dev/shm";
    const auto folder =
        std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
    path_ = folder / ("ledgertree-db-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".db");
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() {
    for (const char* end : {"", "-wal", "-shm", "-journal"}) std::filesystem::remove(path_.string() + end);
  }

  [[nodiscard]] std::string path() const { return path_.string(); }
  /// One more program that opens the file. References are checked or not, as each program has it.
  [[nodiscard]] SQLite::Database open(bool foreignKeys = true) const {
    SQLite::Database database(path(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 10000);
    database.exec("pragma journal_mode = wal; pragma synchronous = off");
    database.exec(foreignKeys ? "pragma foreign_keys = on" : "pragma foreign_keys = off");
    return database;
  }

 private:
  std::filesystem::path path_;
};

inline std::int64_t number(SQLite::Database& database, const std::string& query) {
  return database.execAndGet(query).getInt64();
}

inline std::string text(SQLite::Database& database, const std::string& query) {
  return database.execAndGet(query).getString();
}

}  // namespace ledgertree::test
