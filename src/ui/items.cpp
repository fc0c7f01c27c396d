#include "ui/items.h"

#include <algorithm>

#include "ui/control_visitor.h"

namespace ledgertree::ui {

void ItemsControl::clearItems() {
  items_.clear();
  selected_ = kNone;
  changed(Change::Items);
}

void ItemsControl::addItem(std::string text, std::int32_t data) {
  items_.push_back({std::move(text), data});
  changed(Change::Items);
}

void ItemsControl::setItemText(int index, std::string text) {
  items_.at(static_cast<std::size_t>(index)).text = std::move(text);
  changed(Change::Items);
}

void ItemsControl::removeItem(int index) {
  items_.erase(items_.begin() + index);
  if (selected_ == index) {
    selected_ = kNone;
  } else if (selected_ > index) {
    --selected_;
  }
  changed(Change::Items);
}

void ItemsControl::select(int index) {
  selected_ = index >= 0 && index < static_cast<int>(items_.size()) ? index : kNone;
  changed(Change::Selection);
}

std::string ItemsControl::selectedText() const {
  return selected_ == kNone ? std::string() : items_[static_cast<std::size_t>(selected_)].text;
}

void ItemsControl::choose(int index) {
  if (!withinReach() || index < 0 || index >= static_cast<int>(items_.size())) return;
  select(index);
  raise(onSelect);
}

void ItemsControl::press(Key key) {
  const int last = static_cast<int>(items_.size()) - 1;
  if (key == Key::Up) choose(std::max(selected_ - 1, 0));
  if (key == Key::Down) choose(std::min(selected_ + 1, last));
  if (key == Key::Home) choose(0);
  if (key == Key::End) choose(last);
}

void ListBox::accept(ControlVisitor& visitor) { visitor.visit(*this); }
void DropDownList::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
