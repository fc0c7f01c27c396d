#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ui/desktop.h"
#include "ui/geometry.h"
#include "ui/key.h"

namespace ledgertree::ui {

class Control;
class MenuEntry;
class PushButton;
class Timer;
class Tree;
struct TreeChange;
enum class Change;

/// What a form runs in: the desktop that shows it, and the handler of failures that no event procedure
/// caught.
struct Surroundings {
  Desktop& desktop;
  std::function<void(const std::exception&)> onFailure;
  bool enterMovesOn = false;  ///< see Form::enterMovesOn
};

enum class FormChange { Caption, Size, Menu };

/// Draws a form. It is notified after each change.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  virtual void controlChanged(Control& control, Change change) = 0;
  virtual void treeChanged(Tree& tree, const TreeChange& change) = 0;
  virtual void formChanged(FormChange change) = 0;
  virtual void timerRestarted(Timer& timer) = 0;
};

/// A screen. Each form of the product derives from it and has its controls as public members with their own
/// names.
///
/// `call` is the exception boundary: it runs an event procedure and passes what that throws to
/// Surroundings::onFailure, so that the form goes on after a failure, with or without a window.
///
/// A form may close itself, or be destroyed by its owner, in the middle of an event procedure: user actions
/// run inside an `Act`, and a close takes effect when the form's outermost act has returned.
class Form {
 public:
  Form(Surroundings surroundings, std::string name, std::string caption, Size designSize);
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form();

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const std::string& caption() const { return caption_; }
  void setCaption(std::string caption);
  [[nodiscard]] Size designSize() const { return designSize_; }
  /// The current size of the client area.
  [[nodiscard]] Size size() const { return size_; }
  /// The size down to which the layout follows the window; a smaller window scrolls. Initially the design
  /// size, and never smaller than that.
  [[nodiscard]] Size smallestSize() const { return smallestSize_; }
  void setSmallestSize(Size size) { smallestSize_ = size; }
  [[nodiscard]] bool resizable() const { return resizable_; }
  void setResizable(bool resizable) { resizable_ = resizable; }
  /// Asks for a maximised window when the form is first shown.
  [[nodiscard]] bool wantsMaximised() const { return wantsMaximised_; }
  void setWantsMaximised(bool wants) { wantsMaximised_ = wants; }

  [[nodiscard]] const std::vector<Control*>& controls() const { return controls_; }
  /// The control with a name; null if there is none.
  [[nodiscard]] Control* find(std::string_view name) const;
  [[nodiscard]] const std::vector<Timer*>& timers() const { return timers_; }
  /// The entries of the menu bar.
  [[nodiscard]] const std::vector<MenuEntry*>& menu() const { return menu_; }
  void addMenu(MenuEntry& entry) { menu_.push_back(&entry); }
  /// What Escape and Enter press if the focused control doesn't use the key.
  void setCancelButton(PushButton& button) { cancelButton_ = &button; }
  void setDefaultButton(PushButton& button) { defaultButton_ = &button; }
  /// Whether Enter goes to the next control, as Tab does, if neither the focused control nor the form uses
  /// it.
  [[nodiscard]] bool enterMovesOn() const { return surroundings_.enterMovesOn; }
  /// What a key does anywhere on the form, for a key that isn't the shortcut of a button. While `counts`
  /// returns false it does nothing there, and the key is the focused control's.
  void addShortcut(const KeyChord& chord, std::function<void()> procedure,
                   std::function<bool()> counts = nullptr) {
    shortcuts_.push_back({chord, std::move(procedure), std::move(counts)});
  }
  /// Whether a key does something anywhere on the form, even if it is out of reach at the moment.
  [[nodiscard]] bool hasShortcut(const KeyChord& chord) const;
  /// Where the focus is when the form is shown; null leaves it to the tab order.
  [[nodiscard]] Control* firstFocus() const { return firstFocus_; }
  void setFirstFocus(Control& control) { firstFocus_ = &control; }
  [[nodiscard]] Control* focused() const { return focused_; }
  [[nodiscard]] Desktop& desktop() const { return surroundings_.desktop; }

  /// Whether the desktop shows the form.
  [[nodiscard]] bool isShown() const { return shown_; }
  /// Removes the form from the screen and ends its modal showing. It stays loaded.
  void hide();
  /// Ends the form when the event procedures that are running have returned: unload(), then onClosed. Closing
  /// twice is the same as closing once.
  void close();

  // Called by the desktop.
  /// The window was resized, or a program asks for a new size: the form lays itself out.
  void resize(Size size);
  /// The user closes the window with its title bar.
  virtual void closeByPerson() { close(); }
  /// A key that no control used. True if a shortcut, the cancel or the default button took it.
  bool press(const KeyChord& chord);
  void setShown(bool shown);
  void focusMoved(Control* control);
  void addObserver(FormObserver& observer) { observers_.push_back(&observer); }
  void removeObserver(FormObserver& observer);

  /// Runs an event procedure inside the exception boundary.
  void call(const std::function<void()>& procedure);
  /// Runs before each command of the user (a button, a menu entry, a key that works anywhere on the form),
  /// and finishes whatever has to be done first. If it fails, the command doesn't run.
  std::function<void()> onCommand;
  /// Whether a command may run now. Called by controls.
  [[nodiscard]] bool beginCommand();
  /// Whether an event procedure of this form is running.
  [[nodiscard]] bool inAct() const;
  /// Runs when the outermost event procedure has returned, unless the form closes then.
  std::function<void()> onRest;
  /// Runs after the form was unloaded. The owner may destroy it there.
  std::function<void()> onClosed;

  /// Something that a user, a timer or the desktop does to a form. The form isn't unloaded during it.
  class Act : private Desktop::Procedure {
   public:
    explicit Act(Form& form);
    Act(const Act&) = delete;
    Act& operator=(const Act&) = delete;
    ~Act();
    /// False if the owner has destroyed the form; its controls must not be used then.
    [[nodiscard]] bool formAlive() const;

   private:
    std::shared_ptr<struct FormLife> life_;
  };

  // Called by controls.
  void add(Control& control) { controls_.push_back(&control); }
  void remove(Control& control);
  void add(Timer& timer) { timers_.push_back(&timer); }
  void notify(Control& control, Change change);
  void notify(Tree& tree, const TreeChange& change);
  void notify(FormChange change);
  void notify(Timer& timer);

 protected:
  /// Clean-up before a form that ends leaves the screen.
  virtual void unload() {}
  /// Lays the form out after a change of size.
  virtual void resized() {}

 private:
  friend struct FormLife;
  struct Shortcut {
    KeyChord chord;
    std::function<void()> procedure;
    std::function<bool()> counts;
    [[nodiscard]] bool is(const KeyChord& pressed) const { return chord == pressed && (!counts || counts()); }
  };
  void finishClose();

  Surroundings surroundings_;
  std::shared_ptr<FormLife> life_;
  std::string name_;
  std::string caption_;
  Size designSize_;
  Size size_;
  Size smallestSize_;
  bool resizable_ = false;
  bool wantsMaximised_ = false;
  bool shown_ = false;
  std::vector<Control*> controls_;
  std::vector<Timer*> timers_;
  std::vector<MenuEntry*> menu_;
  std::vector<FormObserver*> observers_;
  std::vector<Shortcut> shortcuts_;
  PushButton* cancelButton_ = nullptr;
  PushButton* defaultButton_ = nullptr;
  Control* firstFocus_ = nullptr;
  Control* focused_ = nullptr;
};

}  // namespace ledgertree::ui
