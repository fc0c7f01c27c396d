#include "qt/qt_desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPixmap>
#include <QThread>
#include <QTimer>
#include <stdexcept>
#include <utility>

#include "qt/form_window.h"
#include "qt/hourglass.h"
#include "qt/text.h"
#include "qt/wait_panel.h"
#include "ui/control.h"
#include "ui/menu.h"

namespace ledgertree::qt {

namespace {

/// The desktops of the process. The application closes the windows when it ends; a desktop may live longer
/// (as a static object does), and draws nothing from then on.
std::vector<QtDesktop*>& desktops() {
  // Never destroyed: the order in which static objects are destroyed depends on the order of their first use.
  static auto& known = *new std::vector<QtDesktop*>;
  return known;
}

void endWindowsOfAll() {
  for (QtDesktop* desktop : desktops()) desktop->endWindows();
}

/// Discards the user's key and mouse events, and records whether Escape was among them.
class EscapeAlone : public QObject {
 public:
  [[nodiscard]] bool pressed() const { return pressed_; }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::KeyPress:
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) pressed_ = true;
        return true;
      case QEvent::KeyRelease:
      case QEvent::ShortcutOverride:
      case QEvent::Shortcut:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::ContextMenu:
      case QEvent::TouchBegin:
      case QEvent::TouchUpdate:
      case QEvent::TouchEnd:
      case QEvent::InputMethod:
        return true;
      default:
        return false;
    }
  }

 private:
  bool pressed_ = false;
};

/// The name that the application announces while one of its desktops waits.
constexpr const char* kWaits = "ledgertreeWaits";

int loopDepth() { return QThread::currentThread()->loopLevel(); }

}  // namespace

QtDesktop::QtDesktop() : idleTimer_(new QTimer(this)) {
  // An interval of 0 fires when the event queue is empty.
  idleTimer_->setInterval(0);
  connect(idleTimer_, &QTimer::timeout, this, [this] { runIdle(); });
  if (desktops().empty()) qAddPostRoutine(endWindowsOfAll);
  desktops().push_back(this);
}

QtDesktop::~QtDesktop() {
  std::erase(desktops(), this);
  if (desktops().empty()) qRemovePostRoutine(endWindowsOfAll);
  if (qApp == nullptr) return;
  showHourglass(false);
  while (!windows_.empty()) close(*windows_.begin()->first);
  for (const auto& window : ended_) {
    if (!window.isNull()) window->deleteLater();
  }
}

void QtDesktop::endWindows() {
  showHourglass(false);
  idleTimer_->stop();
  const auto windows = std::move(windows_);
  windows_.clear();
  for (const auto& [form, window] : windows) delete window.data();
  for (const auto& window : std::exchange(ended_, {})) delete window.data();
}

FormWindow* QtDesktop::windowOf(const ui::Form& form) const {
  const auto found = windows_.find(const_cast<ui::Form*>(&form));
  return found == windows_.end() ? nullptr : found->second.data();
}

FormWindow& QtDesktop::windowFor(ui::Form& form) {
  auto& window = windows_[&form];
  if (window.isNull()) window = new FormWindow(form, *this);
  return *window;
}

void QtDesktop::embed(const std::string& formName, QWidget* container) { containers_[formName] = container; }

void QtDesktop::show(ui::Form& form) {
  if (qApp == nullptr) return;
  endWaiting();
  FormWindow* known = windowOf(form);
  if (known != nullptr && known->showing() != FormWindow::Showing::Hidden)
    return known->showAs(known->showing());
  if (!modelessAllowed_)
    throw ui::DesktopError(ui::DesktopError::kNoModelessForms, "the host accepts only modal forms");
  const auto container = containers_.find(form.name());
  QWidget* place = container == containers_.end() ? nullptr : container->second.data();
  FormWindow& window = windowFor(form);
  form.setShown(true);
  window.showAs(place == nullptr ? FormWindow::Showing::Modeless : FormWindow::Showing::Embedded, place);
}

void QtDesktop::showModal(ui::Form& form) {
  if (qApp == nullptr) return;
  endWaiting();
  const Apart apart(*this);
  const QPointer<FormWindow> window(&windowFor(form));
  const QPointer<QWidget> front(QApplication::activeWindow());
  const QPointer<QWidget> focus(QApplication::focusWidget());
  form.setShown(true);
  window->showAs(FormWindow::Showing::Modal);
  // Showing it runs event procedures, which may have closed it already.
  if (!window.isNull() && window->showing() == FormWindow::Showing::Modal) window->waitUntilHidden();
  // The application is ending: the loop ended without the form being hidden.
  if (!window.isNull() && window->form() != nullptr && window->showing() == FormWindow::Showing::Modal)
    hide(*window->form());
  if (!front.isNull() && front != window.data() && front->isVisible()) {
    front->activateWindow();
    if (!focus.isNull() && focus->window() == front && focus->isVisible() && focus->isEnabled())
      focus->setFocus(Qt::ActiveWindowFocusReason);
  }
  endWaiting();
}

void QtDesktop::hide(ui::Form& form) {
  form.setShown(false);
  if (FormWindow* window = windowOf(form); window != nullptr) window->endShowing();
}

void QtDesktop::close(ui::Form& form) {
  const auto found = windows_.find(&form);
  if (found == windows_.end()) return;
  const QPointer<FormWindow> window = found->second;
  windows_.erase(found);
  form.setShown(false);
  if (window.isNull()) return;
  window->detach();
  window->endShowing();
  endLater(*window);
}

void QtDesktop::endLater(FormWindow& window) {
  // If events of the window may be pending in an outer loop, delete it when the current loop has ended.
  if (loopDepth() <= window.shownAtLoop()) window.deleteLater();
  ended_.emplace_back(&window);
}

void QtDesktop::endWaiting() {
  std::erase_if(ended_, [](const QPointer<FormWindow>& window) {
    if (!window.isNull() && loopDepth() <= window->shownAtLoop()) window->deleteLater();
    return window.isNull();
  });
}

void QtDesktop::forget(const FormWindow& window) {
  std::erase_if(windows_,
                [&](const auto& known) { return known.second.isNull() || known.second == &window; });
}

void QtDesktop::popUpMenu(ui::Form& form, ui::MenuEntry& menu, ui::Twips left, ui::Twips top) {
  if (FormWindow* window = windowOf(form); window != nullptr) window->popUp(menu, left, top);
}

void QtDesktop::copyText(std::string_view text) {
  if (qApp != nullptr) QApplication::clipboard()->setText(toQt(text));
}

void QtDesktop::openGuide(ui::Form& form) {
  FormWindow* window = windowOf(form);
  if (window == nullptr) return;
  // The guide handles its key for any widget that offers it, and belongs to no desktop (see help_offer.h).
  QKeyEvent press(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
  QApplication::sendEvent(window, &press);
}

void QtDesktop::setCursor(ui::CursorShape shape) {
  if (qApp != nullptr) showHourglass(shape == ui::CursorShape::Hourglass);
}

void QtDesktop::moveFocus(ui::Control& control) {
  if (FormWindow* window = windowOf(control.form()); window != nullptr) window->moveFocus(control);
}

void QtDesktop::repaint(ui::Form& form) {
  if (windowOf(form) == nullptr) return;
  ++repainting_;
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  --repainting_;
}

bool QtDesktop::repaintAndHearEscape(ui::Form& form) {
  if (windowOf(form) == nullptr) return false;
  EscapeAlone escape;
  qApp->installEventFilter(&escape);
  ++repainting_;
  QApplication::processEvents();
  --repainting_;
  return escape.pressed();
}

bool QtDesktop::repainting() const {
  return repainting_ > 0 || (qApp != nullptr && qApp->property(kWaits).toBool());
}

FormWindow* QtDesktop::frontWindow() const {
  FormWindow* front = nullptr;
  for (const auto& [form, window] : windows_) {
    if (window.isNull() || !window->isVisible()) continue;
    if (window->window() == QApplication::activeWindow()) return window;
    // A modal window is above the others.
    if (front == nullptr || window->showing() == FormWindow::Showing::Modal) front = window;
  }
  return front;
}

bool QtDesktop::showWait(std::string_view text, std::string_view wayOut) {
  if (qApp == nullptr) return false;
  if (waitPanel_.isNull()) waitPanel_ = new WaitPanel(frontWindow());
  qApp->setProperty(kWaits, true);
  waitPanel_->tell(text, wayOut);
  const bool left = waitPanel_->takeEvents();
  return left;
}

void QtDesktop::hideWait() {
  if (qApp == nullptr) return;
  qApp->setProperty(kWaits, false);
  delete waitPanel_.data();
}

void QtDesktop::chooseKeyboardLayout(std::string_view layout) {
  const KeyboardLayout chosen = keyboardLayoutOf(layout);
  if (chosen != KeyboardLayout::Own && !keyboardTarget_.isNull()) keyboardTarget_->chooseKeyboard(chosen);
}

void QtDesktop::setKeyboardTarget(FormWindow* window) { keyboardTarget_ = window; }

void QtDesktop::whenIdle(std::function<void()> procedure) {
  {
    const std::lock_guard lock(idleMutex_);
    idle_.push_back(std::move(procedure));
  }
  if (QThread::currentThread() == thread()) {
    idleTimer_->start();
  } else {
    QMetaObject::invokeMethod(
        idleTimer_, [timer = idleTimer_] { timer->start(); }, Qt::QueuedConnection);
  }
}

void QtDesktop::runIdle() {
  if (repainting()) return;
  std::function<void()> procedure;
  {
    const std::lock_guard lock(idleMutex_);
    if (idle_.empty()) return idleTimer_->stop();
    procedure = std::move(idle_.front());
    idle_.pop_front();
  }
  procedure();
}

void QtDesktop::renderToPng(ui::Form& form, const std::string& path, QSize size) {
  const QPointer<FormWindow> window(windowOf(form));
  if (window.isNull() || window->showing() == FormWindow::Showing::Hidden)
    throw std::runtime_error("only a form that is shown can be saved as a picture");
  if (!size.isEmpty()) {
    if (window->isMaximized()) window->showNormal();
    window->resize(size);
  }
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  if (window.isNull()) throw std::runtime_error("the form closed while its picture was being taken");
  if (!window->grab().save(toQt(path), "PNG")) throw std::runtime_error("can't write the picture " + path);
}

}  // namespace ledgertree::qt
