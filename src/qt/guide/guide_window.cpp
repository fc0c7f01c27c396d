#include "qt/guide/guide_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "qt/appearance.h"
#include "qt/help_offer.h"
#include "qt/text_view.h"

namespace ledgertree::qt {

namespace {

QPointer<GuideWindow>& openGuide() {
  static QPointer<GuideWindow> guide;
  return guide;
}

QWidget* widgetOf(const QWindow* window) {
  const auto widgets = QApplication::topLevelWidgets();
  const auto found = std::find_if(widgets.begin(), widgets.end(), [window](const QWidget* widget) {
    return window != nullptr && widget->windowHandle() == window;
  });
  return found == widgets.end() ? nullptr : *found;
}

/// The names that may have a section of their own, the most specific first: the focused widget, the frames
/// around it, the screen.
QStringList sectionsFor(const QWidget& screen) {
  QStringList names;
  for (const QWidget* widget = screen.focusWidget(); widget != nullptr && widget != &screen;
       widget = widget->parentWidget()) {
    if (!widget->objectName().isEmpty()) names += screen.objectName() + "." + widget->objectName();
  }
  return names += screen.objectName();
}

/// Handles F1 for the screens that offer the guide, after the widgets in them. In a host's window the same
/// key may be a command of the host, so the focus decides.
class GuideKey : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool press = event->type() == QEvent::KeyPress;
    if (!press && event->type() != QEvent::ShortcutOverride) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.key() != Qt::Key_F1 || key.modifiers() != Qt::NoModifier) return false;
    const auto message = messageOfOffer(*watched);
    if (!message) return false;
    event->accept();
    auto& screen = *static_cast<QWidget*>(watched);
    if (press && !key.isAutoRepeat()) GuideWindow::open(screen, sectionsFor(screen), *message);
    return true;
  }
};

}  // namespace

void installGuide() {
  static QPointer<GuideKey> key;
  if (!key.isNull()) return;
  key = new GuideKey(qApp);
  qApp->installEventFilter(key);
}

GuideWindow* GuideWindow::current() { return openGuide(); }

GuideWindow::GuideWindow() : text_(new GuideBrowser(*this)), contents_(new QListWidget), search_(nullptr) {
  setAttribute(Qt::WA_DeleteOnClose);
  // The application ends with its screens, even if the guide is still open.
  setAttribute(Qt::WA_QuitOnClose, false);
  setObjectName("GuideWindow");
  setWindowTitle(QString::fromUtf8("راهنماي سرفصل حسابها"));
  setLayoutDirection(Qt::RightToLeft);
  setFont(screenFont());
  setPalette(screenPalette(toQt(ui::kScreenBackground)));

  makeSearchLine();
  text_->setAccessibleName(windowTitle());
  connect(text_, &QTextBrowser::anchorClicked, this,
          [this](const QUrl& link) { showSection({link.fragment()}); });
  contents_->setAccessibleName(QString::fromUtf8("فهرست راهنما"));
  contents_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  contents_->setMaximumWidth(36 * fontMetrics().averageCharWidth());
  fillContents();
  layOut();
  dress(*this);
  static_cast<void>(winId());  // creates the native window, which stays above others
}

void GuideWindow::makeSearchLine() {
  auto* line = new LineEditor(*this);
  search_ = line;
  search_->setPlaceholderText(QString::fromUtf8("جستجو در راهنما (Ctrl+F)"));
  search_->setAccessibleName(QString::fromUtf8("جستجو در راهنما"));
  search_->setClearButtonEnabled(true);
  // The keys of a Latin keyboard write Persian here, as on the screens.
  line->typist.characters = [](const QKeyEvent& key) {
    return typedCharacters(key, KeyboardLayout::Persian);
  };
  connect(search_, &QLineEdit::returnPressed, this,
          [this] { searchOn(QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)); });
  connect(search_, &QLineEdit::textEdited, this, [this] {
    QTextCursor cursor = text_->textCursor();
    cursor.setPosition(cursor.selectionStart());
    text_->setTextCursor(cursor);
    searchOn(false);
  });
}

void GuideWindow::layOut() {
  auto* halves = new QSplitter(this);
  halves->addWidget(contents_);
  halves->addWidget(text_);
  halves->setStretchFactor(1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(search_);
  layout->addWidget(halves, 1);
  setTabOrder(text_, contents_);
  setTabOrder(contents_, search_);
  const int letter = fontMetrics().averageCharWidth();
  resize(QSize(160 * letter, 46 * fontMetrics().height())
             .boundedTo(QApplication::primaryScreen()->availableSize() * 9 / 10));
}

void GuideWindow::fillContents() {
  for (const auto& heading : text_->headings()) {
    constexpr int kDeepest = 3;
    if (heading.level < 2 || heading.level > kDeepest) continue;
    const QString indent(heading.level == kDeepest ? 4 : 0, QChar(QChar::Nbsp));
    auto* entry = new QListWidgetItem(indent + heading.title, contents_);
    entry->setData(Qt::UserRole, heading.position);
    if (heading.level == 2) {
      QFont strong = contents_->font();
      strong.setBold(true);
      entry->setFont(strong);
    }
  }
  const auto go = [this](const QListWidgetItem* entry) {
    if (entry != nullptr) text_->scrollTo(entry->data(Qt::UserRole).toInt());
  };
  connect(contents_, &QListWidget::itemClicked, this, go);
  connect(contents_, &QListWidget::currentItemChanged, this, go);
}

void GuideWindow::open(QWidget& asker, const QStringList& sections, const QString& message) {
  QPointer<GuideWindow>& guide = openGuide();
  if (guide.isNull()) {
    guide = new GuideWindow;
    guide->focus_ = QApplication::focusWidget();
  }
  guide->standAbove(*asker.window());
  // The windowing system has to know the window's owner before it is shown.
  guide->hide();
  guide->show();
  guide->raise();
  guide->activateWindow();
  guide->text_->setFocus();
  guide->showSection(sections);
  if (!message.isEmpty()) guide->find(message.left(message.indexOf('\n')));
}

void GuideWindow::showSection(const QStringList& names) {
  const GuideBrowser::Heading* heading = nullptr;
  section_.clear();
  for (const QString& name : names) {
    heading = text_->find(name);
    if (heading == nullptr) continue;
    section_ = name;
    break;
  }
  const int position = heading == nullptr ? 0 : heading->position;
  markContents(position);
  text_->scrollTo(position);
}

void GuideWindow::markContents(int position) {
  const QSignalBlocker quiet(contents_);
  int row = -1;
  while (row + 1 < contents_->count() && contents_->item(row + 1)->data(Qt::UserRole).toInt() <= position)
    ++row;
  contents_->setCurrentRow(row);
}

bool GuideWindow::find(const QString& text, bool backwards) {
  const bool found = text_->search(text, backwards);
  if (found) markContents(text_->textCursor().selectionStart());
  return found;
}

void GuideWindow::searchOn(bool backwards) {
  const bool found = search_->text().isEmpty() || find(search_->text(), backwards);
  QPalette colours = palette();
  if (!found) colours.setColor(QPalette::Text, QColor(0xB0, 0x20, 0x20));
  search_->setPalette(colours);
}

void GuideWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else if (event->modifiers().testFlag(Qt::ControlModifier) && latinKey(*event) == 'F') {
    search_->setFocus();
    search_->selectAll();
  } else if (event->key() == Qt::Key_F3) {
    searchOn(event->modifiers().testFlag(Qt::ShiftModifier));
  } else {
    QWidget::keyPressEvent(event);
  }
}

void GuideWindow::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  if (above_.isNull() || !above_->isVisible()) return;
  above_->removeEventFilter(this);
  above_->activateWindow();
  if (!focus_.isNull() && focus_->window() == above_ && focus_->isVisible() && focus_->isEnabled())
    focus_->setFocus(Qt::ActiveWindowFocusReason);
}

// The window that the guide stays above.

void GuideWindow::standAbove(QWidget& window) {
  if (&window == this) return;
  if (!above_.isNull()) above_->removeEventFilter(this);
  // A window that was opened while the guide was in front stays above it: the two would be above each other.
  if (window.windowHandle()->transientParent() == windowHandle() && !above_.isNull())
    window.windowHandle()->setTransientParent(above_->windowHandle());
  above_ = &window;
  above_->installEventFilter(this);
  if (QWidget* focus = window.focusWidget(); focus != nullptr) focus_ = focus;
  // A window owned by a modal one isn't blocked by it.
  windowHandle()->setTransientParent(window.windowHandle());
}

void GuideWindow::standAboveNext() {
  QWidget* next = QApplication::activeModalWidget();
  if (next == nullptr || next == above_) {
    const QWindow* below = above_.isNull() || above_->windowHandle() == nullptr
                               ? nullptr
                               : above_->windowHandle()->transientParent();
    next = widgetOf(below);
  }
  if (next == nullptr || !next->isVisible()) {
    close();
    return;
  }
  standAbove(*next);
}

bool GuideWindow::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  // A modal screen or a message was opened: the guide stays readable beside it.
  if (event->type() == QEvent::WindowBlocked) {
    QTimer::singleShot(0, this, [this] {
      if (QWidget* front = QApplication::activeModalWidget(); front != nullptr) standAbove(*front);
    });
  }
  return handled;
}

bool GuideWindow::eventFilter(QObject* watched, QEvent* event) {
  const bool gone = event->type() == QEvent::Hide && !event->spontaneous();
  if (watched == above_ && gone) standAboveNext();
  return QWidget::eventFilter(watched, event);
}

}  // namespace ledgertree::qt
