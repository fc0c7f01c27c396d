#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "ui/form.h"

namespace ledgertree::ui {

/// Ticks while its form is shown. A tick during one of the form's event procedures is dropped.
class Timer {
 public:
  Timer(Form& form, std::string name, std::chrono::milliseconds interval)
      : form_(form), name_(std::move(name)), interval_(interval) {
    form.add(*this);
  }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] std::chrono::milliseconds interval() const { return interval_; }

  /// Restarts the interval.
  void restart() { form_.notify(*this); }
  /// Called by the desktop when the interval is over.
  void tick();

  std::function<void()> onTick;

 private:
  Form& form_;
  std::string name_;
  std::chrono::milliseconds interval_;
};

}  // namespace ledgertree::ui
