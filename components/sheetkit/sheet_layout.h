#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/rows.h"

namespace ledgertree::sheetkit {

/// What the first pass over the rows finds out: their number, and the width of each column.
class SheetLayout {
 public:
  void measure(const data::Rows& row);

  [[nodiscard]] std::int64_t rows() const { return rows_; }
  [[nodiscard]] const std::vector<std::string>& headings() const { return headings_; }
  /// In characters of the sheet's font, heading and filter button included.
  [[nodiscard]] double width(std::size_t column) const;

  /// The depth of a row, 0 at the top; always 0 if the statement has no level.
  [[nodiscard]] int depth(const data::Rows& row) const;
  [[nodiscard]] bool folds() const { return level_.has_value(); }
  /// Whether the column is indented by depth.
  [[nodiscard]] bool indents(std::size_t column) const { return level_ && title_ == column; }
  /// Estimates the lines, 1 or more, that a text takes in its cell.
  [[nodiscard]] static int lines(std::string_view text, int indent);

 private:
  static constexpr std::size_t kWidest = 45;

  std::int64_t rows_ = 0;
  std::vector<std::string> headings_;
  std::vector<std::size_t> longest_;
  std::optional<std::size_t> level_;
  std::optional<std::size_t> title_;
};

}  // namespace ledgertree::sheetkit
