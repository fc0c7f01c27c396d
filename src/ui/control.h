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

/// What of a control changed; the renderer reads the rest from the control itself.
enum class Change { Caption, Text, Caret, Value, Enabled, Visible, Bounds, Items, Selection, List, Hint };

/// An event that a form listens to: at most one procedure, set by the form.
template <typename... Arguments>
using Event = std::function<void(Arguments...)>;

/// Anything with a name and a place on a form.
///
/// What a person can do to a control is a method of its class, named in the section "A person"; each does
/// nothing on a control that is out of reach (hidden, disabled, or in a frame that is). What a program does
/// to it raises no event, except where a class says so. The form owns the controls as members and lists them
/// in the order of their making; the Tab key follows the eye over their places, from right to left and
/// downwards.
class Control {
 public:
  Control(Form& form, std::string name, Bounds bounds, Frame* frame = nullptr);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control();

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] Form& form() const { return form_; }
  /// The frame that holds the control; null where it stands on the form itself.
  [[nodiscard]] Frame* frame() const { return frame_; }

  [[nodiscard]] const Bounds& bounds() const { return bounds_; }
  void setBounds(const Bounds& bounds);
  [[nodiscard]] bool visible() const { return visible_; }
  void setVisible(bool visible);
  [[nodiscard]] bool enabled() const { return enabled_; }
  void setEnabled(bool enabled);
  /// Visible and enabled, and so is every frame around it.
  [[nodiscard]] bool withinReach() const;
  /// Visible, and so is every frame around it.
  [[nodiscard]] bool shown() const;

  /// What a screen reader says, and what a tooltip shows.
  [[nodiscard]] const std::string& accessibleName() const { return accessibleName_; }
  void setAccessibleName(std::string name) { accessibleName_ = std::move(name); }
  [[nodiscard]] const std::string& hint() const { return hint_; }
  void setHint(std::string hint);

  /// Whether the focus can rest here at all (a label can't be reached by it).
  [[nodiscard]] virtual bool takesFocus() const { return true; }
  [[nodiscard]] bool hasFocus() const;

  // A person, or a program that doesn't mind where it can't be had.
  /// Moves the focus here.
  void focus();

  Event<> onGotFocus;
  Event<> onLostFocus;

  virtual void accept(ControlVisitor& visitor) = 0;

 protected:
  void changed(Change change);
  /// Calls an event procedure of the form. The control may be gone when it returns: raise last.
  template <typename... Arguments>
  void raise(const Event<Arguments...>& event, std::type_identity_t<Arguments>... arguments);
  /// The focus went elsewhere; ahead of onLostFocus.
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

/// A visible border, with or without a title, around the controls that name it as their frame; their bounds
/// count from its corner, and they are out of reach where it is disabled.
class Frame : public Control {
 public:
  Frame(Form& form, std::string name, Bounds bounds, std::string caption = {}, Frame* frame = nullptr)
      : Control(form, std::move(name), bounds, frame), caption_(std::move(caption)) {}

  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// A frame without a border only holds its controls together.
  [[nodiscard]] bool bordered() const { return bordered_; }
  void setBordered(bool bordered) { bordered_ = bordered; }
  /// The width of what is in it, where a narrower frame scrolls over it; 0 for a frame that never scrolls. It
  /// counts for windows that are made behind it.
  [[nodiscard]] Twips scrolledWidth() const { return scrolledWidth_; }
  void setScrolledWidth(Twips width) { scrolledWidth_ = width; }
  [[nodiscard]] bool takesFocus() const override { return false; }
  void accept(ControlVisitor& visitor) override;

 private:
  std::string caption_;
  bool bordered_ = true;
  Twips scrolledWidth_ = 0;
};

/// Text that a person only reads.
class Label : public Control {
 public:
  Label(Form& form, std::string name, Bounds bounds, std::string caption = {}, Frame* frame = nullptr)
      : Control(form, std::move(name), bounds, frame), caption_(std::move(caption)) {}

  [[nodiscard]] const std::string& caption() const { return caption_; }
  void setCaption(std::string caption);
  /// Long text breaks into lines.
  [[nodiscard]] bool wraps() const { return wraps_; }
  void setWraps(bool wraps) { wraps_ = wraps; }
  /// A message stands out from a field's label.
  [[nodiscard]] bool strong() const { return strong_; }
  void setStrong(bool strong) { strong_ = strong; }
  [[nodiscard]] bool takesFocus() const override { return false; }
  void accept(ControlVisitor& visitor) override;

 private:
  std::string caption_;
  bool wraps_ = false;
  bool strong_ = false;
};

/// How much of a long work is done.
class ProgressBar : public Control {
 public:
  using Control::Control;

  [[nodiscard]] int value() const { return value_; }
  [[nodiscard]] int maximum() const { return maximum_; }
  /// Text beside the bar; empty shows the bar alone.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// `value` is kept within 0 and `maximum`.
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
  // A copy: the procedure may set another, or end the form that holds this one.
  const Event<Arguments...> procedure = event;
  form_.call([&] { procedure(arguments...); });
}

}  // namespace ledgertree::ui
