#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/value.h"

namespace ledgertree::data {

/// The complete rows of one statement, in one compact buffer: 16 bytes a cell, and one arena for all texts.
/// An engine builds it column by column and cell by cell; everybody else only reads.
class Rows {
 public:
  [[nodiscard]] std::size_t count() const { return width_ == 0 ? 0 : cells_.size() / width_; }
  [[nodiscard]] const std::vector<std::string>& columns() const;
  /// The place of a column by its name, ASCII letters in any case; the first one where a name stands twice.
  [[nodiscard]] std::optional<std::size_t> column(std::string_view name) const;

  /// `row` and `column` are below count() and columns().size().
  [[nodiscard]] Value value(std::size_t row, std::size_t column) const;
  [[nodiscard]] bool isNull(std::size_t row, std::size_t column) const {
    return cell(row, column).kind == Kind::Null;
  }
  /// The text of a cell that holds text, without a copy; empty for every other kind. Valid while the rows
  /// stand.
  [[nodiscard]] std::string_view text(std::size_t row, std::size_t column) const;

  // For the engines.
  void addColumn(std::string name);
  /// Room for the cells of a first row: most answers have no more.
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
  /// Adds a cell of whatever the value is.
  void addValue(const Value& value);
  /// Drops the cells and keeps the columns, for a walk that shows one row after the other.
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
    /// One hash a column, letter case folded away, so that a look-up by name compares one number a column.
    std::vector<std::uint32_t> hashes;
  };
  /// Of one statement that runs again and again the rows share them.
  std::shared_ptr<const Columns> columns_;
  std::size_t width_ = 0;
  std::vector<Cell> cells_;
  std::string arena_;
};

}  // namespace ledgertree::data
