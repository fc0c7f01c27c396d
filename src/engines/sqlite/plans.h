#pragma once

#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/rows.h"
#include "engines/sqlite/dialect.h"
#include "engines/sqlite/tables.h"
#include "tsql/statement_shape.h"

namespace ledgertree::engines::sqlite {

/// A statement prepared by SQLite. Per-row work uses SQLite's own
/// interface: the wrapper counts references for every cell.
class Plan {
 public:
  /// Throws data::DataError if SQLite refuses the translation. `statement` is quoted in errors.
  Plan(sqlite3* database, const Translation& translation, std::string_view statement);

  /// Whether a run is in progress.
  [[nodiscard]] bool inUse() const { return inUse_; }
  [[nodiscard]] bool writes() const { return sqlite3_stmt_readonly(statement_.get()) == 0; }

  /// One run of a plan; destroying it ends its rows.
  class Run {
   public:
    Run(std::shared_ptr<Plan> plan, const std::vector<tsql::Literal>& literals);
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run();

    /// Whether SQLite has prepared the statement again since the previous run, as it does at the first step
    /// after a schema change. Stays set until emptyRows or takePreparedAnew reads it.
    [[nodiscard]] bool isPreparedAnew() const {
      return plan_->preparations() != std::max(plan_->preparations_, 0);
    }
    void takePreparedAnew() { static_cast<void>(emptyRows()); }
    /// Advances to the next row; SQLITE_ROW, SQLITE_DONE or an error code.
    [[nodiscard]] int step() { return sqlite3_step(plan_->statement_.get()); }
    /// Empty rows with the columns of the statement. Valid after the first step.
    [[nodiscard]] data::Rows emptyRows();
    /// Adds the cells of the current row.
    void addCells(data::Rows& rows) const;

   private:
    std::shared_ptr<Plan> plan_;
  };

 private:
  enum class Type : std::uint8_t { Stored, Money, DateTime };

  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  /// How often SQLite has re-prepared it.
  [[nodiscard]] int preparations() const {
    return sqlite3_stmt_status(statement_.get(), SQLITE_STMTSTATUS_REPREPARE, 0);
  }
  void bind(const std::vector<tsql::Literal>& literals);
  void readColumns();
  void addCell(data::Rows& rows, int column) const;
  void addDeclared(data::Rows& rows, int column, Type type) const;

  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
  std::vector<Binding> bindings_;
  std::vector<Type> types_;
  data::Rows columns_;
  int preparations_ = -1;  ///< the count when the columns were read
  bool inUse_ = false;
};

/// A connection's prepared statements: the same statement with other literals finds its plan with one pass
/// over the text and one table look-up. The least recently used shapes are dropped.
class Plans {
 public:
  static constexpr std::size_t kMostShapes = 128;
  static constexpr std::size_t kMostVariants = 8;

  explicit Plans(sqlite3* database);
  Plans(const Plans&) = delete;
  Plans& operator=(const Plans&) = delete;

  /// An unused plan for the statement; literals() are its
  /// literals until the next call. Throws data::DataError.
  [[nodiscard]] std::shared_ptr<Plan> find(std::string_view statement);
  [[nodiscard]] const std::vector<tsql::Literal>& literals() const { return shape_.literals(); }
  /// Makes the first step of a run. If SQLite has just re-prepared the plan, its writes are undone and the
  /// step fails: its types may be those of another schema.
  [[nodiscard]] int firstStep(Plan::Run& run);
  /// Drops all plans if the schema has changed since they were made: columns may have other types, and tables
  /// other keys. Returns whether it did.
  bool renew();
  /// Call after find() and renew(), once the plan has begun:
  /// until then they may hold a read lock on the file.
  void letGo() { tables_.letGo(); }
  [[nodiscard]] Tables& tables() { return tables_; }

  /// The number of cached shapes.
  [[nodiscard]] std::size_t size() const { return shapes_.size(); }

 private:
  struct Variant {
    std::string outcome;
    std::shared_ptr<Plan> plan;
  };
  struct Shape {
    std::string key;
    std::vector<tsql::Decision> decisions;
    std::vector<Variant> variants;
  };

  Shape* known();
  std::shared_ptr<Plan> prepare(std::string_view statement, Shape* shape);
  Shape& remember(const Translation& translation);

  sqlite3* database_;
  Tables tables_;
  tsql::StatementShape shape_;
  std::string outcome_;
  const Plan::Run* first_ = nullptr;  ///< the run at its first step
  std::list<Shape> shapes_;           ///< most recently used first
  std::unordered_map<std::string_view, std::list<Shape>::iterator> byKey_;
};

}  // namespace ledgertree::engines::sqlite
