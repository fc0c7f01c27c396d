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

/// Throws std::runtime_error, which tells the person that the file can't be written and what to look at.
[[noreturn]] void refuseFile();

/// A workbook of one sheet that is being written, row by row from the top. An object that ends without
/// close() leaves a file that nobody wants. Everything throws std::runtime_error with a text for the person.
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

  /// An indent of more than this isn't worth its room.
  static constexpr int kDeepestIndent = 12;

  lxw_format* format(lxw_format_alignments alignment, bool rightToLeft);
  void makeFormats();
  void makeSheet();
  void writeHeading();
  /// The fold and the height of the next row.
  void openRow(const data::Rows& row, int depth);
  void writeCell(std::uint32_t row, std::size_t column, const data::Rows& rows, int depth);
  void requireRoom() const;

  const SheetLayout& layout_;
  std::unique_ptr<lxw_workbook, Free> book_;
  lxw_worksheet* sheet_ = nullptr;
  std::uint32_t nextRow_ = 0;
  std::string text_;  ///< the text of the cell at hand

  lxw_format* heading_ = nullptr;
  lxw_format* code_ = nullptr;
  lxw_format* plain_ = nullptr;
  lxw_format* wrapped_ = nullptr;
  lxw_format* number_ = nullptr;
  std::array<lxw_format*, kDeepestIndent + 1> indented_{};
  std::array<lxw_format*, kDeepestIndent + 1> indentedWrapped_{};
};

}  // namespace ledgertree::sheetkit
