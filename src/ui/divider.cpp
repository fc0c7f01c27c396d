#include "ui/divider.h"

#include "ui/control_visitor.h"

namespace ledgertree::ui {

void Divider::moveTo(Twips left) {
  const Form::Act act(form());
  if (withinReach()) raise(onMove, left);
}

bool Divider::press(Key key) {
  constexpr Twips kStep = 150;
  if (key != Key::Left && key != Key::Right) return false;
  moveTo(bounds().left + (key == Key::Left ? -kStep : kStep));
  return true;
}

void Divider::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
