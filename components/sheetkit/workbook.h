#pragma once

#include <xlsxwriter.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "data/rows.h"
#include "sheetkit/sheet_layout.h"

namespace ledgertree::sheetkit {

/// Throws std::runtime_error telling the user that the file can't be written and what to check.
[[noreturn]] void refuseFile();

/// A one-sheet workbook, written row by row from the top. Destroying an object before close() leaves an
/// unusable file. Every operation throws std::runtime_error with a message for the user.
class Workbook {
 public:
  Workbook(const std::filesystem::path& file, const SheetLayout& layout);
  Workbook(const Workbook&) = delete;
  Workbook& operator=(const Workbook&) = delete;
  ~Workbook() = default;

  void add(const data::Rows& row);
  /// Puts the file together.
  void close();

 private:
  struct Free {
    void operator()(lxw_workbook* book) const { lxw_workbook_free(book); }
  };

  /// Deeper indents aren't worth their space.
  static constexpr int kDeepestIndent = 12;

  lxw_format* format(lxw_format_alignments alignment, bool rightToLeft);
  void makeFormats();
  void makeSheet();
  void writeHeading();
  /// Sets the outline level and the height of the next row.
  void openRow(const data::Rows& row, int depth);
  void writeCell(std::uint32_t row, std::size_t column, const data::Rows& rows, int depth);
  void requireRoom() const;

  const SheetLayout& layout_;
  std::unique_ptr<lxw_workbook, Free> book_;
  lxw_worksheet* sheet_ = nullptr;
  std::uint32_t nextRow_ = 0;
  std::string text_;  ///< the text of the current cell

  lxw_format* heading_ = nullptr;
  lxw_format* code_ = nullptr;
  lxw_format* plain_ = nullptr;
  lxw_format* wrapped_ = nullptr;
  lxw_format* number_ = nullptr;
  std::array<lxw_format*, kDeepestIndent + 1> indented_{};
  std::array<lxw_format*, kDeepestIndent + 1> indentedWrapped_{};
};

}  // namespace ledgertree::sheetkit
