#include "ui/control.h"

#include <algorithm>

#include "ui/control_visitor.h"
#include "ui/desktop.h"

namespace ledgertree::ui {

Control::Control(Form& form, std::string name, Bounds bounds, Frame* frame)
    : form_(form), name_(std::move(name)), frame_(frame), bounds_(bounds) {
  form_.add(*this);
}

Control::~Control() { form_.remove(*this); }

void Control::setBounds(const Bounds& bounds) {
  if (bounds_ == bounds) return;
  bounds_ = bounds;
  changed(Change::Bounds);
}

void Control::setVisible(bool visible) {
  if (visible_ == visible) return;
  visible_ = visible;
  changed(Change::Visible);
}

void Control::setEnabled(bool enabled) {
  if (enabled_ == enabled) return;
  enabled_ = enabled;
  changed(Change::Enabled);
}

bool Control::withinReach() const {
  return visible_ && enabled_ && (frame_ == nullptr ? !form_.desktop().waiting() : frame_->withinReach());
}

bool Control::shown() const { return visible_ && (frame_ == nullptr || frame_->shown()); }

void Control::setHint(std::string hint) {
  hint_ = std::move(hint);
  changed(Change::Hint);
}

bool Control::hasFocus() const { return form_.focused() == this; }

void Control::focus() {
  if (form_.isShown() && withinReach() && takesFocus()) form_.desktop().moveFocus(*this);
}

void Control::changed(Change change) { form_.notify(*this, change); }

void Frame::accept(ControlVisitor& visitor) { visitor.visit(*this); }

void Label::setCaption(std::string caption) {
  if (caption_ == caption) return;
  caption_ = std::move(caption);
  changed(Change::Caption);
}

void Label::accept(ControlVisitor& visitor) { visitor.visit(*this); }

void ProgressBar::setProgress(int value, int maximum, std::string text) {
  maximum_ = std::max(maximum, 0);
  value_ = std::clamp(value, 0, maximum_);
  text_ = std::move(text);
  changed(Change::Value);
}

void ProgressBar::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
