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

/// What a form stands on: the desktop that shows it, and what happens with a failure that no event procedure
/// caught.
struct Surroundings {
  Desktop& desktop;
  std::function<void(const std::exception&)> onFailure;
  bool enterMovesOn = false;  ///< see Form::enterMovesOn
};

enum class FormChange { Caption, Size, Menu };

/// Whoever draws a form. It is told of every change after the change.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  virtual void controlChanged(Control& control, Change change) = 0;
  virtual void treeChanged(Tree& tree, const TreeChange& change) = 0;
  virtual void formChanged(FormChange change) = 0;
  virtual void timerChanged(Timer& timer) = 0;
};

/// A screen. A form of the product derives from it and has its controls as public members under their own
/// names.
///
/// The border of failures stands here: `call` runs an event procedure and hands what it throws to
/// Surroundings::onFailure, so that a form goes on after a failure, with a window or without one.
///
/// A form may close itself, or be destroyed by its owner, in the middle of an event procedure: what a person
/// does runs inside an `Act`, and a close takes effect when the outermost act of the form has returned.
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
  /// The present size of the client area.
  [[nodiscard]] Size size() const { return size_; }
  /// The size down to which the layout follows the window; a smaller window scrolls. At first the design
  /// size, and never lower than that.
  [[nodiscard]] Size smallestSize() const { return smallestSize_; }
  void setSmallestSize(Size size) { smallestSize_ = size; }
  [[nodiscard]] bool resizable() const { return resizable_; }
  void setResizable(bool resizable) { resizable_ = resizable; }
  /// Asks for the whole screen when the form is first shown.
  [[nodiscard]] bool wantsMaximised() const { return wantsMaximised_; }
  void setWantsMaximised(bool wants) { wantsMaximised_ = wants; }

  [[nodiscard]] const std::vector<Control*>& controls() const { return controls_; }
  /// The control of a name; null where there is none.
  [[nodiscard]] Control* find(std::string_view name) const;
  [[nodiscard]] const std::vector<Timer*>& timers() const { return timers_; }
  /// The entries of the menu bar.
  [[nodiscard]] const std::vector<MenuEntry*>& menu() const { return menu_; }
  void addMenu(MenuEntry& entry) { menu_.push_back(&entry); }
  /// What Escape and Enter press where the focused control has no use for the key.
  void setCancelButton(PushButton& button) { cancelButton_ = &button; }
  void setDefaultButton(PushButton& button) { defaultButton_ = &button; }
  /// Whether Enter goes to the next control, as Tab does, where neither the focused control nor the form has
  /// a use for it.
  [[nodiscard]] bool enterMovesOn() const { return surroundings_.enterMovesOn; }
  /// What a key does anywhere on the form that no button bears as its shortcut. Where `counts` says no, it is
  /// none, and the key is the focused control's.
  void addShortcut(const KeyChord& chord, std::function<void()> procedure,
                   std::function<bool()> counts = nullptr) {
    shortcuts_.push_back({chord, std::move(procedure), std::move(counts)});
  }
  /// Whether a key has a meaning anywhere on the form, within reach at the moment or not.
  [[nodiscard]] bool hasShortcut(const KeyChord& chord) const;
  /// Where the focus stands when the form is shown; null leaves it to the order of the controls.
  [[nodiscard]] Control* firstFocus() const { return firstFocus_; }
  void setFirstFocus(Control& control) { firstFocus_ = &control; }
  [[nodiscard]] Control* focused() const { return focused_; }
  [[nodiscard]] Desktop& desktop() const { return surroundings_.desktop; }

  /// Whether the desktop shows the form.
  [[nodiscard]] bool isShown() const { return shown_; }
  /// Takes the form off the screen and ends its modal showing. It stays loaded.
  void hide();
  /// Ends the form when the event procedures that run now have returned: unload(), then onClosed. Closing
  /// twice is closing.
  void close();

  // The desktop.
  /// The window got another size, or a program asks for one: the rule of the form follows.
  void resize(Size size);
  /// The person closes the window by its frame.
  virtual void closeByPerson() { close(); }
  /// A key that no control wanted. True where a shortcut, the cancel or the default button took it.
  bool press(const KeyChord& chord);
  void setShown(bool shown);
  void focusMoved(Control* control);
  void addObserver(FormObserver& observer) { observers_.push_back(&observer); }
  void removeObserver(FormObserver& observer);

  /// Runs an event procedure behind the border of failures.
  void call(const std::function<void()>& procedure);
  /// Runs ahead of each command of a person (a button, an entry of a menu, a key that has a meaning anywhere
  /// on the form), and finishes what a command must not come ahead of. A command isn't run where it fails.
  std::function<void()> onCommand;
  /// Whether a command may run now. For controls.
  [[nodiscard]] bool beginCommand();
  /// Whether an event procedure of this form is running.
  [[nodiscard]] bool inAct() const;
  /// Runs when the outermost of its event procedures has returned, unless the form closes then.
  std::function<void()> onRest;
  /// Runs after the form was unloaded; the owner may destroy it there.
  std::function<void()> onClosed;

  /// A person, a timer or the desktop does something to a form. While one stands, the form isn't unloaded.
  class Act : private Desktop::Procedure {
   public:
    explicit Act(Form& form);
    Act(const Act&) = delete;
    Act& operator=(const Act&) = delete;
    ~Act();
    /// False once the form was destroyed by its owner; its controls may not be touched then.
    [[nodiscard]] bool formStands() const;

   private:
    std::shared_ptr<struct FormLife> life_;
  };

  // For controls.
  void add(Control& control) { controls_.push_back(&control); }
  void remove(Control& control);
  void add(Timer& timer) { timers_.push_back(&timer); }
  void notify(Control& control, Change change);
  void notify(Tree& tree, const TreeChange& change);
  void notify(FormChange change);
  void notify(Timer& timer);

 protected:
  /// What the form does when it ends, ahead of leaving the screen.
  virtual void unload() {}
  /// The rule that follows a change of size.
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
