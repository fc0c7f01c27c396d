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

/// A desktop without a screen, told beforehand what the person does; it remembers what was asked of it.
class ScriptedDesktop : public ui::Desktop {
 public:
  using Person = std::function<void(ui::Form&)>;

  /// What the person does in the next modal form of that name, which the frame closes if it is still up then.
  void inModal(std::string formName, Person person);
  void forgetScripts() { scripts_.clear(); }
  /// The modal forms that came up without a script, and the scripts that no form came up for.
  [[nodiscard]] std::vector<std::string> surprises() const;

  /// Time passes: every timer of the shown forms ticks once, and what waits for idleness runs.
  void tick();
  /// Runs what waits for idleness, until nothing does and, as far as there is patience, no look-up on the
  /// screen searches any more.
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

  /// What a person was shown of waits, with what is offered behind it; runs in each of its paints. Escape is
  /// the way out.
  std::vector<std::string> waits;
  std::function<void()> onWait;
  /// The number of the error with which `show` refuses; 0 shows.
  int refusal = 0;
  int version = 5;
  std::chrono::seconds patience{0};
  ui::CursorShape cursor = ui::CursorShape::Default;
  int hourglasses = 0;
  int repaints = 0;
  std::vector<std::string> layouts;
  /// The layout that was chosen last; empty for none.
  [[nodiscard]] std::string layout() const { return layouts.empty() ? "" : layouts.back(); }
  /// The names of the forms in the order in which they were shown, modal ones with "!" behind.
  std::vector<std::string> showings;
  ui::MenuEntry* poppedUp = nullptr;
  std::string copied;
  ui::Twips poppedUpLeft = 0;
  ui::Twips poppedUpTop = 0;
  std::vector<ui::Form*> shownForms;
  /// Runs in each repaint, as a host does that calls in the middle of long work.
  std::function<void()> onRepaint;
  /// The person presses Escape in the middle of long work.
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
