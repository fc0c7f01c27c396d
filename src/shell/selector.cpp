#include "shell/selector.h"

namespace ledgertree::shell {

Selector::Selector(ui::Form& form, Shell& shell, std::string name, ui::Bounds bounds, ui::Frame* frame)
    : ui::LookupField(form, std::move(name), bounds, frame), shell_(shell) {}

void Selector::setMajorView(std::string view) { majorView_ = std::move(view); }
void Selector::setMinorView(std::string view) { minorView_ = std::move(view); }
void Selector::setConnectionText(std::string text) { connectionText_ = std::move(text); }

void Selector::setSelectedID(std::int32_t id) {
  selectedID_ = id < 1 ? -1 : id;
  setText({});
}

void Selector::Clear() { setSelectedID(-1); }

void Selector::wishSearch(const std::string& text) { (void)text; }
void Selector::wishMore() {}

void Selector::wishPick(const ui::LookupRow& row) {
  selectedID_ = row.id;
  selectedText_ = row.text;
  setText(row.text);
  raise(onSelectionChange);
}

void Selector::wishRestore() { setText(selectedText_); }

void Selector::wishClear() {
  const bool held = !IsEmpty();
  Clear();
  if (held) raise(onSelectionChange);
}

}  // namespace ledgertree::shell
