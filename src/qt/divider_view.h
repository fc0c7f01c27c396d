#pragma once

#include "qt/control_view.h"
#include "ui/divider.h"

namespace ledgertree::qt {

/// A bar that is dragged with the mouse, or moved with the arrow keys while it has the focus.
class DividerView : public ViewOf<ui::Divider> {
 public:
  DividerView(ui::Divider& control, QWidget& parent);
  [[nodiscard]] QWidget& widget() override { return *bar_; }
  [[nodiscard]] QWidget* focusWidget() override { return bar_; }
  void sync(ui::Change) override {}
  void rescaled(const Scale& scale) override { scale_ = scale; }

 private:
  Scale scale_;
  QWidget* bar_;
};

}  // namespace ledgertree::qt
