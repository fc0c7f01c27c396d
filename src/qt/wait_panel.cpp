#include "qt/wait_panel.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>

#include "qt/appearance.h"
#include "qt/text.h"

namespace ledgertree::qt {

WaitPanel::WaitPanel(QWidget* window)
    : QFrame(window != nullptr ? window : QApplication::activeWindow()),
      label_(new QLabel(this)),
      button_(new QPushButton(this)) {
  if (window == nullptr) {
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_ShowWithoutActivating);
  }
  setObjectName("WaitPanel");
  setFont(screenFont());
  setPalette(screenPalette(QColor(0xFF, 0xF7, 0xD6)));
  setAutoFillBackground(true);
  setFrameStyle(QFrame::Box | QFrame::Plain);
  setLayoutDirection(Qt::RightToLeft);
  setCursor(Qt::ArrowCursor);
  button_->setFocusPolicy(Qt::NoFocus);
  connect(button_, &QPushButton::clicked, this, [this] { left_ = true; });
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(18, 14, 18, 14);
  row->setSpacing(18);
  row->addWidget(label_);
  row->addWidget(button_);
  dress(*this);
}

void WaitPanel::tell(std::string_view text, std::string_view wayOut) {
  label_->setText(toQt(text));
  setAccessibleName(label_->text());
  button_->setText(toQt(wayOut) + " (Esc)");
  button_->setVisible(!wayOut.empty());
  adjustSize();
  const QRect room = isWindow() ? screen()->availableGeometry() : parentWidget()->rect();
  move(room.center() - rect().center());
  show();
  raise();
}

bool WaitPanel::takeEvents() {
  qApp->installEventFilter(this);
  QApplication::processEvents();
  qApp->removeEventFilter(this);
  const bool left = left_ && !button_->isHidden();
  left_ = false;
  return left;
}

bool WaitPanel::isOurs(const QObject* watched) const {
  // A window passes its events on to the widget that they belong to, which is filtered next.
  if (watched->isWindowType()) return true;
  const auto* widget = qobject_cast<const QWidget*>(watched);
  return widget != nullptr && (widget == this || isAncestorOf(widget));
}

bool WaitPanel::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) left_ = true;
      return true;
    case QEvent::Close:
      // Closing a window now would close its screen in the middle of its work.
      event->ignore();
      return true;
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::Wheel:
    case QEvent::DragEnter:
    case QEvent::Drop:
      return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
      return !isOurs(watched);
    default:
      return false;
  }
}

}  // namespace ledgertree::qt
