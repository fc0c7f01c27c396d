#pragma once

#include <string>
#include <vector>

#include "data/rows.h"
#include "engines/odbc/execution.h"

namespace ledgertree::engines::odbc {

/// The columns of the result set that a command stands on, and its rows. What fails here is noted as a
/// failure of the command.
class ResultSet {
 public:
  explicit ResultSet(Execution& execution);

  [[nodiscard]] std::size_t columns() const { return columns_.size(); }
  /// Whether the column holds text of the code page, not Unicode.
  [[nodiscard]] bool isNarrowText(std::size_t column) const;
  [[nodiscard]] data::Rows emptyRows() const;
  /// Goes to the next row. False behind the last one, and where it failed.
  [[nodiscard]] bool next();
  /// Appends the cells of the row. False where reading one of them failed.
  [[nodiscard]] bool addCells(data::Rows& rows);
  /// Appends the rows that are left.
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
