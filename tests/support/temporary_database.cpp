#include "support/temporary_database.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <variant>

#include "data/connection_text.h"
#include "db/schema.h"
#include "engines/odbc/code_page.h"

namespace ledgertree::testing {

TemporaryFolder::TemporaryFolder() {
  static std::atomic<int> count{0};
  const std::filesystem::path memory = "/dev/shm";
  path_ = (std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path()) /
          ("ledgertree-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
  // A killed process may have left a folder under this process's ID.
  std::filesystem::remove_all(path_);
  std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

TemporaryDatabase::TemporaryDatabase() {
  if (!testServer().empty()) {
    server_.emplace();
    return;
  }
  file_.emplace(file().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 10000);
  file_->exec("pragma journal_mode = wal; pragma synchronous = off; pragma foreign_keys = on");
  db::openSchema(*file_);
}

std::string TemporaryDatabase::connectionText() const {
  if (server_) return testServer();
  return "Provider=SQLite;Data Source=" + data::quoteConnectionValue(file().string());
}

void TemporaryDatabase::execute(const std::string& statements) {
  if (server_) return server_->execute(statements);
  file_->exec(statements);
}

std::int64_t TemporaryDatabase::number(const std::string& query) {
  return server_ ? server_->query(query).value(0, 0).toInt64() : file_->execAndGet(query).getInt64();
}

std::string TemporaryDatabase::text(const std::string& query) {
  return server_ ? server_->query(query).value(0, 0).toText() : file_->execAndGet(query).getString();
}

data::Rows TemporaryDatabase::read(const std::string& query) {
  return server_ ? server_->query(query) : readRows(*file_, query);
}

std::string TemporaryDatabase::amount(std::int64_t tenThousandths) const {
  return server_ ? data::Money::fromTenThousandths(tenThousandths).toText() : std::to_string(tenThousandths);
}

void TemporaryDatabase::insertMany(const std::string& into, int first, int last,
                                   const std::function<std::string(int)>& row) {
  constexpr int kAtOnce = 500;  // SQL Server takes no more than a thousand
  for (int next = first; next <= last;) {
    std::string statement;
    for (int count = 0; count < kAtOnce && next <= last; ++count, ++next)
      statement += (count == 0 ? "insert into " + into + " values (" : ", (") + row(next) + ")";
    execute(statement);
  }
}

std::string TemporaryDatabase::letters(const std::string& text) {
  return onServer() ? engines::odbc::foldText(text, engines::odbc::CodePage::Arabic) : text;
}

void TemporaryDatabase::fillWithDemoChart() {
  if (server_) return server_->fillWithDemoChart();
  db::createDemoChart(*file_);
}

data::Rows readRows(SQLite::Database& database, const std::string& query) {
  SQLite::Statement statement(database, query);
  data::Rows rows;
  for (int column = 0; column < statement.getColumnCount(); ++column)
    rows.addColumn(statement.getColumnName(column));
  while (statement.executeStep()) {
    for (int column = 0; column < statement.getColumnCount(); ++column)
      if (statement.isColumnNull(column))
        rows.addNull();
      else
        rows.addText(statement.getColumn(column).getString());
  }
  return rows;
}

void expectSound(SQLite::Database& database) {
  EXPECT_EQ(allRows(database, "pragma integrity_check"), "ok");
  EXPECT_EQ(allRows(database, "pragma foreign_key_check"), "");
}

std::string allRows(SQLite::Database& database, const std::string& query) {
  return allRows(readRows(database, query));
}

std::string allRows(const data::Rows& rows) {
  std::string text;
  for (std::size_t row = 0; row < rows.count(); ++row) {
    if (row > 0) text += '\n';
    for (std::size_t column = 0; column < rows.columns().size(); ++column) {
      if (column > 0) text += '|';
      text += cellText(rows.value(row, column));
    }
  }
  return text;
}

std::string cellText(const data::Value& value) {
  const auto* const amount = std::get_if<data::Money>(&value.variant());
  if (amount != nullptr) return std::to_string(amount->tenThousandths());
  return value.isNull() ? "null" : value.toText();
}

}  // namespace ledgertree::testing
