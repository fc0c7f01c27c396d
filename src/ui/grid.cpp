#include "ui/grid.h"

#include <algorithm>

#include "ui/control_visitor.h"

namespace ledgertree::ui {

void Grid::setColumns(std::vector<GridColumn> columns) {
  columns_ = std::move(columns);
  clearRows();
}

void Grid::clearRows() {
  rows_.clear();
  currentRow_ = selectionEnd_ = kNone;
  changed(Change::Items);
}

void Grid::addRow(std::vector<std::string> texts) {
  texts.resize(columns_.size());
  rows_.push_back(std::move(texts));
  if (currentRow_ == kNone) currentRow_ = selectionEnd_ = 0;
  changed(Change::Items);
}

const std::string& Grid::text(int row, int column) const {
  return rows_.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
}

void Grid::selectRow(int row) {
  if (!withinReach() || row < 0 || row >= rowCount()) return;
  currentRow_ = selectionEnd_ = row;
  changed(Change::Selection);
  raise(onSelectionChange);
}

void Grid::extendTo(int row) {
  if (!withinReach() || row < 0 || row >= rowCount()) return;
  currentRow_ = row;
  changed(Change::Selection);
  raise(onSelectionChange);
}

void Grid::press(Key key, bool extend) {
  static constexpr int kPage = 10;
  int row = currentRow_;
  switch (key) {
    case Key::Up:
      row -= 1;
      break;
    case Key::Down:
      row += 1;
      break;
    case Key::PageUp:
      row -= kPage;
      break;
    case Key::PageDown:
      row += kPage;
      break;
    case Key::Home:
      row = 0;
      break;
    case Key::End:
      row = rowCount() - 1;
      break;
    default:
      return;
  }
  row = std::clamp(row, 0, std::max(rowCount() - 1, 0));
  if (extend) {
    extendTo(row);
  } else {
    selectRow(row);
  }
}

void Grid::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
