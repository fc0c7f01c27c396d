#pragma once

#include <string>
#include <vector>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

struct GridColumn {
  std::string header;
  Twips width = 1000;  ///< 0 hides the column
};

/// Rows of text under a row of headers, with a selected range of rows. Row 0 is the first one under the
/// headers.
class Grid : public Control {
 public:
  using Control::Control;
  static constexpr int kNone = -1;

  void setColumns(std::vector<GridColumn> columns);
  [[nodiscard]] const std::vector<GridColumn>& columns() const { return columns_; }
  void clearRows();
  /// Surplus texts are dropped, missing ones are empty. The first row added becomes the current one.
  void addRow(std::vector<std::string> texts);
  [[nodiscard]] int rowCount() const { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const std::string& text(int row, int column) const;

  /// The row of the cursor, and the other end of the selection; kNone in an empty grid.
  [[nodiscard]] int currentRow() const { return currentRow_; }
  [[nodiscard]] int selectionEnd() const { return selectionEnd_; }

  // User actions.
  void selectRow(int row);
  /// Moves the cursor but not the other end of the selection, as Shift does.
  void extendTo(int row);
  /// Up, Down, Home, End, PageUp and PageDown move the cursor; with `extend` they extend the selection.
  void press(Key key, bool extend = false);

  /// The last row was scrolled into sight.
  void reachedEnd() { raise(onReachedEnd); }

  Event<> onSelectionChange;
  Event<> onReachedEnd;
  void accept(ControlVisitor& visitor) override;

 private:
  std::vector<GridColumn> columns_;
  std::vector<std::vector<std::string>> rows_;
  int currentRow_ = kNone;
  int selectionEnd_ = kNone;
};

}  // namespace ledgertree::ui
