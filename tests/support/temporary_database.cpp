#include "support/temporary_database.h"

#include <unistd.h>

#include <atomic>

#include "data/connection_text.h"
#include "db/schema.h"

namespace ledgertree::testing {

TemporaryFolder::TemporaryFolder() {
  static std::atomic<int> count{0};
  const std::filesystem::path memory = "/dev/shm";
  path_ = (std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path()) /
          ("ledgertree-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
  // A process that was killed may have left a folder under the number that this one got.
  std::filesystem::remove_all(path_);
  std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

TemporaryDatabase::TemporaryDatabase()
    : other_(file().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 10000) {
  other_.exec("pragma journal_mode = wal; pragma synchronous = off; pragma foreign_keys = on");
  db::openSchema(other_);
}

std::string TemporaryDatabase::connectionText() const {
  return "Provider=SQLite;Data Source=" + data::quoteConnectionValue(file().string());
}

std::string allRows(SQLite::Database& database, const std::string& query) {
  SQLite::Statement statement(database, query);
  std::string text;
  while (statement.executeStep()) {
    if (!text.empty()) text += '\n';
    for (int column = 0; column < statement.getColumnCount(); ++column) {
      if (column > 0) text += '|';
      text += statement.isColumnNull(column) ? "null" : statement.getColumn(column).getString();
    }
  }
  return text;
}

}  // namespace ledgertree::testing
