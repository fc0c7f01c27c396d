#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/dten.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/grid.h"

namespace ledgertree::shell {

/// What an operation would do, shown to the user before it starts.
struct Preview {
  using Row = std::vector<std::string>;
  /// A page of rows; after an empty one there are no more.
  struct Page {
    std::vector<Row> rows = {};
    bool more = false;  ///< more rows follow
  };
  /// The maximum number of rows on a page.
  static constexpr std::size_t kPage = 500;

  std::string title;
  std::vector<std::string> summary;  ///< a few lines
  std::vector<ui::GridColumn> columns;
  std::string filter;    ///< the caption of the check box that filters the rows
  std::string command;   ///< the caption of the button that continues to the operation
  bool possible = true;  ///< whether the operation could do anything
  /// Reads a page, counted from 0, of all rows or of the filtered ones. Pages are requested in order: at most
  /// one past the last one read, or any before it.
  std::function<Page(bool filtered, std::size_t page)> rows;
};

/// Shows a preview.
class frmPreview : public ui::Form {
 public:
  /// Reads the first page; throws what `preview.rows` does. Runs on the user-interface thread; `shell`
  /// outlives the form.
  frmPreview(Shell& shell, Preview preview);

  ui::Label lblSummary;
  ui::CheckBox chkFilter;
  ui::Label lblPlace;
  ui::Grid flxRows;
  ui::PushButton cmdGo;
  ui::PushButton cmdPrevious;
  ui::PushButton cmdNext;
  ui::PushButton cmdClose;

  /// Whether the user continues to the operation.
  bool goesOn = false;

 private:
  /// Reads and shows a page; on failure the current one stays.
  void showPage(std::size_t page);

  Preview preview_;
  std::size_t page_ = 0;
};

/// Shows a preview until the user closes it; returns whether the user continues to the operation.
[[nodiscard]] bool showPreview(Shell& shell, Preview preview);

/// The line of a preview that says whether the operation can be taken back. Throws data::DataError.
[[nodiscard]] std::string_view wayBack(data::DtEn& gateway);

}  // namespace ledgertree::shell
