#include "shell/lookup/selector.h"

#include <utility>

#include "data/view_name.h"

namespace ledgertree::shell {

Selector::Selector(ui::Form& form, Shell& shell, std::string name, ui::Bounds bounds, ui::Frame* frame)
    : ui::LookupField(form, std::move(name), bounds, frame),
      shell_(shell),
      search_(shell, [this](std::vector<ui::LookupRow> rows, bool append, bool more, bool searching) {
        showRows(std::move(rows), append, more, searching);
      }) {}

void Selector::setMajorView(std::string view) {
  if (view == majorView_) return;
  const bool other = !majorView_.empty();
  majorView_ = std::move(view);
  search_.setView(acceptedView(shell_, majorView_));
  if (other) Clear();
  readAgain();
}

void Selector::setMinorView(std::string view) {
  if (view == minorView_) return;
  minorView_ = std::move(view);
  setDetail({});
}

void Selector::setConnectionText(std::string_view text) {
  search_.setConnectionText(text);
  readAgain();
}

void Selector::readAgain() {
  if (search_.unread() && !IsEmpty() && !typing()) setSelectedID(SelectedID());
}

void Selector::wishStop() {
  search_.stop();
  search_.forgive();
  if (search_.unread()) search_.later([this] { readAgain(); });
}

void Selector::wishDetail() {
  const auto view = data::plainViewName(minorView_);
  if (!view) return;
  search_.later([this, view = std::string(*view)] { setDetail(search_.nameIn(view, SelectedID())); });
}

}  // namespace ledgertree::shell
