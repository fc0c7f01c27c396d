#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include "ui/form.h"
#include "ui/geometry.h"

namespace ledgertree::ui {

class Frame;
class ControlVisitor;

/// What changed about a control. The renderer reads the new values from the control itself.
enum class Change { Caption, Text, Caret, Value, Enabled, Visible, Bounds, Items, Selection, List, Hint };

/// An event that a form listens to. It has at most one handler, set by the form.
template <typename... Arguments>
using Event = std::function<void(Arguments...)>;

/// Anything on a form that has a name and bounds.
///
/// What a user can do to a control is a method of its class, listed under "User actions"; each does nothing
/// on a control that is out of reach (hidden, disabled, or in a frame that is). Changes made by a program
/// raise no event, except where a class says so. The form owns the controls as members and lists them in the
/// order they were created; the Tab key follows their positions on screen, from right to left and downwards.
class Control {
 public:
  Control(Form& form, std::string name, Bounds bounds, Frame* frame = nullptr);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control();

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] Form& form() const { return form_; }
  /// The frame that holds the control; null if it is directly on the form.
  [[nodiscard]] Frame* frame() const { return frame_; }

  [[nodiscard]] const Bounds& bounds() const { return bounds_; }
  void setBounds(const Bounds& bounds);
  [[nodiscard]] bool visible() const { return visible_; }
  void setVisible(bool visible);
  [[nodiscard]] bool enabled() const { return enabled_; }
  void setEnabled(bool enabled);
  /// The control and every frame around it are visible and enabled.
  [[nodiscard]] bool withinReach() const;
  /// The control and every frame around it are visible.
  [[nodiscard]] bool shown() const;

  /// What a screen reader says, and what the tooltip shows.
  [[nodiscard]] const std::string& accessibleName() const { return accessibleName_; }
  void setAccessibleName(std::string name) { accessibleName_ = std::move(name); }
  [[nodiscard]] const std::string& hint() const { return hint_; }
  void setHint(std::string hint);

  /// Whether the control can have the focus at all (a label can't).
  [[nodiscard]] virtual bool takesFocus() const { return true; }
  [[nodiscard]] bool hasFocus() const;

  // Called by the user, or by code to which failure doesn't matter.
  /// Moves the focus here.
  void focus();

  Event<> onGotFocus;
  Event<> onLostFocus;

  virtual void accept(ControlVisitor& visitor) = 0;

 protected:
  void changed(Change change);
  /// Calls one of the form's event procedures. It may destroy the control, so raise an event last.
  template <typename... Arguments>
  void raise(const Event<Arguments...>& event, std::type_identity_t<Arguments>... arguments);
  /// The focus moved elsewhere. Called before onLostFocus.
  virtual void focusLeft() {}

 private:
  friend class Form;
  Form& form_;
  std::string name_;
  Frame* frame_;
  Bounds bounds_;
  bool visible_ = true;
  bool enabled_ = true;
  std::string accessibleName_;
  std::string hint_;
};

/// A visible border, with or without a title, around the controls that name it as their frame. Their bounds
/// are relative to its corner, and disabling it puts them out of reach.
class Frame : public Control {
 public:
  Frame(Form& form, std::string name, Bounds bounds, std::string caption = {}, Frame* frame = nullptr)
      : Control(form, std::move(name), bounds, frame), caption_(std::move(caption)) {}

  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// A frame without a border only groups its controls.
  [[nodiscard]] bool bordered() const { return bordered_; }
  void setBordered(bool bordered) { bordered_ = bordered; }
  /// The width of its content; a narrower frame scrolls over it. 0 for a frame that never scrolls. Read when
  /// a window is created, so set it before.
  [[nodiscard]] Twips scrolledWidth() const { return scrolledWidth_; }
  void setScrolledWidth(Twips width) { scrolledWidth_ = width; }
  [[nodiscard]] bool takesFocus() const override { return false; }
  void accept(ControlVisitor& visitor) override;

 private:
  std::string caption_;
  bool bordered_ = true;
  Twips scrolledWidth_ = 0;
};

/// Text that the user only reads.
class Label : public Control {
 public:
  Label(Form& form, std::string name, Bounds bounds, std::string caption = {}, Frame* frame = nullptr)
      : Control(form, std::move(name), bounds, frame), caption_(std::move(caption)) {}

  [[nodiscard]] const std::string& caption() const { return caption_; }
  void setCaption(std::string caption);
  /// Whether long text wraps.
  [[nodiscard]] bool wraps() const { return wraps_; }
  void setWraps(bool wraps) { wraps_ = wraps; }
  /// A message is set off from the label of a field.
  [[nodiscard]] bool strong() const { return strong_; }
  void setStrong(bool strong) { strong_ = strong; }
  [[nodiscard]] bool takesFocus() const override { return false; }
  void accept(ControlVisitor& visitor) override;

 private:
  std::string caption_;
  bool wraps_ = false;
  bool strong_ = false;
};

/// How much of a long task is done.
class ProgressBar : public Control {
 public:
  using Control::Control;

  [[nodiscard]] int value() const { return value_; }
  [[nodiscard]] int maximum() const { return maximum_; }
  /// Text beside the bar; empty shows only the bar.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// `value` is clamped to 0 and `maximum`.
  void setProgress(int value, int maximum, std::string text = {});
  [[nodiscard]] bool takesFocus() const override { return false; }
  void accept(ControlVisitor& visitor) override;

 private:
  int value_ = 0;
  int maximum_ = 100;
  std::string text_;
};

template <typename... Arguments>
void Control::raise(const Event<Arguments...>& event, std::type_identity_t<Arguments>... arguments) {
  if (!event) return;
  // A copy: the handler may set another one, or destroy the form that holds this one.
  const Event<Arguments...> procedure = event;
  form_.call([&] { procedure(arguments...); });
}

}  // namespace ledgertree::ui
