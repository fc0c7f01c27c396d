#include "ui/menu.h"

namespace ledgertree::ui {

MenuEntry::MenuEntry(Form& form, std::string name, std::string caption, bool visible, bool checked)
    : form_(form),
      name_(std::move(name)),
      caption_(std::move(caption)),
      visible_(visible),
      checked_(checked) {}

MenuEntry& MenuEntry::add(MenuEntry& entry) {
  entry.parent_ = this;
  entries_.push_back(&entry);
  return *this;
}

void MenuEntry::setVisible(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  form_.notify(FormChange::Menu);
}

void MenuEntry::setEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  form_.notify(FormChange::Menu);
}

void MenuEntry::setChecked(bool checked) {
  if (checked_ == checked) return;
  checked_ = checked;
  form_.notify(FormChange::Menu);
}

bool MenuEntry::withinReach() const {
  return visible_ && enabled_ && (parent_ == nullptr ? !form_.desktop().waiting() : parent_->withinReach());
}

void MenuEntry::click() {
  const Form::Act act(form_);
  if (!onClick || !form_.beginCommand() || !withinReach()) return;
  const auto procedure = onClick;
  form_.call(procedure);
}

}  // namespace ledgertree::ui
