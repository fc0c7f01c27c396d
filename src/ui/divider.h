#pragma once

#include <string>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// A vertical bar between two blocks of a form, which the user drags sideways. The form decides where it may
/// go and how the blocks follow.
class Divider : public Control {
 public:
  using Control::Control;

  // User actions.
  /// Asks for a new position, given by the left edge.
  void moveTo(Twips left);
  /// Left and Right move it by a step. False for a key it doesn't use.
  bool press(Key key);

  /// The left edge that the user asks for.
  Event<Twips> onMove;
  void accept(ControlVisitor& visitor) override;
};

}  // namespace ledgertree::ui
