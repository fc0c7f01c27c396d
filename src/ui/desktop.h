#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string_view>

#include "ui/geometry.h"

namespace ledgertree::ui {

class Control;
class Form;
class MenuEntry;

/// The mouse cursor, by the numbers that the screens use.
enum class CursorShape { Default = 0, Hourglass = 11 };

/// A request that the desktop refuses. The number tells the caller why.
class DesktopError : public std::runtime_error {
 public:
  /// The host accepts only modal forms.
  static constexpr int kNoModelessForms = 406;

  DesktopError(int number, const char* message) : std::runtime_error(message), number_(number) {}
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

/// The port to whatever draws the screens. Everything but `whenIdle` belongs to the user-interface thread.
class Desktop {
 public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  /// Shows a form modelessly, or brings it to the front if it is already shown. May throw DesktopError, 406
  /// among others.
  virtual void show(Form& form) = 0;
  /// Shows a form and returns when it is hidden or closed. A form that is already shown modelessly becomes
  /// modal.
  virtual void showModal(Form& form) = 0;
  /// Removes a form from the screen for good, with everything that drew it. Ignores an unknown form.
  virtual void close(Form& form) = 0;
  /// Stops showing a form that is being hidden.
  virtual void hide(Form& form) = 0;
  /// Opens a menu with its corner at a point of the form. May return at once, or when the menu has closed.
  virtual void popUpMenu(Form& form, MenuEntry& menu, Twips left, Twips top) = 0;

  /// Opens the guide at the focused control of the form, as F1 does; does nothing if there is no guide.
  virtual void openGuide(Form&) {}
  /// Copies a text to the clipboard.
  virtual void copyText(std::string_view text) = 0;

  virtual void setCursor(CursorShape shape) = 0;
  /// Moves the focus to a control that is within reach, on a form that is shown, and reports it to the form
  /// by focusMoved.
  virtual void moveFocus(Control& control) = 0;
  /// Paints pending changes in the middle of long work, without taking input.
  virtual void repaint(Form& form) = 0;
  /// Paints likewise, and returns whether the user has pressed Escape since the last call. All other keys and
  /// clicks of that time are dropped: they were meant for a different moment.
  [[nodiscard]] virtual bool repaintAndHearEscape(Form& form) = 0;

  /// Loads and activates a keyboard layout: "00000401" Arabic, "00000429" Persian. Does nothing for an
  /// unknown or empty one.
  virtual void chooseKeyboardLayout(std::string_view layout) = 0;
  /// The major version of the operating system.
  [[nodiscard]] virtual int operatingSystemVersion() const = 0;

  /// Runs a procedure on the user-interface thread when it has nothing else to do. May be called from any
  /// thread.
  virtual void whenIdle(std::function<void()> procedure) = 0;

  /// Shows on top of everything what is being waited for, or keeps showing it, and paints. Returns whether
  /// the user cancelled, by the button or with Escape; if `wayOut` is empty the wait can't be cancelled.
  /// Until endWait() the screens react to nothing else: no key, click, timer, idle work or closing.
  [[nodiscard]] bool keepWaiting(std::string_view text, std::string_view wayOut) {
    waiting_ = true;
    return showWait(text, wayOut);
  }
  void endWait() {
    waiting_ = false;
    hideWait();
  }
  [[nodiscard]] bool waiting() const { return waiting_; }

  /// An action that a user, a timer or the host starts. Whatever runs inside it belongs to it, except for
  /// what arrives through a form that it shows modally.
  class Procedure {
   public:
    explicit Procedure(Desktop& desktop) : Procedure(desktop, desktop.procedure_) {
      if (before_ == 0) desktop.procedure_ = ++desktop.procedures_;
    }
    Procedure(const Procedure&) = delete;
    Procedure& operator=(const Procedure&) = delete;
    ~Procedure() { desktop_.procedure_ = before_; }

   protected:
    Procedure(Desktop& desktop, std::uint64_t before) : desktop_(desktop), before_(before) {}
    Desktop& desktop_;

   private:
    std::uint64_t before_;
  };
  /// The number of the procedure that is running, unique to each; 0 for none.
  [[nodiscard]] std::uint64_t procedure() const { return procedure_; }

 protected:
  virtual bool showWait(std::string_view text, std::string_view wayOut) = 0;
  virtual void hideWait() = 0;

  /// Lasts as long as a modal form is shown.
  class Apart : public Procedure {
   public:
    explicit Apart(Desktop& desktop) : Procedure(desktop, desktop.procedure_) { desktop_.procedure_ = 0; }
  };

 private:
  bool waiting_ = false;
  std::uint64_t procedure_ = 0;
  std::uint64_t procedures_ = 0;
};

}  // namespace ledgertree::ui
