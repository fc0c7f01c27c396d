#pragma once

#include <QObject>
#include <QScrollArea>
#include <QWidget>
#include <optional>

#include "qt/appearance.h"
#include "qt/persian_keyboard.h"
#include "ui/control.h"

namespace ledgertree::qt {

/// What draws one control: its widget, and the two roads between them.
///
/// What a person does to the widget goes to the control's methods, and nothing else changes the control; what
/// a program does to the control arrives by `sync`. Any call of a method of the control may destroy the form:
/// the view stays (its window outlives the events that it is in), but is detached then, so that `standing`
/// has to be asked before the control is touched again.
class ControlView : public QObject {
 public:
  explicit ControlView(ui::Control& control) : base_(&control) {}

  /// The widget that is placed where the control's bounds say.
  [[nodiscard]] virtual QWidget& widget() = 0;
  /// The widget that the focus rests in; null where it can't.
  [[nodiscard]] virtual QWidget* focusWidget() { return nullptr; }
  /// What a screen reader calls it.
  virtual void name(const QString& spoken) { focusWidget()->setAccessibleName(spoken); }
  /// Follows a change that a program made.
  virtual void sync(ui::Change change) = 0;
  /// The font or the scale changed.
  virtual void rescaled(const Scale&) {}
  /// Shows which language the keyboard writes here; nothing where it is only the desktop's own.
  virtual void showLanguage(std::optional<KeyboardLayout>) {}
  /// The size of the widget or its window moved.
  virtual void moved() {}

  [[nodiscard]] bool standing() const { return base_ != nullptr; }
  [[nodiscard]] ui::Control& base() const { return *base_; }
  /// The control is going or gone. Called once, by the window.
  virtual void detach() { base_ = nullptr; }

 private:
  ui::Control* base_;
};

/// A view that knows the class of its control.
template <typename Kind>
class ViewOf : public ControlView {
 public:
  explicit ViewOf(Kind& control) : ControlView(control), control_(control) {}

 protected:
  /// Only while the view stands.
  [[nodiscard]] Kind& control() const { return control_; }

 private:
  Kind& control_;
};

/// Scrolls over what stands on it. It leaves to the window what is brought into view: the toolkit's own way,
/// behind every Tab, takes its bar for one that runs from the left, and scrolls away from the field.
class Ground : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

 protected:
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): the class above is the one that scrolls
  bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }
};

/// While one stands, what a widget tells is the echo of a program's change and no act of the person.
class Echo {
 public:
  explicit Echo(int& depth) : depth_(depth) { ++depth_; }
  Echo(const Echo&) = delete;
  Echo& operator=(const Echo&) = delete;
  ~Echo() { --depth_; }

 private:
  int& depth_;
};

}  // namespace ledgertree::qt
