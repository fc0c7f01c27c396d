#pragma once

#include <string>
#include <vector>

#include "data/rows.h"
#include "engines/odbc/execution.h"

namespace ledgertree::engines::odbc {

/// The columns and rows of a command's current result set. Failures here count as failures of the command.
class ResultSet {
 public:
  explicit ResultSet(Execution& execution);

  [[nodiscard]] std::size_t columns() const { return columns_.size(); }
  /// Whether the column holds text in the code page, not in Unicode.
  [[nodiscard]] bool isNarrowText(std::size_t column) const;
  [[nodiscard]] data::Rows emptyRows() const;
  /// Moves to the next row. Returns false after the last one, and on failure.
  [[nodiscard]] bool next();
  /// Appends the cells of the row. Returns false if reading one of them failed.
  [[nodiscard]] bool addCells(data::Rows& rows);
  /// Appends the remaining rows.
  void addRows(data::Rows& rows);

 private:
  enum class Kind { Integer, Decimal, Double, DateTime, Text };
  struct Column {
    std::string name;
    SQLSMALLINT type = 0;
    Kind kind = Kind::Text;
  };

  static Kind kindOf(SQLSMALLINT type);
  bool addCell(data::Rows& rows, SQLUSMALLINT place, Kind kind);
  bool addDecimal(data::Rows& rows, SQLUSMALLINT place);
  bool addText(data::Rows& rows, SQLUSMALLINT place);

  Execution& execution_;
  std::vector<Column> columns_;
  std::u16string wide_;
  std::string text_;
};

}  // namespace ledgertree::engines::odbc
