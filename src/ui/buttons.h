#pragma once

#include <string>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

class PushButton : public Control {
 public:
  PushButton(Form& form, std::string name, Bounds bounds, std::string caption, Frame* frame = nullptr)
      : Control(form, std::move(name), bounds, frame), caption_(std::move(caption)) {}

  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// Works anywhere on the form. The renderer shows it in the tooltip.
  [[nodiscard]] const KeyChord& shortcut() const { return shortcut_; }
  void setShortcut(const KeyChord& shortcut) { shortcut_ = shortcut; }

  // User actions.
  void click();
  /// Enter and Space click.
  void press(Key key);

  Event<> onClick;
  void accept(ControlVisitor& visitor) override;

 private:
  std::string caption_;
  KeyChord shortcut_;
};

/// One radio button of a frame (or of the form). At most one of each group is on.
class RadioButton : public Control {
 public:
  RadioButton(Form& form, std::string name, Bounds bounds, std::string caption, Frame* frame = nullptr)
      : Control(form, std::move(name), bounds, frame), caption_(std::move(caption)) {}

  [[nodiscard]] const std::string& caption() const { return caption_; }
  [[nodiscard]] bool value() const { return value_; }
  /// Turning one on turns the others of its frame off.
  void setValue(bool value);

  // User actions.
  /// Turns the button on and raises onClick, even if it is already on.
  void click();

  Event<> onClick;
  void accept(ControlVisitor& visitor) override;

 private:
  std::string caption_;
  bool value_ = false;
};

class CheckBox : public Control {
 public:
  CheckBox(Form& form, std::string name, Bounds bounds, std::string caption, Frame* frame = nullptr)
      : Control(form, std::move(name), bounds, frame), caption_(std::move(caption)) {}

  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// 0 off, 1 on.
  [[nodiscard]] int value() const { return value_; }
  void setValue(int value);

  // User actions.
  void click();

  Event<> onClick;
  void accept(ControlVisitor& visitor) override;

 private:
  std::string caption_;
  int value_ = 0;
};

}  // namespace ledgertree::ui
