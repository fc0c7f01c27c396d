#pragma once

#include <QPointer>
#include <QScrollArea>
#include <QTimer>
#include <QWidget>
#include <unordered_map>
#include <vector>

#include "qt/control_view.h"
#include "qt/menus.h"
#include "ui/control_visitor.h"
#include "ui/form.h"

class QEventLoop;

namespace ledgertree::qt {

class QtDesktop;
class TreeView;

/// The window of a form, whichever form it is: every control drawn where its bounds say, scaled to the font.
/// A window smaller than the scaled design scrolls; a larger one gives the form its size.
///
/// It outlives its form by as long as an event of its own may still be on the way (see QtDesktop::close).
class FormWindow : public QWidget, private ui::FormObserver, private ui::ControlVisitor {
 public:
  FormWindow(ui::Form& form, QtDesktop& desktop);
  ~FormWindow() override;

  enum class Showing { Hidden, Modeless, Embedded, Modal };

  /// Puts the window up, or brings it to the front where it is up in the same way already.
  void showAs(Showing showing, QWidget* container = nullptr);
  [[nodiscard]] Showing showing() const { return showing_; }
  /// Takes the window off the screen and ends the loops that wait for it.
  void endShowing();
  /// The form is going or gone: from now on nothing of it is touched.
  void detach();
  [[nodiscard]] ui::Form* form() const { return form_; }

  /// Runs until the showing ends.
  void waitUntilHidden();
  void moveFocus(ui::Control& control);
  void popUp(const ui::MenuEntry& menu, ui::Twips left, ui::Twips top);
  /// What the keys of the focused field write from now on.
  void chooseKeyboard(KeyboardLayout layout);
  /// The depth of nested loops at which the window was put up: no event of it lies further out.
  [[nodiscard]] int shownAtLoop() const { return shownAtLoop_; }

  /// The widget of a control; null for a control of another form.
  [[nodiscard]] QWidget* widgetOf(const ui::Control& control) const;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // FormObserver
  void controlChanged(ui::Control& control, ui::Change change) override;
  void treeChanged(ui::Tree& tree, const ui::TreeChange& change) override;
  void formChanged(ui::FormChange change) override;
  void timerChanged(ui::Timer& timer) override;

  // ControlVisitor: makes the view of each kind.
  void visit(ui::CheckBox& control) override;
  void visit(ui::DateDisplay& control) override;
  void visit(ui::Divider& control) override;
  void visit(ui::DropDownList& control) override;
  void visit(ui::Frame& control) override;
  void visit(ui::Grid& control) override;
  void visit(ui::Label& control) override;
  void visit(ui::ListBox& control) override;
  void visit(ui::LookupField& control) override;
  void visit(ui::ProgressBar& control) override;
  void visit(ui::PushButton& control) override;
  void visit(ui::RadioButton& control) override;
  void visit(ui::TextField& control) override;
  void visit(ui::Tree& control) override;

  void build();
  void add(ControlView* view);
  [[nodiscard]] QWidget& parentFor(const ui::Control& control);
  void describe(ControlView& view);
  void place(ControlView& view);
  void orderTabs(QWidget* container = nullptr);
  [[nodiscard]] std::vector<QWidget*> tabOrderOf(const ui::Frame* frame) const;
  void rescale();

  void putUp();
  void fitWindow();
  void followSize();
  /// The size of the form below which the window scrolls.
  [[nodiscard]] ui::Size leastSize() const;
  /// The pixels that a form of the window's size would have, scroll bars that its least size needs taken off.
  [[nodiscard]] QSize room() const;
  void windowResized();
  void fitCanvas();
  void startTimers();
  void focusFirst();
  void focusArrived(ControlView& view);
  void reportFocus();
  void bringIntoView(const QWidget& widget);
  [[nodiscard]] bool ownsKey(const QKeyEvent& event) const;
  [[nodiscard]] bool shortcut(const QKeyEvent& event);
  void goToField(bool forward);
  void toggleKeyboard();
  void showKeyboard();
  [[nodiscard]] ControlView* viewOf(const ui::Control* control) const;

  ui::Form* form_;
  QPointer<QtDesktop> desktop_;
  Scale scale_;
  Menus menus_;
  QMenuBar* bar_;
  QScrollArea* scroll_;
  QWidget* canvas_;
  std::vector<ControlView*> views_;
  std::unordered_map<const ui::Control*, ControlView*> byControl_;
  std::unordered_map<const QObject*, ControlView*> byFocusWidget_;
  std::vector<QTimer*> timers_;
  std::vector<QEventLoop*> loops_;
  Showing showing_ = Showing::Hidden;
  KeyboardLayout keyboard_ = KeyboardLayout::Own;
  KeyboardLayout chosenKeyboard_ = KeyboardLayout::Own;  ///< what the toggling key goes back to
  int syncing_ = 0;
  int resizing_ = 0;
  int shownAtLoop_ = 0;
  bool wasShown_ = false;
};

}  // namespace ledgertree::qt
