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

/// Undoes an operation by the file's memory of its changes, within the caller's transaction, which the caller
/// rolls back if there are obstacles. Changes are undone one by one from the last to the first, each only if
/// its row is still as the change left it; an account's link rows by their net result.
class TakeBack {
 public:
  TakeBack(SQLite::Database& database, std::int64_t operation) : database_(database), operation_(operation) {}

  /// The obstacles, one row each (see data::Connection::takeBack),
  /// no more than kMostTold. Throws SQLite::Exception.
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
    std::int64_t change;  ///< one of the changes that added or removed it
    std::int64_t account;
    std::int64_t times;  ///< additions minus removals
  };

  [[nodiscard]] bool isWhole();
  void readLinks();
  void undoLinks(bool came);
  void undo(const Change& change);
  void undoInsert(const Change& change);
  void undoUpdate(const Change& change);
  void undoDeletion(const Change& change);
  /// Runs the statement that undoes a change, and returns whether its row existed; if a rule of the file or a
  /// key refuses, that is recorded as an obstacle.
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
