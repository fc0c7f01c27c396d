#include "shell/preview.h"

#include <utility>

#include "history/history.h"

namespace ledgertree::shell {

namespace {

constexpr ui::Size kDesignSize{11250, 7650};

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

}  // namespace

frmPreview::frmPreview(Shell& shell, Preview preview)
    : ui::Form(shell.surroundings(), "frmPreview", std::move(preview.title), kDesignSize),
      lblSummary(*this, "lblSummary", {225, 180, 10800, 1275}, joined(preview.summary)),
      chkFilter(*this, "chkFilter", {5625, 1500, 5400, 300}, std::move(preview.filter)),
      lblPlace(*this, "lblPlace", {225, 1500, 5250, 300}),
      flxRows(*this, "flxRows", {225, 1875, 10800, 4950}),
      cmdGo(*this, "cmdGo", {6525, 7020, 4500, 405}, std::move(preview.command)),
      cmdPrevious(*this, "cmdPrevious", {4275, 7020, 1500, 405}, "صفحه قبل"),
      cmdNext(*this, "cmdNext", {2625, 7020, 1500, 405}, "صفحه بعد"),
      cmdClose(*this, "cmdClose", {225, 7020, 1500, 405}, "انصراف"),
      preview_(std::move(preview)) {
  lblSummary.setWraps(true);
  flxRows.setColumns(preview_.columns);
  flxRows.setAccessibleName("پيش نمايش");
  cmdGo.setEnabled(preview_.possible);
  chkFilter.onClick = [this] { showPage(0); };
  cmdPrevious.onClick = [this] { showPage(page_ - 1); };
  cmdNext.onClick = [this] { showPage(page_ + 1); };
  cmdGo.onClick = [this] {
    goesOn = true;
    close();
  };
  cmdClose.onClick = [this] { close(); };
  setFirstFocus(flxRows);
  // No default button: Enter must not start what can't be undone.
  setCancelButton(cmdClose);
  showPage(0);
}

void frmPreview::showPage(std::size_t page) {
  const Hourglass hourglass(desktop());
  const Preview::Page read = preview_.rows(chkFilter.value() != 0, page);
  page_ = page;
  flxRows.clearRows();
  for (const Preview::Row& row : read.rows) flxRows.addRow(row);
  const std::size_t first = page * Preview::kPage;
  lblPlace.setCaption(read.rows.empty() ? "رديفي نيست."
                                        : "رديف " + std::to_string(first + 1) + " تا " +
                                              std::to_string(first + read.rows.size()));
  cmdPrevious.setEnabled(page > 0);
  cmdNext.setEnabled(read.more);
}

bool showPreview(Shell& shell, Preview preview) {
  frmPreview form(shell, std::move(preview));
  shell.desktop().showModal(form);
  return form.goesOn;
}

std::string_view wayBack(data::DtEn& gateway) {
  return history::isKept(gateway) ? "سابقه حسابها نگهداري ميشود و اين کار را ميتوان بازگرداند."
                                  : "سابقه حسابها نگهداري نميشود و اين کار بازگشت ندارد.";
}

}  // namespace ledgertree::shell
