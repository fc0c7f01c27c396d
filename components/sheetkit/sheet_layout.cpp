#include "sheetkit/sheet_layout.h"

#include <algorithm>

#include "text/characters.h"

namespace ledgertree::sheetkit {

namespace {

constexpr std::string_view kLevel = "سطح";
constexpr std::string_view kTitle = "شرح حساب";
/// Padding at both ends of a text, and the filter button next to a heading.
constexpr std::size_t kAir = 2;
constexpr std::size_t kFilterButton = 3;
constexpr std::size_t kDeepest = 100;
/// What word wrap loses per line on average; a line is never narrower than this.
constexpr std::size_t kLostInLine = 5;
constexpr std::size_t kShortestLine = 10;

}  // namespace

void SheetLayout::measure(const data::Rows& row) {
  if (headings_.empty()) {
    headings_ = row.columns();
    for (const std::string& heading : headings_)
      longest_.push_back(text::characterCount(heading) + kFilterButton);
    level_ = row.column(kLevel);
    title_ = row.column(kTitle);
  }
  if (row.count() == 0) return;
  ++rows_;
  for (std::size_t column = 0; column < headings_.size(); ++column) {
    const std::string_view text = row.text(0, column);
    const std::size_t indent = indents(column) ? static_cast<std::size_t>(depth(row)) : 0;
    longest_[column] = std::max(longest_[column], text::characterCount(text) + indent);
  }
}

double SheetLayout::width(std::size_t column) const {
  return static_cast<double>(std::min(longest_[column], kWidest) + kAir);
}

int SheetLayout::lines(std::string_view text, int indent) {
  const auto taken = static_cast<std::size_t>(indent);
  const std::size_t inOne = kWidest - std::min(taken, kWidest - kShortestLine);
  std::size_t lines = 0;
  while (true) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::size_t length = text::characterCount(text.substr(0, end));
    const std::size_t room = std::max(inOne - kLostInLine, kShortestLine);
    lines += length <= inOne ? 1 : (length + room - 1) / room;
    if (end == text.size()) return static_cast<int>(lines);
    text.remove_prefix(end + 1);
  }
}

int SheetLayout::depth(const data::Rows& row) const {
  if (!level_) return 0;
  const data::Value level = row.value(0, *level_);
  const auto* number = std::get_if<std::int64_t>(&level.variant());
  return number == nullptr ? 0 : static_cast<int>(std::clamp<std::int64_t>(*number - 1, 0, kDeepest));
}

}  // namespace ledgertree::sheetkit
