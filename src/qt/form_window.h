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

/// The window of any form: every control is drawn at its bounds, scaled to the font. A window smaller than
/// the scaled design scrolls; a larger one gives the form its size.
///
/// It outlives its form as long as one of its events may still be pending (see QtDesktop::close).
class FormWindow : public QWidget, private ui::FormObserver, private ui::ControlVisitor {
 public:
  FormWindow(ui::Form& form, QtDesktop& desktop);
  ~FormWindow() override;

  enum class Showing { Hidden, Modeless, Embedded, Modal };

  /// Shows the window, or brings it to the front if it is already shown in the same way.
  void showAs(Showing showing, QWidget* container = nullptr);
  [[nodiscard]] Showing showing() const { return showing_; }
  /// Hides the window and ends the loops that wait for it.
  void endShowing();
  /// The form is being destroyed: nothing of it is used from now on.
  void detach();
  [[nodiscard]] ui::Form* form() const { return form_; }

  /// Runs until the window is no longer shown.
  void waitUntilHidden();
  void moveFocus(ui::Control& control);
  void popUp(const ui::MenuEntry& menu, ui::Twips left, ui::Twips top);
  /// Sets what the keys of the focused field write.
  void chooseKeyboard(KeyboardLayout layout);
  /// The depth of nested event loops at which the window was shown: none of its events belongs to an outer
  /// one.
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
  void timerRestarted(ui::Timer& timer) override;

  // ControlVisitor: creates the view of each kind.
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
  /// The form's size below which the window scrolls.
  [[nodiscard]] ui::Size leastSize() const;
  /// The pixels that a form of the window's size would have, less the scroll bars that its smallest size
  /// needs.
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
  KeyboardLayout chosenKeyboard_ = KeyboardLayout::Own;  ///< the layout that the toggle key goes back to
  int syncing_ = 0;
  int resizing_ = 0;
  int shownAtLoop_ = 0;
  bool wasShown_ = false;
};

}  // namespace ledgertree::qt
