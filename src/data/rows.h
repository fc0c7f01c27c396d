#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/value.h"

namespace ledgertree::data {

/// All rows of one statement, in one compact buffer: 16 bytes per cell, and one arena for all texts. An
/// engine fills it column by column and cell by cell; everybody else only reads.
class Rows {
 public:
  [[nodiscard]] std::size_t count() const { return width_ == 0 ? 0 : cells_.size() / width_; }
  [[nodiscard]] const std::vector<std::string>& columns() const;
  /// The index of a column by its name, ignoring ASCII case; the first one if a name is repeated.
  [[nodiscard]] std::optional<std::size_t> column(std::string_view name) const;

  /// `row` and `column` must be below count() and columns().size().
  [[nodiscard]] Value value(std::size_t row, std::size_t column) const;
  [[nodiscard]] bool isNull(std::size_t row, std::size_t column) const {
    return cell(row, column).kind == Kind::Null;
  }
  /// A text cell's text, without copying; empty for every other type. Valid while the rows
  /// exist.
  [[nodiscard]] std::string_view text(std::size_t row, std::size_t column) const;

  // For the engines.
  void addColumn(std::string name);
  /// Reserves space for a first row: most results have no more.
  void reserveRow() {
    if (cells_.empty()) cells_.reserve(width_);
  }
  void addNull() { cells_.push_back({}); }
  void addInteger(std::int64_t number) { cells_.push_back({Kind::Integer, 0, {.integer = number}}); }
  void addDouble(double number) { cells_.push_back({Kind::Double, 0, {.real = number}}); }
  void addMoney(Money amount) { cells_.push_back({Kind::Money, 0, {.integer = amount.tenThousandths()}}); }
  /// Throws std::invalid_argument for a date that isn't valid().
  void addDateTime(const DateTime& time);
  /// Throws std::length_error for a text of 4 GiB or more.
  void addText(std::string_view text);
  /// Adds a cell of the value's type.
  void addValue(const Value& value);
  /// Removes the cells and keeps the columns, for a walk that passes one row at a time.
  void clearRows();

 private:
  enum class Kind : std::uint8_t { Null, Integer, Double, Money, Text, DateTime };
  struct Cell {
    Kind kind = Kind::Null;
    std::uint32_t length = 0;
    union {
      std::int64_t integer;
      double real;
      std::uint64_t offset;
    } payload = {.integer = 0};
  };

  [[nodiscard]] const Cell& cell(std::size_t row, std::size_t column) const {
    return cells_[row * width_ + column];
  }

  struct Columns {
    std::vector<std::string> names;
    /// One case-insensitive hash per column, so that a look-up by name compares one number per column.
    std::vector<std::uint32_t> hashes;
  };
  /// Shared between the results of a statement that runs repeatedly.
  std::shared_ptr<const Columns> columns_;
  std::size_t width_ = 0;
  std::vector<Cell> cells_;
  std::string arena_;
};

}  // namespace ledgertree::data
