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

/// What a work would do, as a person looks at it ahead of the work.
struct Preview {
  using Row = std::vector<std::string>;
  /// A page of rows; an empty one has none behind it.
  struct Page {
    std::vector<Row> rows = {};
    bool more = false;  ///< rows are behind these
  };
  /// The most rows of a page.
  static constexpr std::size_t kPage = 500;

  std::string title;
  std::vector<std::string> summary;  ///< a few lines
  std::vector<ui::GridColumn> columns;
  std::string filter;    ///< the caption of the check box that asks for some of the rows
  std::string command;   ///< the caption of the button that goes on to the work
  bool possible = true;  ///< whether the work could do anything
  /// The rows of a page from 0, all of them or those of the filter. The one behind the last that was asked
  /// for, or any ahead of that.
  std::function<Page(bool filtered, std::size_t page)> rows;
};

/// A preview on the screen.
class frmPreview : public ui::Form {
 public:
  /// Reads the first page; throws what `preview.rows` does. Runs on the thread of the screens; `shell`
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

  /// Whether the person goes on to the work.
  bool goesOn = false;

 private:
  /// Reads a page, and leaves the one that is shown where that fails.
  void showPage(std::size_t page);

  Preview preview_;
  std::size_t page_ = 0;
};

/// Shows a preview until the person leaves it; true where the person goes on to the work.
[[nodiscard]] bool showPreview(Shell& shell, Preview preview);

/// What a preview says of the way back from the work. Throws data::DataError.
[[nodiscard]] std::string_view wayBack(data::DtEn& gateway);

}  // namespace ledgertree::shell
