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

/// The shape of the mouse pointer, by the numbers that the screens use.
enum class CursorShape { Default = 0, Hourglass = 11 };

/// A desktop that refuses, with the number by which a caller knows the refusal.
class DesktopError : public std::runtime_error {
 public:
  /// The host takes no form that isn't modal.
  static constexpr int kNoModelessForms = 406;

  DesktopError(int number, const char* message) : std::runtime_error(message), number_(number) {}
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

/// The port to whatever draws the screens. All of it belongs to the user-interface thread, but for
/// `whenIdle`.
class Desktop {
 public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  /// Shows a form modelessly, or brings it up where it is shown already. May throw DesktopError, 406 among
  /// others.
  virtual void show(Form& form) = 0;
  /// Shows a form and returns when it hides or closes. A form that is shown modelessly already becomes modal.
  virtual void showModal(Form& form) = 0;
  /// Takes a form off the screen for good; whatever drew it goes. Nothing where it isn't known.
  virtual void close(Form& form) = 0;
  /// Ends the showing of a form that hides.
  virtual void hide(Form& form) = 0;
  /// Opens a menu with its corner at a place of the form, and returns at once or when it closed.
  virtual void popUpMenu(Form& form, MenuEntry& menu, Twips left, Twips top) = 0;

  /// Opens the guide at what has the focus on the form, as its key does; nothing where there is no guide.
  virtual void openGuide(Form&) {}
  /// Puts a text where another program can paste it from.
  virtual void copyText(std::string_view text) = 0;

  virtual void setCursor(CursorShape shape) = 0;
  /// Moves the focus to a control that is within reach, on a form that is shown; tells the form by
  /// focusMoved.
  virtual void moveFocus(Control& control) = 0;
  /// Paints what changed in the middle of long work, without taking input.
  virtual void repaint(Form& form) = 0;
  /// Paints in the same way, and gives whether the person pressed Escape since the last call. Everything else
  /// that was pressed or clicked meanwhile is dropped: it was meant for another moment.
  [[nodiscard]] virtual bool repaintAndHearEscape(Form& form) = 0;

  /// Loads and activates a keyboard layout: "00000401" Arabic, "00000429" Persian. Unknown or empty: nothing
  /// happens.
  virtual void chooseKeyboardLayout(std::string_view layout) = 0;
  /// The major version of the operating system.
  [[nodiscard]] virtual int operatingSystemVersion() const = 0;

  /// Runs a procedure on the user-interface thread when it has nothing else to do. May be called from any
  /// thread.
  virtual void whenIdle(std::function<void()> procedure) = 0;

  /// Shows on top of everything what is waited for, or goes on showing it, and paints. Gives whether the
  /// person took the way out, by its button or by Escape; an empty one isn't offered. Until endWait() nothing
  /// else of the screens works: no key, no click, no timer, no idle work, no closing.
  [[nodiscard]] bool keepWaiting(std::string_view text, std::string_view wayOut) {
    waiting_ = true;
    return showWait(text, wayOut);
  }
  void endWait() {
    waiting_ = false;
    hideWait();
  }
  [[nodiscard]] bool waiting() const { return waiting_; }

  /// A person, a timer or the host has something done; what is done inside of it belongs to it, but for what
  /// comes in over a form that it shows modally.
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
  /// The number of the procedure that runs, another one each time; 0 for none.
  [[nodiscard]] std::uint64_t procedure() const { return procedure_; }

 protected:
  virtual bool showWait(std::string_view text, std::string_view wayOut) = 0;
  virtual void hideWait() = 0;

  /// The length of a modal showing.
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
