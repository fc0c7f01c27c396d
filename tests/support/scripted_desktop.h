#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "ui/desktop.h"
#include "ui/form.h"

namespace ledgertree::testing {

/// A desktop without a screen, scripted with the user's actions; it records what was requested of it.
class ScriptedDesktop : public ui::Desktop {
 public:
  using Person = std::function<void(ui::Form&)>;

  /// The user's actions in the next modal form of that name, which is closed by its frame if still open then.
  void inModal(std::string formName, Person person);
  void forgetScripts() { scripts_.clear(); }
  /// Modal forms shown without a script, and scripts whose form was never shown.
  [[nodiscard]] std::vector<std::string> surprises() const;

  /// Lets time pass: every timer of the shown forms ticks once, and idle procedures run.
  void tick();
  /// Runs idle procedures until none is left and, for a limited time, no look-up on the screen is
  /// searching.
  void settle();

  // ui::Desktop
  void show(ui::Form& form) override;
  void showModal(ui::Form& form) override;
  void close(ui::Form& form) override;
  void hide(ui::Form& form) override;
  void popUpMenu(ui::Form& form, ui::MenuEntry& menu, ui::Twips left, ui::Twips top) override;
  void copyText(std::string_view text) override { copied = text; }
  void setCursor(ui::CursorShape shape) override;
  void moveFocus(ui::Control& control) override;
  void repaint(ui::Form& form) override;
  [[nodiscard]] bool repaintAndHearEscape(ui::Form& form) override {
    repaint(form);
    return std::exchange(escape, false);
  }
  void chooseKeyboardLayout(std::string_view layout) override { layouts.emplace_back(layout); }
  [[nodiscard]] int operatingSystemVersion() const override { return version; }
  void whenIdle(std::function<void()> procedure) override;
  bool showWait(std::string_view text, std::string_view wayOut) override;
  void hideWait() override { waits.emplace_back("."); }

  /// The waits shown to the user, with the options offered; called in each of their paints. Escape
  /// cancels.
  std::vector<std::string> waits;
  std::function<void()> onWait;
  /// The error number with which `show` refuses; 0 shows.
  int refusal = 0;
  int version = 5;
  std::chrono::seconds patience{0};
  ui::CursorShape cursor = ui::CursorShape::Default;
  int hourglasses = 0;
  int repaints = 0;
  std::vector<std::string> layouts;
  /// The last layout chosen; empty for none.
  [[nodiscard]] std::string layout() const { return layouts.empty() ? "" : layouts.back(); }
  /// The names of the forms in the order shown, modal ones with "!" appended.
  std::vector<std::string> showings;
  ui::MenuEntry* poppedUp = nullptr;
  std::string copied;
  ui::Twips poppedUpLeft = 0;
  ui::Twips poppedUpTop = 0;
  std::vector<ui::Form*> shownForms;
  /// Called in each repaint, like a host that calls during long work.
  std::function<void()> onRepaint;
  /// The user presses Escape during long work.
  bool escape = false;

 private:
  [[nodiscard]] bool searching() const;
  void bringUp(ui::Form& form);
  void takeOff(ui::Form& form);

  struct Script {
    std::string form;
    Person person;
  };
  std::deque<Script> scripts_;
  std::vector<std::string> unscripted_;
  std::mutex idleLock_;
  std::deque<std::function<void()>> idle_;
};

}  // namespace ledgertree::testing
