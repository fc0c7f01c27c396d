#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QScreen>
#include <QScrollBar>
#include <QThread>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "qt/form_window.h"
#include "qt/qt_desktop.h"
#include "qt/spoken_role.h"
#include "ui/timer.h"

// Showing and hiding a window, and keeping the sizes of window and form in step.

namespace ledgertree::qt {

void FormWindow::showAs(Showing showing, QWidget* container) {
  if (showing_ != showing) {
    if (showing_ != Showing::Hidden) QWidget::hide();
    const int loop = QThread::currentThread()->loopLevel() + (showing == Showing::Modal ? 1 : 0);
    shownAtLoop_ = wasShown_ ? std::min(shownAtLoop_, loop) : loop;
    showing_ = showing;
    if (showing == Showing::Embedded) {
      if (container->layout() == nullptr) {
        container->setLayout(new QVBoxLayout);
        container->layout()->setContentsMargins(0, 0, 0, 0);
      }
      container->layout()->addWidget(this);
      orderTabs(container);
    } else {
      const bool modal = showing == Showing::Modal;
      setParent(nullptr, modal ? Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                     Qt::WindowCloseButtonHint |
                                     (form_->resizable() ? Qt::WindowMaximizeButtonHint : Qt::WindowFlags())
                               : Qt::Window);
      setSpokenRole(*this, modal ? QAccessible::Dialog : QAccessible::Window);
      setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
    }
    putUp();
  }
  if (showing_ == Showing::Embedded) return;
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
}

void FormWindow::putUp() {
  const bool first = !wasShown_;
  wasShown_ = true;
  if (showing_ == Showing::Embedded) {
    show();
  } else {
    fitWindow();
    if (QWidget* front = QApplication::activeWindow(); front != nullptr && front != this) {
      create();
      windowHandle()->setTransientParent(front->windowHandle());
      if (showing_ == Showing::Modal)
        move(front->frameGeometry().center() - QPoint(width() / 2, height() / 2));
    }
    if (form_->wantsMaximised() && first) {
      showMaximized();
    } else {
      show();
    }
  }
  if (form_ == nullptr) return;
  windowResized();
  if (form_ == nullptr) return;
  startTimers();
  if (form_ != nullptr) focusFirst();
}

void FormWindow::fitWindow() {
  constexpr int kTitleBar = 40;
  const QSize room = screen()->availableSize() - QSize(0, kTitleBar);
  QSize wanted = scale_.pixels(form_->size());
  // The size that a maximised form is restored to: most of the screen.
  if (form_->wantsMaximised())
    wanted = wanted.expandedTo(scale_.pixels(form_->smallestSize())).expandedTo(room * 0.85);
  if (!bar_->isHidden()) wanted.rheight() += bar_->heightForWidth(wanted.width());
  const bool scrolls = wanted.width() > room.width() || wanted.height() > room.height();
  if (scrolls) {
    // Leave room for the other direction's scroll bar, so that one bar doesn't cause the second.
    const int bar = scroll_->verticalScrollBar()->sizeHint().width();
    wanted =
        QSize(std::min(wanted.width() + bar, room.width()), std::min(wanted.height() + bar, room.height()));
  }
  if (form_->resizable()) {
    resize(wanted);
  } else {
    setFixedSize(wanted);
  }
}

void FormWindow::endShowing() {
  if (showing_ == Showing::Hidden) return;
  showing_ = Showing::Hidden;
  for (QTimer* timer : timers_) timer->stop();
  // Closed, not just hidden: the application notices, and may end with its last window.
  QWidget::close();
  if (parentWidget() != nullptr) setParent(nullptr);
  for (QEventLoop* loop : loops_) loop->exit();
}

void FormWindow::waitUntilHidden() {
  const QPointer<FormWindow> self(this);
  QEventLoop loop;
  loops_.push_back(&loop);
  loop.exec();
  // The loop may have destroyed the window itself.
  if (!self.isNull()) std::erase(loops_, &loop);
}

void FormWindow::startTimers() {
  if (timers_.empty()) {
    for (ui::Timer* timer : form_->timers()) {
      auto* ticking = new QTimer(this);
      ticking->setInterval(timer->interval());
      connect(ticking, &QTimer::timeout, this, [this, timer] {
        if (form_ != nullptr && !desktop_->repainting()) timer->tick();
      });
      timers_.push_back(ticking);
    }
  }
  for (QTimer* timer : timers_) timer->start();
}

void FormWindow::focusFirst() {
  ui::Control* first = form_->firstFocus();
  if (first != nullptr && first->withinReach() && first->takesFocus()) return moveFocus(*first);
  reportFocus();
}

void FormWindow::popUp(const ui::MenuEntry& menu, ui::Twips left, ui::Twips top) {
  const QPoint corner = canvas_->mapToGlobal(QPoint(scale_.pixels(left), scale_.pixels(top)));
  menus_.makePopUp(menu, *this)->popup(corner);
}

ui::Size FormWindow::leastSize() const {
  const ui::Size design = form_->designSize();
  const ui::Size smallest = form_->smallestSize();
  // A form that grew past the height from which it lays itself out goes back to that height; one that never
  // did keeps its design size.
  return {smallest.width, std::max(design.height, std::min(smallest.height, form_->size().height))};
}

QSize FormWindow::room() const {
  const QSize least = scale_.pixels(leastSize());
  const QSize window = scroll_->maximumViewportSize();
  const int bar = scroll_->verticalScrollBar()->sizeHint().width();
  bool across = least.width() > window.width();
  const bool along = least.height() > window.height() - (across ? bar : 0);
  across = least.width() > window.width() - (along ? bar : 0);
  return window - QSize(along ? bar : 0, across ? bar : 0);
}

void FormWindow::windowResized() {
  if (form_ == nullptr || showing_ == Showing::Hidden) return;
  if (form_->resizable()) {
    const ui::Size least = leastSize();
    const QSize pixels = scale_.pixels(least);
    const QSize present = room();
    const ui::Size size = scale_.twips(present);
    const Echo resizing(resizing_);
    form_->resize({present.width() <= pixels.width() ? least.width : size.width,
                   present.height() <= pixels.height() ? least.height : size.height});
  }
  if (form_ != nullptr) fitCanvas();
}

void FormWindow::fitCanvas() {
  // A form may leave its controls where a larger size put them: they must all be in the scroll range.
  constexpr ui::Twips kRounding = 30;
  const ui::Size size = form_->size();
  ui::Size needed = leastSize();
  needed = {std::min(needed.width, size.width), std::min(needed.height, size.height)};
  for (const ui::Control* control : form_->controls()) {
    if (control->frame() != nullptr || !control->visible()) continue;
    const ui::Bounds& bounds = control->bounds();
    if (bounds.left + bounds.width > size.width + kRounding)
      needed.width = std::max(needed.width, bounds.left + bounds.width);
    if (bounds.top + bounds.height > size.height + kRounding)
      needed.height = std::max(needed.height, bounds.top + bounds.height);
  }
  canvas_->setMinimumSize(scale_.pixels(needed));
}

void FormWindow::followSize() {
  if (resizing_ > 0) return;
  // A program asked for the size: the window follows if it can.
  fitCanvas();
  if (showing_ == Showing::Modeless || showing_ == Showing::Modal) {
    if (!isMaximized()) fitWindow();
  }
}

void FormWindow::closeEvent(QCloseEvent* event) {
  if (form_ != nullptr && showing_ != Showing::Hidden) {
    event->ignore();
    if (desktop_->repainting()) return;
    form_->closeByPerson();
  }
  event->setAccepted(form_ == nullptr || showing_ == Showing::Hidden);
}

void FormWindow::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  for (ControlView* view : views_) {
    if (view->attached()) view->moved();
  }
}

bool FormWindow::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (event->type() == QEvent::ApplicationFontChange && form_ != nullptr && font() != screenFont()) {
    setFont(screenFont());
    rescale();
    // The user chose the size of a window that can be resized.
    if (!form_->resizable() && (showing_ == Showing::Modal || showing_ == Showing::Modeless)) fitWindow();
    windowResized();
  }
  return handled;
}

}  // namespace ledgertree::qt
