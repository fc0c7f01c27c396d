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

/// What SQLite's own schema says of the tables and views of a database. A table's columns are asked of the
/// schema that the connection holds and prepares statements by. The columns of a view and the indexes of a
/// table take a statement: they are read at the first question about them, and kept until renew() finds
/// another schema. Every question throws data::DataError where the file can't be read.
class Tables final : public tsql::Columns {
 public:
  explicit Tables(sqlite3* database) : database_(database) {}

  /// By the declared type, which a view takes over from its tables. Unknown where none is declared, as of a
  /// view's column that is reckoned, or where the type says neither.
  [[nodiscard]] std::optional<tsql::ValueType> typeOf(std::string_view table,
                                                      std::string_view column) override;
  /// Whether no two rows of a table have the same values in all of some columns. Never of a view.
  [[nodiscard]] bool isKey(std::string_view table, const std::vector<std::string_view>& columns);
  /// Whether an index finds the rows of one value in a column, where each of the columns `fixed` has one
  /// value too. Never of a view.
  [[nodiscard]] bool isLookUp(std::string_view table, std::string_view column,
                              const std::vector<std::string_view>& fixed);

  /// Forgets what it has read where the schema has changed since it was last called; true then. The file
  /// stays locked for reading until letGo(), so that what is made by this schema also begins by it, under one
  /// lock.
  bool renew();
  void letGo() { sqlite3_reset(probe_.get()); }

 private:
  struct Column {
    std::string name;
    tsql::ValueType type;
  };
  struct Index {
    std::vector<std::string> columns;  ///< none for an expression and what is behind it
    bool isUnique = false;             ///< over all rows; null is no value
  };
  template <typename Thing>
  using ByName = std::map<std::string, std::vector<Thing>>;  ///< by names in small letters
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
