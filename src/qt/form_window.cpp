#include "qt/form_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QThread>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>

#include "qt/grid_view.h"
#include "qt/keys.h"
#include "qt/labelling.h"
#include "qt/list_views.h"
#include "qt/lookup_view.h"
#include "qt/plain_views.h"
#include "qt/qt_desktop.h"
#include "qt/reading_order.h"
#include "qt/text.h"
#include "qt/text_view.h"
#include "qt/tree_view.h"
#include "ui/timer.h"

namespace ledgertree::qt {

FormWindow::FormWindow(ui::Form& form, QtDesktop& desktop)
    : form_(&form),
      desktop_(&desktop),
      bar_(new QMenuBar(this)),
      scroll_(new QScrollArea(this)),
      canvas_(new QWidget) {
  setLayoutDirection(Qt::RightToLeft);
  setPalette(screenPalette(toQt(form.background())));
  setAutoFillBackground(true);
  setFont(screenFont());
  setWindowTitle(toQt(form.caption()));
  setObjectName(toQt(form.name()));
  setAttribute(Qt::WA_InputMethodEnabled, false);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  if (menus_.fill(*bar_, form.menu())) {
    layout->setMenuBar(bar_);
  } else {
    bar_->hide();
  }
  layout->addWidget(scroll_);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->setWidgetResizable(true);
  scroll_->setWidget(canvas_);
  canvas_->setFocusPolicy(Qt::NoFocus);
  scroll_->installEventFilter(this);

  build();
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    const auto found = byFocusWidget_.find(now);
    if (found != byFocusWidget_.end()) focusArrived(*found->second);
  });
  form.addObserver(*this);
}

FormWindow::~FormWindow() {
  // A host's container may take the window along; the form goes on without one, and may be shown anew.
  ui::Form* form = form_;
  detach();
  if (form != nullptr) form->setShown(false);
  for (QEventLoop* loop : loops_) loop->exit();
  if (!desktop_.isNull()) desktop_->forget(*this);
  for (ControlView* view : views_) delete view;
}

void FormWindow::detach() {
  if (form_ == nullptr) return;
  form_->removeObserver(*this);
  form_ = nullptr;
  byFocusWidget_.clear();
  byControl_.clear();
  menus_.detach();
  for (QTimer* timer : timers_) timer->stop();
  for (ControlView* view : views_) view->detach();
}

// Building.

void FormWindow::build() {
  // Frames first: the others stand inside them.
  for (ui::Control* control : form_->controls()) {
    if (dynamic_cast<ui::Frame*>(control) != nullptr && viewOf(control) == nullptr) control->accept(*this);
  }
  for (ui::Control* control : form_->controls()) {
    if (viewOf(control) == nullptr) control->accept(*this);
  }
  dress(*this);
  rescale();
  for (ControlView* view : views_) {
    describe(*view);
    view->widget().setEnabled(view->base().enabled());
    view->widget().setVisible(view->base().visible());
  }
  orderTabs();
}

QWidget& FormWindow::parentFor(const ui::Control& control) {
  if (control.frame() == nullptr) return *canvas_;
  if (viewOf(control.frame()) == nullptr) control.frame()->accept(*this);
  return viewOf(control.frame())->widget();
}

void FormWindow::add(ControlView* view) {
  views_.push_back(view);
  byControl_.emplace(&view->base(), view);
  view->widget().setObjectName(toQt(view->base().name()));
  QWidget* focus = view->focusWidget();
  if (focus == nullptr) return;
  byFocusWidget_.emplace(focus, view);
  focus->installEventFilter(this);
}

void FormWindow::visit(ui::CheckBox& control) { add(new CheckBoxView(control, parentFor(control))); }
void FormWindow::visit(ui::DateDisplay& control) { add(new DateDisplayView(control, parentFor(control))); }
void FormWindow::visit(ui::DropDownList& control) { add(new DropDownListView(control, parentFor(control))); }
void FormWindow::visit(ui::Frame& control) { add(new FrameView(control, parentFor(control))); }
void FormWindow::visit(ui::Grid& control) { add(new GridView(control, parentFor(control))); }
void FormWindow::visit(ui::Label& control) { add(new LabelView(control, parentFor(control))); }
void FormWindow::visit(ui::ListBox& control) { add(new ListBoxView(control, parentFor(control))); }
void FormWindow::visit(ui::ProgressBar& control) { add(new ProgressBarView(control, parentFor(control))); }
void FormWindow::visit(ui::PushButton& control) { add(new PushButtonView(control, parentFor(control))); }
void FormWindow::visit(ui::RadioButton& control) { add(new RadioButtonView(control, parentFor(control))); }
void FormWindow::visit(ui::Tree& control) { add(new TreeView(control, parentFor(control))); }

void FormWindow::visit(ui::LookupField& control) {
  add(new LookupView(control, parentFor(control), [this] { return keyboard_; }));
}

void FormWindow::visit(ui::TextField& control) {
  add(new TextFieldView(control, parentFor(control), [this] { return keyboard_; }));
}

ControlView* FormWindow::viewOf(const ui::Control* control) const {
  const auto found = byControl_.find(control);
  return found == byControl_.end() ? nullptr : found->second;
}

QWidget* FormWindow::widgetOf(const ui::Control& control) const {
  ControlView* view = viewOf(&control);
  if (view == nullptr) return nullptr;
  return view->focusWidget() != nullptr ? view->focusWidget() : &view->widget();
}

void FormWindow::describe(ControlView& view) {
  const ui::Control& control = view.base();
  view.widget().setToolTip(literalTip(tooltipOf(control)));
  QWidget* focus = view.focusWidget();
  if (focus == nullptr) return;
  const ui::Label* label = labelOf(*form_, control);
  focus->setAccessibleName(accessibleNameOf(control, label));
  focus->setAccessibleDescription(toQt(control.hint()));
  if (label == nullptr) return;
  if (auto* drawn = qobject_cast<QLabel*>(&viewOf(label)->widget())) drawn->setBuddy(focus);
}

void FormWindow::place(ControlView& view) {
  view.widget().setGeometry(scale_.pixels(view.base().bounds()));
  view.moved();
}

void FormWindow::rescale() {
  scale_ = Scale(font());
  for (ControlView* view : views_) {
    place(*view);
    view->rescaled(scale_);
  }
  fitCanvas();
  showKeyboard();
}

std::vector<QWidget*> FormWindow::tabOrderOf(const ui::Frame* frame) const {
  std::vector<std::vector<QWidget*>> blocks;
  std::vector<QRect> places;
  for (const ControlView* view : views_) {
    if (view->base().frame() != frame) continue;
    const auto* inner = dynamic_cast<const ui::Frame*>(&view->base());
    QWidget* focus = const_cast<ControlView*>(view)->focusWidget();
    std::vector<QWidget*> block = inner != nullptr ? tabOrderOf(inner) : std::vector<QWidget*>{};
    if (focus != nullptr) block.push_back(focus);
    if (block.empty()) continue;
    blocks.push_back(std::move(block));
    places.push_back(scale_.pixels(view->base().bounds()));
  }
  std::vector<QWidget*> order;
  for (const std::size_t place : readingOrder(places))
    order.insert(order.end(), blocks[place].begin(), blocks[place].end());
  return order;
}

void FormWindow::orderTabs() {
  const auto order = tabOrderOf(nullptr);
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

// Showing.

void FormWindow::showAs(Showing showing, QWidget* container) {
  if (showing_ != showing) {
    if (showing_ != Showing::Hidden) QWidget::hide();
    const int loop = QThread::currentThread()->loopLevel() + (showing == Showing::Modal ? 1 : 0);
    shownAtLoop_ = wasShown_ ? std::min(shownAtLoop_, loop) : loop;
    showing_ = showing;
    if (showing == Showing::Embedded) {
      if (container->layout() == nullptr) container->setLayout(new QVBoxLayout);
      container->layout()->setContentsMargins(0, 0, 0, 0);
      container->layout()->addWidget(this);
    } else {
      const bool modal = showing == Showing::Modal;
      setParent(nullptr, modal ? Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                     Qt::WindowCloseButtonHint |
                                     (form_->resizable() ? Qt::WindowMaximizeButtonHint : Qt::WindowFlags())
                               : Qt::Window);
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
  QSize wanted = scale_.pixels(form_->size());
  if (!bar_->isHidden()) wanted.rheight() += bar_->heightForWidth(wanted.width());
  constexpr int kTitleBar = 40;
  const QSize room = screen()->availableSize() - QSize(0, kTitleBar);
  const bool scrolls = wanted.width() > room.width() || wanted.height() > room.height();
  if (scrolls) {
    // Room for the scroll bar of the other direction, so that one bar doesn't call for the second.
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
  // Closed and not only hidden: an application that ends with its last window notices.
  QWidget::close();
  if (parentWidget() != nullptr) setParent(nullptr);
  for (QEventLoop* loop : loops_) loop->exit();
}

void FormWindow::waitUntilHidden() {
  QEventLoop loop;
  loops_.push_back(&loop);
  loop.exec();
  std::erase(loops_, &loop);
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

// What a person does.

void FormWindow::closeEvent(QCloseEvent* event) {
  if (form_ != nullptr && showing_ != Showing::Hidden) {
    event->ignore();
    if (desktop_->repainting()) return;
    form_->closeByPerson();
  }
  event->setAccepted(form_ == nullptr || showing_ == Showing::Hidden);
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  const ui::KeyChord chord = chordOf(*event);
  event->ignore();
  if (form_ == nullptr || chord.empty() || event->isAutoRepeat()) return;
  if (form_->press(chord)) event->accept();
}

bool FormWindow::shortcut(const QKeyEvent& event) {
  const ui::KeyChord chord = chordOf(event);
  const bool plain = !chord.ctrl && !chord.alt && (chord.key < ui::Key::F1 || chord.key > ui::Key::F12);
  if (chord.empty() || plain || !form_->hasShortcut(chord)) return false;
  return event.isAutoRepeat() || form_->press(chord);
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == scroll_) {
    if (event->type() == QEvent::Resize) windowResized();
    return false;
  }
  if (event->type() != QEvent::KeyPress || form_ == nullptr) return false;
  // The editors have keys like Ctrl+E of their own; what the form has a command for is the form's.
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (shortcut(key)) return true;
  if (form_ != nullptr && key.key() == Qt::Key_F8 && key.modifiers() == Qt::NoModifier) {
    toggleKeyboard();
    return true;
  }
  return false;
}

QSize FormWindow::room() const {
  const QSize design = scale_.pixels(form_->designSize());
  const QSize window = scroll_->maximumViewportSize();
  const int bar = scroll_->verticalScrollBar()->sizeHint().width();
  bool across = design.width() > window.width();
  const bool along = design.height() > window.height() - (across ? bar : 0);
  across = design.width() > window.width() - (along ? bar : 0);
  return window - QSize(along ? bar : 0, across ? bar : 0);
}

void FormWindow::windowResized() {
  if (form_ == nullptr || showing_ == Showing::Hidden) return;
  if (form_->resizable()) {
    const ui::Size design = form_->designSize();
    const QSize pixels = scale_.pixels(design);
    const QSize present = room();
    const ui::Size size = scale_.twips(present);
    const Echo resizing(resizing_);
    form_->resize({present.width() <= pixels.width() ? design.width : size.width,
                   present.height() <= pixels.height() ? design.height : size.height});
  }
  if (form_ != nullptr) fitCanvas();
}

void FormWindow::fitCanvas() {
  // A form may leave its controls where a larger size had put them: all of them can be scrolled to.
  constexpr ui::Twips kRounding = 30;
  const ui::Size size = form_->size();
  ui::Size needed = form_->designSize();
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

void FormWindow::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  for (ControlView* view : views_) {
    if (view->standing()) view->moved();
  }
}

bool FormWindow::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  if (event->type() == QEvent::ApplicationFontChange && form_ != nullptr && font() != screenFont()) {
    setFont(screenFont());
    rescale();
    // The person chose the size of a window that can be resized.
    if (!form_->resizable() && (showing_ == Showing::Modal || showing_ == Showing::Modeless)) fitWindow();
    windowResized();
  }
  return handled;
}

// The focus, and what its keys write.

void FormWindow::moveFocus(ui::Control& control) {
  ControlView* view = viewOf(&control);
  if (view == nullptr || view->focusWidget() == nullptr) return;
  view->focusWidget()->setFocus(Qt::OtherFocusReason);
  // A window behind another one gets no event for it.
  if (form_ != nullptr && form_->focused() != &control) focusArrived(*view);
}

void FormWindow::focusArrived(ControlView& view) {
  if (form_ == nullptr) return;
  if (syncing_ > 0) {
    // Qt moves the focus on when a program hides or disables what had it. The form hears of it when the
    // program is done, not in the middle of it.
    QTimer::singleShot(0, this, [this] { reportFocus(); });
    return;
  }
  bringIntoView(view.widget());
  desktop_->setKeyboardTarget(this);
  if (form_->focused() != &view.base()) {
    keyboard_ = chosenKeyboard_ = KeyboardLayout::Own;
    form_->focusMoved(&view.base());
  }
  showKeyboard();
}

void FormWindow::bringIntoView(const QWidget& widget) {
  // The scroll area's own way to do it takes the bar for one that runs from the left.
  const QRect room = scroll_->viewport()->rect();
  const QRect place(widget.mapTo(scroll_->viewport(), QPoint(0, 0)), widget.size());
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
  QScrollBar& across = *scroll_->horizontalScrollBar();
  across.setValue(across.value() + right);
  QScrollBar& along = *scroll_->verticalScrollBar();
  along.setValue(along.value() - down);
}

void FormWindow::reportFocus() {
  if (form_ == nullptr || showing_ == Showing::Hidden) return;
  const auto found = byFocusWidget_.find(focusWidget());
  if (found != byFocusWidget_.end() && found->second->base().withinReach())
    return focusArrived(*found->second);
  // What had the focus is out of reach now: the next one that can takes it.
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

// What a program does.

void FormWindow::controlChanged(ui::Control& control, ui::Change change) {
  ControlView* view = viewOf(&control);
  if (view == nullptr) return;
  const Echo syncing(syncing_);
  switch (change) {
    case ui::Change::Bounds:
      place(*view);
      break;
    case ui::Change::Visible:
      view->widget().setVisible(control.visible());
      break;
    case ui::Change::Enabled:
      view->widget().setEnabled(control.enabled());
      view->sync(change);
      break;
    case ui::Change::Hint:
      describe(*view);
      // What was looked for while the pointer rests here is what the person waits for.
      if (QToolTip::isVisible() && view->widget().underMouse())
        QToolTip::showText(QCursor::pos(), view->widget().toolTip(), &view->widget());
      break;
    default:
      view->sync(change);
  }
  const bool layout = change == ui::Change::Visible || change == ui::Change::Bounds;
  if (layout && control.frame() == nullptr && resizing_ == 0) fitCanvas();
  const bool reach = change == ui::Change::Visible || change == ui::Change::Enabled;
  if (reach && form_ != nullptr && form_->focused() != nullptr && !form_->focused()->withinReach())
    QTimer::singleShot(0, this, [this] { reportFocus(); });
}

void FormWindow::treeChanged(ui::Tree& tree, const ui::TreeChange& change) {
  ControlView* view = viewOf(&tree);
  if (view == nullptr) return;
  const Echo syncing(syncing_);
  static_cast<TreeView*>(view)->follow(change);
}

void FormWindow::formChanged(ui::FormChange change) {
  const Echo syncing(syncing_);
  switch (change) {
    case ui::FormChange::Caption:
      setWindowTitle(toQt(form_->caption()));
      break;
    case ui::FormChange::Menu:
      menus_.follow();
      break;
    case ui::FormChange::Size:
      followSize();
      break;
    case ui::FormChange::Busy:
      break;
  }
}

void FormWindow::followSize() {
  if (resizing_ > 0) return;
  // A program asked for the size: the window follows where it can.
  fitCanvas();
  if (showing_ == Showing::Modeless || showing_ == Showing::Modal) {
    if (!isMaximized()) fitWindow();
  }
}

void FormWindow::timerChanged(ui::Timer& timer) {
  const auto& timers = form_->timers();
  const auto place = std::find(timers.begin(), timers.end(), &timer) - timers.begin();
  if (static_cast<std::size_t>(place) < timers_.size())
    timers_[static_cast<std::size_t>(place)]->setInterval(timer.interval());
}

}  // namespace ledgertree::qt
