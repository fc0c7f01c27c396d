#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "data/operation.h"
#include "data/rows.h"

namespace ledgertree::db {
struct LinkTable;
}

namespace ledgertree::engines::sqlite {

/// Undoes an operation by the memory of the file, within a transaction of the caller, who undoes all where
/// something stood in the way. Change by change from the last to the first, each only where its row is still
/// as the change left it; the rows that belong to accounts by what came of them in the end.
class TakeBack {
 public:
  TakeBack(SQLite::Database& database, std::int64_t operation) : database_(database), operation_(operation) {}

  /// What stands in the way, a row each (see data::Connection::takeBack), no more than kMostTold. Throws
  /// SQLite::Exception.
  [[nodiscard]] data::Rows run();

  static constexpr std::size_t kMostTold = 100;

 private:
  struct Change {
    std::int64_t number;
    int event;
    std::int64_t account;
    std::int64_t fields;
    std::optional<std::int64_t> oldParent;
  };
  struct Link {
    const db::LinkTable* table;
    std::int64_t change;  ///< one of those in which it came or went
    std::int64_t account;
    std::int64_t times;  ///< how often it came, less how often it went
  };

  [[nodiscard]] bool isWhole();
  void readLinks();
  void undoLinks(bool came);
  void undo(const Change& change);
  void undoInsert(const Change& change);
  void undoUpdate(const Change& change);
  void undoDeletion(const Change& change);
  /// Runs the statement that undoes a change, and gives whether there was its row; what refuses it, a rule of
  /// the file or the key of a table, stands in the way as told.
  [[nodiscard]] bool ran(const std::string& sql, const Change& change,
                         data::Obstacle refused = data::Obstacle::Rule);
  void findCodesTaken();
  void findDocumentsOfParents();
  [[nodiscard]] bool exists(const std::string& query, std::int64_t value);
  void stands(data::Obstacle why, std::optional<std::int64_t> account);
  [[nodiscard]] std::optional<std::int64_t> lastChangeOf(std::int64_t account);
  SQLite::Statement& prepared(const std::string& sql);

  SQLite::Database& database_;
  std::int64_t operation_;
  std::vector<Link> links_;
  std::map<std::string, SQLite::Statement> statements_;
  std::set<std::pair<std::int64_t, data::Obstacle>> told_;
  data::Rows obstacles_;
};

}  // namespace ledgertree::engines::sqlite
