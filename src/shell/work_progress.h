#pragma once

#include <chrono>
#include <cstdint>

#include "shell/database_waits.h"
#include "ui/control.h"
#include "ui/form.h"

namespace ledgertree::shell {

/// Shows on the screen that started a long work how far it is. Work that is done within half a second shows
/// nothing. The bar is off the screen again when the object ends, on every path.
///
/// Work of which nothing is lost may offer a way out: the bar names the key, and givenUp() hears it.
class WorkProgress {
 public:
  static constexpr std::chrono::milliseconds kBeforeShowing = DatabaseWaits::kBeforeShowing;
  static constexpr std::chrono::milliseconds kBetweenPaints{100};

  enum class WayOut { None, Escape };

  /// `bar` is a control of `form` that stands hidden.
  WorkProgress(ui::Form& form, ui::ProgressBar& bar, std::int32_t all, WayOut wayOut = WayOut::None);
  WorkProgress(const WorkProgress&) = delete;
  WorkProgress& operator=(const WorkProgress&) = delete;
  ~WorkProgress();

  /// `done` of all is done. May repaint the form, which takes no input meanwhile.
  void advance(std::int32_t done);
  /// More work came to light, or less: this is all of it now.
  void expect(std::int32_t all) { all_ = all; }
  /// Whether the person wants the work to end where it stands.
  [[nodiscard]] bool givenUp() const { return givenUp_; }

 private:
  using Clock = std::chrono::steady_clock;

  ui::Form& form_;
  ui::ProgressBar& bar_;
  std::int32_t all_;
  WayOut wayOut_;
  bool givenUp_ = false;
  Clock::time_point nextPaint_ = Clock::now() + kBeforeShowing;
};

/// Marks a work as under way for the length of a block, so that a call that comes in its middle leaves it
/// alone.
class UnderWay {
 public:
  explicit UnderWay(bool& mark) : mark_(mark) { mark_ = true; }
  UnderWay(const UnderWay&) = delete;
  UnderWay& operator=(const UnderWay&) = delete;
  ~UnderWay() { mark_ = false; }

 private:
  bool& mark_;
};

}  // namespace ledgertree::shell
