#pragma once

#include <string>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// An upright bar between two blocks of a form, which a person moves to and fro. Where it goes, and what the
/// blocks do, the form says.
class Divider : public Control {
 public:
  using Control::Control;

  // A person.
  /// Asks for another place, by its left edge.
  void moveTo(Twips left);
  /// Left and Right move it by a step. False where it has no use for the key.
  bool press(Key key);

  /// The left edge that the person asks for.
  Event<Twips> onMove;
  void accept(ControlVisitor& visitor) override;
};

}  // namespace ledgertree::ui
