#include "sheetkit/workbook.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <system_error>

#include "text/characters.h"

namespace ledgertree::sheetkit {

namespace {

constexpr const char* kSheetName = "سرفصل حسابها";
constexpr std::uint8_t kReadsLeftToRight = 1;
constexpr std::uint8_t kReadsRightToLeft = 2;
constexpr std::uint8_t kPaperA4 = 9;
/// A sheet has at most seven outline levels below the top one.
constexpr int kDeepestFold = 7;
/// In points; a row can't be higher than the second.
constexpr double kLineHeight = 15;
constexpr double kHighestRow = 409;
constexpr lxw_color_t kHeadingGround = 0xD8E4F0;
constexpr lxw_color_t kLine = 0x8EA9C8;
/// Replaces invalid UTF-8 and characters that a workbook can't hold.
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

void require(lxw_error error) {
  if (error == LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED)
    throw std::runtime_error(
        "متني بلندتر از گنجايش يک خانه صفحه گسترده است. آن را کوتاه نماييد و دوباره تلاش کنيد.");
  if (error != LXW_NO_ERROR) refuseFile();
}

/// Copies valid text into `to`: a workbook is XML, and one byte that isn't UTF-8 would make it unreadable.
void copyClean(std::string_view text, std::string& to) {
  to.clear();
  while (!text.empty()) {
    const std::size_t length = text::characterLength(text);
    const auto first = static_cast<unsigned char>(text.front());
    const bool isText = length > 1 || (first < 0x80 && (first >= 0x20 || first == '\n' || first == '\t'));
    if (isText) {
      to.append(text.substr(0, length));
    } else if (first != '\r') {
      to.append(kReplacement);
    }
    text.remove_prefix(length);
  }
}

}  // namespace

void refuseFile() {
  throw std::runtime_error(
      "فايل صفحه گسترده نوشته نشد. جا و اجازه نوشتن در پوشه انتخاب شده را بررسي نماييد و دوباره تلاش کنيد.");
}

Workbook::Workbook(const std::filesystem::path& file, const SheetLayout& layout) : layout_(layout) {
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  book_.reset(workbook_new_opt(file.string().c_str(), &options));
  if (book_ == nullptr) refuseFile();
  sheet_ = workbook_add_worksheet(book_.get(), kSheetName);
  if (sheet_ == nullptr || sheet_->optimize_tmpfile == nullptr) refuseFile();
  makeFormats();
  makeSheet();
  writeHeading();
}

lxw_format* Workbook::format(lxw_format_alignments alignment, bool rightToLeft) {
  lxw_format* made = workbook_add_format(book_.get());
  if (made == nullptr) refuseFile();
  format_set_align(made, static_cast<std::uint8_t>(alignment));
  format_set_align(made, LXW_ALIGN_VERTICAL_TOP);
  format_set_reading_order(made, rightToLeft ? kReadsRightToLeft : kReadsLeftToRight);
  return made;
}

void Workbook::makeFormats() {
  heading_ = format(LXW_ALIGN_CENTER, true);
  format_set_align(heading_, LXW_ALIGN_VERTICAL_CENTER);
  format_set_bold(heading_);
  format_set_bg_color(heading_, kHeadingGround);
  format_set_bottom(heading_, LXW_BORDER_MEDIUM);
  format_set_bottom_color(heading_, kLine);
  // Codes read from left to right and are text: leading zeros survive, even after editing.
  code_ = format(LXW_ALIGN_LEFT, false);
  format_set_num_format(code_, "@");
  format_set_indent(code_, 1);  // keeps it apart from the adjacent titles
  plain_ = format(LXW_ALIGN_RIGHT, true);
  wrapped_ = format(LXW_ALIGN_RIGHT, true);
  format_set_text_wrap(wrapped_);
  number_ = format(LXW_ALIGN_CENTER, false);
  for (int depth = 0; depth <= kDeepestIndent; ++depth) {
    for (auto* const looks : {&indented_, &indentedWrapped_}) {
      lxw_format* const indented = format(LXW_ALIGN_RIGHT, true);
      if (depth > 0) format_set_indent(indented, static_cast<std::uint8_t>(depth));
      if (depth == 0) format_set_bold(indented);
      if (looks == &indentedWrapped_) format_set_text_wrap(indented);
      looks->at(static_cast<std::size_t>(depth)) = indented;
    }
  }
}

void Workbook::makeSheet() {
  worksheet_right_to_left(sheet_);
  worksheet_freeze_panes(sheet_, 1, 0);
  for (std::size_t column = 0; column < layout_.headings().size(); ++column) {
    const auto place = static_cast<lxw_col_t>(column);
    require(worksheet_set_column(sheet_, place, place, layout_.width(column), nullptr));
  }
  // Summary rows are above their details.
  if (layout_.folds()) worksheet_outline_settings(sheet_, LXW_TRUE, LXW_FALSE, LXW_FALSE, LXW_FALSE);
  worksheet_set_landscape(sheet_);
  worksheet_set_paper(sheet_, kPaperA4);
  worksheet_fit_to_pages(sheet_, 1, 0);
  worksheet_set_margins(sheet_, 0.4, 0.4, 0.6, 0.6);
  require(worksheet_repeat_rows(sheet_, 0, 0));
  require(worksheet_set_footer(sheet_, "&C&P / &N"));
}

void Workbook::writeHeading() {
  require(worksheet_set_row(sheet_, 0, 24, nullptr));
  for (std::size_t column = 0; column < layout_.headings().size(); ++column) {
    copyClean(layout_.headings()[column], text_);
    require(worksheet_write_string(sheet_, 0, static_cast<lxw_col_t>(column), text_.c_str(), heading_));
  }
  nextRow_ = 1;
}

void Workbook::add(const data::Rows& row) {
  const int depth = layout_.depth(row);
  openRow(row, depth);
  for (std::size_t column = 0; column < layout_.headings().size(); ++column)
    writeCell(nextRow_, column, row, depth);
  ++nextRow_;
  // The library doesn't check whether its own temporary file took a row.
  if (std::ferror(sheet_->optimize_tmpfile) != 0) refuseFile();
}

/// Not every program computes the height of a row with several lines of text.
void Workbook::openRow(const data::Rows& row, int depth) {
  int lines = 1;
  for (std::size_t column = 1; column < layout_.headings().size(); ++column)
    lines = std::max(lines, SheetLayout::lines(row.text(0, column), layout_.indents(column) ? depth : 0));
  if (lines == 1 && depth == 0) return;
  lxw_row_col_options fold{};
  fold.level = static_cast<std::uint8_t>(std::min(depth, kDeepestFold));
  const double height = lines == 1 ? LXW_DEF_ROW_HEIGHT : std::min(lines * kLineHeight, kHighestRow);
  require(worksheet_set_row_opt(sheet_, nextRow_, height, nullptr, &fold));
}

void Workbook::writeCell(std::uint32_t row, std::size_t column, const data::Rows& rows, int depth) {
  const auto place = static_cast<lxw_col_t>(column);
  if (rows.isNull(0, column)) return;
  std::string_view text = rows.text(0, column);
  std::string shown;
  if (text.empty()) {
    const data::Value value = rows.value(0, column);
    const bool isNumber = std::holds_alternative<std::int64_t>(value.variant()) ||
                          std::holds_alternative<double>(value.variant()) ||
                          std::holds_alternative<data::Money>(value.variant());
    if (isNumber) {
      require(worksheet_write_number(sheet_, row, place, value.toDouble(), number_));
      return;
    }
    shown = value.toText();
    text = shown;
  }
  if (text.empty()) return;
  copyClean(text, text_);
  const bool indents = layout_.indents(column);
  const bool wraps = SheetLayout::lines(text, indents ? depth : 0) > 1;
  lxw_format* look = wraps ? wrapped_ : plain_;
  if (column == 0) look = code_;
  if (indents)
    look =
        (wraps ? indentedWrapped_ : indented_).at(static_cast<std::size_t>(std::min(depth, kDeepestIndent)));
  require(worksheet_write_string(sheet_, row, place, text_.c_str(), look));
}

/// The sheet is copied once more while the file is put
/// together, and the library doesn't check whether it fits.
void Workbook::requireRoom() const {
  if (std::fflush(sheet_->optimize_tmpfile) != 0) refuseFile();
  const long size = std::ftell(sheet_->optimize_tmpfile);
  std::error_code unknown;
  const auto folder = std::filesystem::space(std::filesystem::temp_directory_path(unknown), unknown);
  constexpr std::uintmax_t kSpare = 1 << 20;
  if (!unknown && size > 0 && folder.available < static_cast<std::uintmax_t>(size) + kSpare) refuseFile();
}

void Workbook::close() {
  requireRoom();
  const auto columns = static_cast<lxw_col_t>(std::max<std::size_t>(layout_.headings().size(), 1) - 1);
  if (nextRow_ > 1) require(worksheet_autofilter(sheet_, 0, 0, nextRow_ - 1, columns));
  // Codes are digits stored as text on purpose: suppresses the warning marker on each.
  const std::string codes = "A2:A" + std::to_string(std::max(nextRow_, 2U));
  require(worksheet_ignore_errors(sheet_, LXW_IGNORE_NUMBER_STORED_AS_TEXT, codes.c_str()));
  require(workbook_close(book_.release()));  // frees it even on failure
}

}  // namespace ledgertree::sheetkit
