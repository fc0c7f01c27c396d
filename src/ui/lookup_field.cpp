#include "ui/lookup_field.h"

#include <algorithm>

#include "ui/control_visitor.h"
#include "ui/utf8.h"

namespace ledgertree::ui {

void LookupField::setText(std::string text) {
  text_ = std::move(text);
  typing_ = false;
  changed(Change::Text);
}

void LookupField::setActive(bool active) {
  if (active_ == active) return;
  active_ = active;
  if (!active) setListOpen(false);
  changed(Change::Enabled);
}

void LookupField::setTitle(std::string title) {
  title_ = std::move(title);
  changed(Change::Caption);
}

void LookupField::setListOpen(bool open) {
  if (listOpen_ == open) return;
  listOpen_ = open;
  changed(Change::List);
}

void LookupField::showRows(std::vector<LookupRow> rows, bool append, bool more, bool searching) {
  if (append) {
    rows_.insert(rows_.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
  } else {
    rows_ = std::move(rows);
    highlighted_ = -1;
  }
  if (highlighted_ < 0 && !rows_.empty()) highlighted_ = 0;
  hasMore_ = more;
  searching_ = searching;
  changed(Change::List);
}

void LookupField::highlight(int index) {
  highlighted_ = std::clamp(index, -1, static_cast<int>(rows_.size()) - 1);
  changed(Change::Selection);
}

void LookupField::type(std::string_view text) {
  if (!withinReach() || !active_) return;
  const Form::Act act(form());
  for (const char32_t character : charactersOf(text)) {
    std::string line = typing_ ? text_ : std::string();
    line += textOf(std::u32string(1, character));
    edited(std::move(line));
    if (!act.formStands()) return;
    changed(Change::Text);
  }
}

void LookupField::edited(std::string text) {
  if (!withinReach() || !active_) return;
  text_ = std::move(text);
  typing_ = true;
  setListOpen(true);
  wishSearch(text_);
}

void LookupField::press(Key key) {
  static constexpr int kPage = 8;
  if (!withinReach() || !active_) return;
  const Form::Act act(form());
  if (key == Key::Delete) raise(onKeyDown, kKeyCodeDelete);
  if (key == Key::Enter) raise(onKeyDown, kKeyCodeEnter);
  if (!act.formStands()) return;
  switch (key) {
    case Key::F4:
    case Key::Down:
      if (!listOpen_) return openList();
      if (highlighted_ + 1 >= static_cast<int>(rows_.size()) && hasMore_) wishMore();
      return highlight(highlighted_ + 1);
    case Key::Up:
      return highlight(std::max(highlighted_ - 1, 0));
    case Key::PageDown:
      if (highlighted_ + kPage >= static_cast<int>(rows_.size()) && hasMore_) wishMore();
      return highlight(highlighted_ + kPage);
    case Key::PageUp:
      return highlight(std::max(highlighted_ - kPage, 0));
    case Key::Enter:
      if (listOpen_ && highlighted_ >= 0) pick(highlighted_);
      return;
    case Key::Escape:
      return leave();
    case Key::Delete:
      return wishClear();
    case Key::Backspace: {
      auto characters = charactersOf(text_);
      if (characters.empty()) return;
      characters.pop_back();
      if (characters.empty()) return wishClear();
      edited(textOf(characters));
      if (act.formStands()) changed(Change::Text);
      return;
    }
    default:
      return;
  }
}

void LookupField::openList() {
  if (!withinReach() || !active_ || listOpen_) return;
  setListOpen(true);
  wishSearch(typing_ ? text_ : std::string());
}

void LookupField::closeList() { leave(); }

void LookupField::pick(int index) {
  if (!withinReach() || !active_ || index < 0 || index >= static_cast<int>(rows_.size())) return;
  const LookupRow row = rows_[static_cast<std::size_t>(index)];
  setListOpen(false);
  wishPick(row);
}

void LookupField::reachedEnd() {
  if (listOpen_ && hasMore_ && !searching_) wishMore();
}

void LookupField::leave() {
  setListOpen(false);
  wishRestore();
}

void LookupField::accept(ControlVisitor& visitor) { visitor.visit(*this); }
void DateDisplay::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
