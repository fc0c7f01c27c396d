#pragma once

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <utility>

#include "ui/desktop.h"
#include "ui/form.h"

namespace ledgertree::bench {

/// A desktop without a screen, whose idle time passes when it is told to.
class IdleDesktop : public ui::Desktop {
 public:
  using Clock = std::chrono::steady_clock;

  void show(ui::Form& form) override { form.setShown(true); }
  void showModal(ui::Form&) override {}
  void close(ui::Form&) override {}
  void hide(ui::Form& form) override { form.setShown(false); }
  void popUpMenu(ui::Form&, ui::MenuEntry&, ui::Twips, ui::Twips) override {}
  void copyText(std::string_view) override {}
  void setCursor(ui::CursorShape) override {}
  void moveFocus(ui::Control&) override {}
  void repaint(ui::Form&) override {}
  [[nodiscard]] bool repaintAndHearEscape(ui::Form&) override { return false; }
  void chooseKeyboardLayout(std::string_view) override {}
  [[nodiscard]] int operatingSystemVersion() const override { return 5; }
  void whenIdle(std::function<void()> procedure) override { idle_.push_back(std::move(procedure)); }

  /// Runs what waits for idleness, until nothing does.
  void settle() {
    while (!idle_.empty()) {
      const auto procedure = std::move(idle_.front());
      idle_.pop_front();
      const auto begin = Clock::now();
      procedure();
      longest_ = std::max(longest_, Clock::now() - begin);
    }
  }
  /// The longest that one idle procedure ran since the last call.
  Clock::duration takeLongest() { return std::exchange(longest_, {}); }

 protected:
  bool showWait(std::string_view, std::string_view) override { return false; }
  void hideWait() override {}

 private:
  std::deque<std::function<void()>> idle_;
  Clock::duration longest_{};
};

}  // namespace ledgertree::bench
