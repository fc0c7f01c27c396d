#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>

#include "qt/form_window.h"
#include "qt/keys.h"
#include "qt/qt_desktop.h"
#include "ui/buttons.h"
#include "ui/divider.h"

// The focus, the keyboard layout, and the keys of the form.

namespace ledgertree::qt {

namespace {

/// The scroll area's own method assumes a left-to-right scroll bar.
void scrollTo(const QScrollArea& area, const QWidget& widget) {
  const QRect room = area.viewport()->rect();
  const QRect place(widget.mapTo(area.viewport(), QPoint(0, 0)), widget.size());
  int right = 0;
  int down = 0;
  if (place.right() > room.right()) {
    right = room.right() - place.right();
  } else if (place.left() < room.left()) {
    right = std::min(room.left() - place.left(), room.right() - place.right());
  }
  if (place.top() < room.top()) {
    down = room.top() - place.top();
  } else if (place.bottom() > room.bottom()) {
    down = -std::min(place.bottom() - room.bottom(), place.top() - room.top());
  }
  QScrollBar& across = *area.horizontalScrollBar();
  across.setValue(across.value() + right);
  QScrollBar& along = *area.verticalScrollBar();
  along.setValue(along.value() - down);
}

}  // namespace

void FormWindow::moveFocus(ui::Control& control) {
  ControlView* view = viewOf(&control);
  if (view == nullptr || view->focusWidget() == nullptr) return;
  view->focusWidget()->setFocus(Qt::OtherFocusReason);
  // A window in the background gets no event for it.
  if (form_ != nullptr && form_->focused() != &control) focusArrived(*view);
}

void FormWindow::focusArrived(ControlView& view) {
  if (form_ == nullptr) return;
  if (syncing_ > 0) {
    // Qt moves the focus on when a program hides or disables its widget. The form is notified when the
    // program is done, not in the middle of it.
    QTimer::singleShot(0, this, [this] { reportFocus(); });
    return;
  }
  bringIntoView(view.widget());
  desktop_->setKeyboardTarget(this);
  // The layout stays until a field asks for another one, as on a real keyboard.
  if (form_->focused() != &view.base()) form_->focusMoved(&view.base());
  showKeyboard();
}

void FormWindow::bringIntoView(const QWidget& widget) {
  // A scrolling frame first, then the window.
  for (QWidget* around = widget.parentWidget(); around != this; around = around->parentWidget()) {
    if (auto* area = qobject_cast<QScrollArea*>(around)) scrollTo(*area, widget);
  }
}

void FormWindow::reportFocus() {
  if (form_ == nullptr || showing_ == Showing::Hidden) return;
  const auto found = byFocusWidget_.find(focusWidget());
  if (found != byFocusWidget_.end() && found->second->base().withinReach())
    return focusArrived(*found->second);
  // The focused control is out of reach now: focus the next one that isn't.
  auto order = tabOrderOf(nullptr);
  const ControlView* lost = viewOf(form_->focused());
  if (lost != nullptr) {
    const auto place = std::find(order.begin(), order.end(), const_cast<ControlView*>(lost)->focusWidget());
    std::rotate(order.begin(), place, order.end());
  }
  for (QWidget* widget : order) {
    ui::Control& control = byFocusWidget_.at(widget)->base();
    if (control.withinReach() && control.takesFocus()) return moveFocus(control);
  }
  form_->focusMoved(nullptr);
}

void FormWindow::chooseKeyboard(KeyboardLayout layout) {
  keyboard_ = chosenKeyboard_ = layout;
  showKeyboard();
}

void FormWindow::toggleKeyboard() {
  if (chosenKeyboard_ == KeyboardLayout::Own) chosenKeyboard_ = KeyboardLayout::Persian;
  keyboard_ = keyboard_ == KeyboardLayout::Own ? chosenKeyboard_ : KeyboardLayout::Own;
  showKeyboard();
}

void FormWindow::showKeyboard() {
  if (form_ == nullptr) return;
  for (ControlView* view : views_) {
    const bool here = &view->base() == form_->focused() && chosenKeyboard_ != KeyboardLayout::Own;
    view->showLanguage(here ? std::optional(keyboard_) : std::nullopt);
  }
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  const ui::KeyChord chord = chordOf(*event);
  event->ignore();
  if (form_ == nullptr || chord.empty() || event->isAutoRepeat()) return;
  if (form_->press(chord)) return event->accept();
  const bool enter = chord.key == ui::Key::Enter && !chord.ctrl && !chord.alt;
  if (!enter || form_ == nullptr || !form_->enterMovesOn()) return;
  event->accept();
  goToField(!chord.shift);
}

/// In tab order, but skipping buttons: Enter would get stuck on them.
void FormWindow::goToField(bool forward) {
  auto order = tabOrderOf(nullptr);
  if (!forward) std::reverse(order.begin(), order.end());
  const auto here = std::find(order.begin(), order.end(), focusWidget());
  if (here == order.end()) return;
  std::rotate(order.begin(), here, order.end());
  for (auto next = order.begin() + 1; next != order.end(); ++next) {
    const ui::Control& control = byFocusWidget_.at(*next)->base();
    const bool field = dynamic_cast<const ui::PushButton*>(&control) == nullptr &&
                       dynamic_cast<const ui::Divider*>(&control) == nullptr;
    if (field && control.withinReach() && ((*next)->focusPolicy() & Qt::TabFocus) != 0)
      return (*next)->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  }
}

bool FormWindow::ownsKey(const QKeyEvent& event) const {
  const ui::KeyChord chord = chordOf(event);
  const bool plain = !chord.ctrl && !chord.alt && (chord.key < ui::Key::F1 || chord.key > ui::Key::F12);
  return form_ != nullptr && !chord.empty() && !plain && form_->hasShortcut(chord);
}

bool FormWindow::shortcut(const QKeyEvent& event) {
  if (!ownsKey(event)) return false;
  return event.isAutoRepeat() || form_->press(chordOf(event));
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == scroll_) {
    if (event->type() == QEvent::Resize) windowResized();
    return false;
  }
  if (event->type() == QEvent::ShortcutOverride && ownsKey(*static_cast<QKeyEvent*>(event))) {
    // In a host's window the same key may be a command of the host, so the focus decides.
    event->accept();
    return true;
  }
  if (event->type() != QEvent::KeyPress || form_ == nullptr) return false;
  // Editors have keys like Ctrl+E of their own; a key that is a command of the form takes precedence.
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (shortcut(key)) return true;
  if (form_ != nullptr && key.key() == Qt::Key_F8 && key.modifiers() == Qt::NoModifier) {
    toggleKeyboard();
    return true;
  }
  if (form_ != nullptr && key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier) {
    // The toolkit knows only the key that is made for it.
    auto& widget = *qobject_cast<QWidget*>(watched);
    const QPoint middle = widget.rect().center();
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, middle, widget.mapToGlobal(middle));
    QApplication::sendEvent(&widget, &asked);
    return true;
  }
  return false;
}

}  // namespace ledgertree::qt
