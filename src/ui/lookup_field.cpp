#include "ui/lookup_field.h"

#include <algorithm>
#include <iterator>

#include "text/utf8.h"
#include "ui/control_visitor.h"

namespace ledgertree::ui {

namespace {

/// How many rows PageUp and PageDown move, and how close to the end of the list the next rows are fetched.
constexpr int kPage = 8;

}  // namespace

void LookupField::hold(LookupRow row) {
  setListOpen(false);
  held_ = std::move(row);
  text_ = held_.text;
  typing_ = unchosen_ = false;
  changed(Change::Text);
  setDetail({});
}

void LookupField::setActive(bool active) {
  if (active_ == active) return;
  active_ = active;
  if (!active) restore();
  changed(Change::Enabled);
}

void LookupField::setTitle(std::string title) {
  title_ = std::move(title);
  changed(Change::Caption);
}

void LookupField::setDetail(std::string detail) {
  if (detail_ == detail) return;
  detail_ = std::move(detail);
  changed(Change::Hint);
}

bool LookupField::lineIsBlank() const { return text_.find_first_not_of(' ') == std::string::npos; }

void LookupField::setListOpen(bool open) {
  if (listOpen_ == open) return;
  listOpen_ = open;
  if (!open) {
    rows_.clear();
    highlighted_ = -1;
    searching_ = hasMore_ = stale_ = enterWaits_ = moved_ = false;
    wishStop();
  }
  changed(Change::List);
}

void LookupField::startSearch() {
  listOpen_ = true;
  stale_ = searching_ = true;
  hasMore_ = enterWaits_ = unchosen_ = moved_ = false;
  changed(Change::List);
  wishSearch(typing_ ? text_ : std::string());
}

void LookupField::showRows(std::vector<LookupRow> rows, bool append, bool more, bool searching) {
  if (!listOpen_) return;
  if (!reachable()) return leave();
  if (append) {
    rows_.insert(rows_.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
  } else {
    rows_ = std::move(rows);
    typed_ = text::SearchWords(typing_ ? text_ : std::string());
    highlighted_ = -1;
    moved_ = false;
  }
  hasMore_ = more;
  searching_ = searching;
  stale_ = false;
  if (highlighted_ < 0 && !rows_.empty()) {
    // A user who types wants the first hit; one who only opens the list, the held row.
    const auto same = std::find_if(rows_.begin(), rows_.end(), [&](const LookupRow& row) {
      return held_.id != -1 && row.id == held_.id;
    });
    if (typing_ && !lineIsBlank())
      highlighted_ = 0;
    else if (!typing_ && same != rows_.end())
      highlighted_ = static_cast<int>(same - rows_.begin());
  }
  changed(Change::List);
  if (!searching && rows_.empty()) enterWaits_ = false;
  if (enterWaits_ && highlighted_ >= 0) pick(highlighted_);
}

void LookupField::showPlaces(const std::vector<LookupRow>& places) {
  for (const LookupRow& place : places)
    for (LookupRow& row : rows_)
      if (row.id == place.id) row.place = place.text;
  changed(Change::List);
}

std::string LookupField::count() const {
  if (typed_.words.empty() || stale_ || searching_ || highlighted_ < 0) return {};
  return std::to_string(highlighted_ + 1) + " از " + (hasMore_ ? "بيش از " : "") +
         std::to_string(rows_.size());
}

void LookupField::highlight(int index) {
  highlighted_ = std::clamp(index, -1, static_cast<int>(rows_.size()) - 1);
  changed(Change::Selection);
}

void LookupField::move(int rows) {
  if (!listOpen_) return;
  highlight(std::max(highlighted_ + rows, 0));
  moved_ = highlighted_ >= 0;
  if (highlighted_ + kPage >= static_cast<int>(rows_.size())) reachedEnd();
}

void LookupField::type(std::string_view text) {
  if (!reachable()) return;
  const Form::Act act(form());
  for (const char32_t character : text::charactersOf(text)) {
    std::string line = typing_ ? text_ : std::string();
    text::appendCharacter(character, line);
    edited(std::move(line));
    if (!act.formAlive()) return;
    changed(Change::Text);
  }
}

void LookupField::edited(std::string text) {
  if (!reachable() || (typing_ && text == text_)) return;
  text_ = std::move(text);
  typing_ = true;
  startSearch();
}

bool LookupField::press(Key key) {
  if (!reachable()) return false;
  const Form::Act act(form());
  switch (key) {
    case Key::F4:
    case Key::Down:
      goDown(key);
      return true;
    case Key::Up:
      move(-1);
      return listOpen_;
    case Key::PageDown:
      move(kPage);
      return listOpen_;
    case Key::PageUp:
      move(-kPage);
      return listOpen_;
    case Key::Enter:
      raise(onKeyDown, kKeyCodeEnter);
      return act.formAlive() && enter();
    case Key::Escape: {
      const bool used = listOpen_ || typing_;
      restore();
      return used;
    }
    case Key::Tab:
      if (!typing_ && wentToRow()) pick(highlighted_);
      if (act.formAlive()) leave();
      return false;
    case Key::Delete:
      return deleteHeld();
    case Key::Backspace:
      return backspace();
    default:
      return false;
  }
}

void LookupField::goDown(Key key) {
  if (!listOpen_) {
    openList();
  } else if (key == Key::F4) {
    setListOpen(false);
  } else {
    move(1);
  }
}

bool LookupField::deleteHeld() {
  if (typing_) return false;
  const Form::Act act(form());
  // The form may clear the field itself when it handles the key; either way it is one change.
  const bool heldOne = held_.id != -1;
  raise(onKeyDown, kKeyCodeDelete);
  if (act.formAlive() && reachable()) emptied(heldOne);
  return true;
}

bool LookupField::enter() {
  if (typing_ && lineIsBlank() && highlighted_ < 0) {
    emptied(held_.id != -1);
    return true;
  }
  if (!listOpen_ && !typing_) return false;
  if (!listOpen_) startSearch();
  if (stale_ || (searching_ && rows_.empty())) {
    enterWaits_ = true;
  } else if (highlighted_ >= 0) {
    pick(highlighted_);
  } else if (!typing_) {
    setListOpen(false);
  }
  return true;
}

bool LookupField::backspace() {
  auto characters = text::charactersOf(text_);
  if (characters.empty()) return false;
  // The text of a held row is deleted as a whole, as selected text is.
  if (typing_)
    characters.pop_back();
  else
    characters.clear();
  edited(text::textOf(characters));
  changed(Change::Text);
  return true;
}

void LookupField::emptied(bool heldOne) {
  hold({});
  if (heldOne) heldByPerson();
}

void LookupField::openList() {
  if (reachable() && !listOpen_) startSearch();
}

void LookupField::pick(int index) {
  if (!reachable() || !listOpen_ || index < 0 || index >= static_cast<int>(rows_.size())) return;
  const Form::Act act(form());
  // Picking the held row again counts too: the form may have lost what it took from it.
  hold(LookupRow(rows_[static_cast<std::size_t>(index)]));
  heldByPerson();
}

void LookupField::reachedEnd() {
  if (!listOpen_ || !hasMore_ || searching_ || !reachable()) return;
  searching_ = true;
  changed(Change::List);
  wishMore();
}

void LookupField::lookCloser() {
  if (held_.id != -1 && detail_.empty() && shown()) wishDetail();
}

void LookupField::leave() {
  if (!typing_ || !reachable()) return restore();
  if (unchosen_) return;
  const Form::Act act(form());
  if (lineIsBlank()) return emptied(held_.id != -1);
  if (wentToRow()) return pick(highlighted_);
  LookupRow one = wishOne(text_, enterWaits_);
  // A failure of the look-up was reported meanwhile, and the form may have changed during the notice.
  if (!act.formAlive() || !typing_) return;
  if (one.id == -1) {
    setListOpen(false);
    unchosen_ = true;
    return changed(Change::Text);
  }
  hold(std::move(one));
  heldByPerson();
}

void LookupField::restore() {
  setListOpen(false);
  if (!typing_) return;
  typing_ = unchosen_ = false;
  text_ = held_.text;
  changed(Change::Text);
}

void LookupField::accept(ControlVisitor& visitor) { visitor.visit(*this); }
void DateDisplay::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
