#include "ui/buttons.h"

#include "ui/control_visitor.h"

namespace ledgertree::ui {

void PushButton::click() {
  const Form::Act act(form());
  if (form().beginCommand() && withinReach()) raise(onClick);
}

void PushButton::press(Key key) {
  if (key == Key::Enter || key == Key::Space) click();
}

void PushButton::accept(ControlVisitor& visitor) { visitor.visit(*this); }

void RadioButton::setValue(bool value) {
  if (value) {
    for (Control* control : form().controls()) {
      if (control == this || control->frame() != frame()) continue;
      if (auto* const other = dynamic_cast<RadioButton*>(control)) other->setValue(false);
    }
  }
  if (value_ == value) return;
  value_ = value;
  changed(Change::Value);
}

void RadioButton::click() {
  if (!withinReach()) return;
  setValue(true);
  raise(onClick);
}

void RadioButton::accept(ControlVisitor& visitor) { visitor.visit(*this); }

void CheckBox::setValue(int value) {
  value = value == 0 ? 0 : 1;
  if (value_ == value) return;
  value_ = value;
  changed(Change::Value);
}

void CheckBox::click() {
  if (!withinReach()) return;
  setValue(1 - value_);
  raise(onClick);
}

void CheckBox::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
