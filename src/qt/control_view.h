#pragma once

#include <QObject>
#include <QScrollArea>
#include <QWidget>
#include <optional>

#include "qt/appearance.h"
#include "qt/persian_keyboard.h"
#include "ui/control.h"

namespace ledgertree::qt {

/// Binds a control to its widget, both ways.
///
/// User actions on the widget call the control's methods, and nothing else here changes the control; changes
/// made by a program arrive by `sync`. Any call of a control's method may destroy the form. The view stays,
/// as its window outlives the events that it is handling, but is then detached: check `attached` before using
/// the control again.
class ControlView : public QObject {
 public:
  explicit ControlView(ui::Control& control) : base_(&control) {}

  /// The widget that gets the control's bounds.
  [[nodiscard]] virtual QWidget& widget() = 0;
  /// The widget that takes the focus; null if none does.
  [[nodiscard]] virtual QWidget* focusWidget() { return nullptr; }
  /// Sets the name for screen readers.
  virtual void name(const QString& spoken) { focusWidget()->setAccessibleName(spoken); }
  /// Applies a change made by a program.
  virtual void sync(ui::Change change) = 0;
  /// The font or the scale changed.
  virtual void rescaled(const Scale&) {}
  /// Shows which language the keyboard writes here; shows nothing if that is up to the desktop.
  virtual void showLanguage(std::optional<KeyboardLayout>) {}
  /// The widget's size or its window's position changed.
  virtual void moved() {}

  [[nodiscard]] bool attached() const { return base_ != nullptr; }
  [[nodiscard]] ui::Control& base() const { return *base_; }
  /// The control is being destroyed. Called once, by the window.
  virtual void detach() { base_ = nullptr; }

 private:
  ui::Control* base_;
};

/// A view that knows its control's class.
template <typename ControlType>
class ViewOf : public ControlView {
 public:
  explicit ViewOf(ControlType& control) : ControlView(control), control_(control) {}

 protected:
  /// Only while the view is attached.
  [[nodiscard]] ControlType& control() const { return control_; }

 private:
  ControlType& control_;
};

/// A scroll area that leaves it to the window what to scroll into view. The toolkit does so itself after
/// every Tab, but assumes a left-to-right scroll bar and scrolls away from the field.
class FormScrollArea : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

 protected:
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): the class above is the one that scrolls
  bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }
};

/// During its lifetime, signals of a widget echo a program's change and aren't user actions.
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
