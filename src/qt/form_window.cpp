#include "qt/form_window.h"

#include <QApplication>
#include <QEventLoop>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

#include "qt/divider_view.h"
#include "qt/grid_view.h"
#include "qt/help_offer.h"
#include "qt/labelling.h"
#include "qt/list_views.h"
#include "qt/lookup_view.h"
#include "qt/plain_views.h"
#include "qt/qt_desktop.h"
#include "qt/reading_order.h"
#include "qt/spoken_role.h"
#include "qt/text.h"
#include "qt/text_view.h"
#include "qt/tree_view.h"
#include "ui/timer.h"

namespace ledgertree::qt {

FormWindow::FormWindow(ui::Form& form, QtDesktop& desktop)
    : form_(&form),
      desktop_(&desktop),
      bar_(new QMenuBar(this)),
      scroll_(new FormScrollArea(this)),
      canvas_(new QWidget) {
  setLayoutDirection(Qt::RightToLeft);
  setPalette(screenPalette(toQt(ui::kScreenBackground)));
  setAutoFillBackground(true);
  setFont(screenFont());
  setWindowTitle(toQt(form.caption()));
  setObjectName(toQt(form.name()));
  setSpokenRole(*this, QAccessible::Window);

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
  offerGuide(*this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    const auto found = byFocusWidget_.find(now);
    if (found != byFocusWidget_.end()) focusArrived(*found->second);
  });
  form.addObserver(*this);
}

FormWindow::~FormWindow() {
  // The host's container may delete the window; the form goes on without one, and may be shown again.
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
  for (ControlView* view : views_) view->detach();
}

// Construction.

void FormWindow::build() {
  // Frames first: the other controls are inside them.
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
  return static_cast<FrameView*>(viewOf(control.frame()))->content();
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
void FormWindow::visit(ui::Divider& control) { add(new DividerView(control, parentFor(control))); }
void FormWindow::visit(ui::DropDownList& control) { add(new DropDownListView(control, parentFor(control))); }
void FormWindow::visit(ui::Frame& control) { add(new FrameView(control, parentFor(control))); }
void FormWindow::visit(ui::Grid& control) { add(new GridView(control, parentFor(control))); }
void FormWindow::visit(ui::Label& control) { add(new LabelView(control, parentFor(control))); }
void FormWindow::visit(ui::ListBox& control) { add(new ListBoxView(control, parentFor(control))); }
void FormWindow::visit(ui::ProgressBar& control) { add(new ProgressBarView(control, parentFor(control))); }
void FormWindow::visit(ui::PushButton& control) { add(new PushButtonView(control, parentFor(control))); }
void FormWindow::visit(ui::RadioButton& control) { add(new RadioButtonView(control, parentFor(control))); }

void FormWindow::visit(ui::LookupField& control) {
  add(new LookupView(control, parentFor(control), [this] { return keyboard_; }));
}

void FormWindow::visit(ui::Tree& control) {
  add(new TreeView(control, parentFor(control), [this] { return keyboard_; }));
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
  if (focus == nullptr) {
    // Screen readers announce a frame or a bar too, if it has a name of its own.
    view.widget().setAccessibleName(toQt(control.accessibleName()));
    return;
  }
  const ui::Label* label = labelOf(*form_, control);
  view.name(accessibleNameOf(control, label));
  focus->setAccessibleDescription(toQt(control.hint()));
  if (label == nullptr || !control.visible()) return;
  // A control that is called otherwise may stand nearer to the label than the one that it is meant for.
  auto& drawn = static_cast<LabelView*>(viewOf(label))->widget();
  if (drawn.buddy() == nullptr || isCalledBy(*label, control)) drawn.setBuddy(focus);
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
  for (const std::size_t index : readingOrder(places))
    order.insert(order.end(), blocks[index].begin(), blocks[index].end());
  return order;
}

void FormWindow::orderTabs(QWidget* container) {
  auto order = tabOrderOf(nullptr);
  // In a host's window the screen is next to its container in the tab order, not last of all.
  QWidget* before = container;
  while (before != nullptr && (before->focusPolicy() & Qt::TabFocus) == 0) {
    do before = before->previousInFocusChain();
    while (isAncestorOf(before));
    if (before == container) before = nullptr;
  }
  if (before != nullptr) order.insert(order.begin(), before);
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

// Changes made by a program.

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
      describe(*view);
      break;
    case ui::Change::Enabled:
      view->widget().setEnabled(control.enabled());
      view->sync(change);
      break;
    case ui::Change::Hint:
      describe(*view);
      // This is the detail that the user hovers for.
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
  }
}

void FormWindow::timerRestarted(ui::Timer& timer) {
  const auto& timers = form_->timers();
  const auto found = std::find(timers.begin(), timers.end(), &timer);
  const auto index = static_cast<std::size_t>(found - timers.begin());
  if (index < timers_.size() && timers_[index]->isActive()) timers_[index]->start();
}

}  // namespace ledgertree::qt
