#pragma once

#include <sqlite3.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/value_types.h"

namespace ledgertree::engines::sqlite {

/// What SQLite's schema tells about the tables and views of a database. A table's columns come from the
/// schema that the connection holds and prepares statements with. A view's columns and a table's indexes take
/// a query: they are read on first use, and kept until renew() detects a schema change. Every operation
/// throws data::DataError if the file can't be read.
class Tables final : public tsql::Columns {
 public:
  explicit Tables(sqlite3* database) : database_(database) {}

  /// By the declared type, which a view inherits from its tables. Unknown if none is declared, as for a
  /// view's computed column, or if the type isn't conclusive.
  [[nodiscard]] std::optional<tsql::ValueType> typeOf(std::string_view table,
                                                      std::string_view column) override;
  /// Whether no two rows of a table agree in all of these columns. Never for a view.
  [[nodiscard]] bool isKey(std::string_view table, const std::vector<std::string_view>& columns);
  /// Whether an index finds the rows with a given value in a column, where each of the columns `fixed` has a
  /// given value too. Never for a view.
  [[nodiscard]] bool isLookUp(std::string_view table, std::string_view column,
                              const std::vector<std::string_view>& fixed);

  /// Forgets what it has read if the schema has changed since the last call; true then. The file stays
  /// locked for reading until letGo(), so that what is made by this schema also begins with it, under one
  /// lock.
  bool renew();
  void letGo() { sqlite3_reset(probe_.get()); }

 private:
  struct Column {
    std::string name;
    tsql::ValueType type;
  };
  struct Index {
    std::vector<std::string> columns;  ///< up to the first expression
    bool isUnique = false;             ///< over all rows; nulls don't count
  };
  template <typename Thing>
  using ByName = std::map<std::string, std::vector<Thing>>;  ///< by lower-case name
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Query = std::unique_ptr<sqlite3_stmt, Finalize>;

  bool isTable(const std::string& name);
  template <typename Thing>
  const std::vector<Thing>& kept(ByName<Thing>& things, std::string_view name,
                                 std::vector<Thing> (Tables::*read)(const std::string& name));
  std::vector<Column> readColumns(const std::string& view);
  std::vector<Index> readIndexes(const std::string& table);
  Query ask(const char* pragma, const std::string& name);
  Query prepare(const char* sql);
  bool step(const Query& query);

  sqlite3* database_;
  ByName<Column> views_;
  ByName<Index> indexes_;
  Query probe_;
};

}  // namespace ledgertree::engines::sqlite
