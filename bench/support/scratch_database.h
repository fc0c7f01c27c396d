#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "db/schema.h"

namespace ledgertree::bench {

/// A benchmark's database file, with just the schema. Deleted with the object.
class ScratchDatabase {
 public:
  /// Disk: syncs have their real cost; LEDGERTREE_BENCH_DISK names a folder other than /var/tmp.
  enum class Storage { Memory, Disk };

  explicit ScratchDatabase(const std::string& name, Storage storage = Storage::Memory)
      : file_(folder(storage) / ("ledgertree-bench-" + name + ".db")) {
    remove();
    auto database = open();
    db::openSchema(database);
  }
  ScratchDatabase(const ScratchDatabase&) = delete;
  ScratchDatabase& operator=(const ScratchDatabase&) = delete;
  ~ScratchDatabase() { remove(); }

  /// A bare-library connection.
  [[nodiscard]] SQLite::Database open() const {
    return SQLite::Database(file_, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX);
  }
  [[nodiscard]] std::string file() const { return file_.string(); }
  [[nodiscard]] std::string connectionText() const { return "Provider=SQLite;Data Source=" + file(); }

 private:
  static std::filesystem::path folder(Storage storage) {
    const char* const disk = std::getenv("LEDGERTREE_BENCH_DISK");
    if (storage == Storage::Disk) return disk != nullptr ? disk : "/var/tmp";
    return std::filesystem::is_directory("/dev/shm") ? std::filesystem::path("/dev/shm")
                                                     : std::filesystem::temp_directory_path();
  }
  void remove() const {
    for (const char* end : {"", "-wal", "-shm"}) std::filesystem::remove(file() + end);
  }

  std::filesystem::path file_;
};

}  // namespace ledgertree::bench
