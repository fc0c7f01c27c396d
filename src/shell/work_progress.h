#pragma once

#include <chrono>
#include <cstdint>

#include "shell/database_waits.h"
#include "ui/control.h"
#include "ui/form.h"

namespace ledgertree::shell {

/// Shows the progress of long work on the screen that started it. Work done within half a second shows
/// nothing. The bar is always hidden again when the object ends.
///
/// Work that may stop without loss can be cancelled: the bar names the key, and givenUp() tells.
class WorkProgress {
 public:
  static constexpr std::chrono::milliseconds kBeforeShowing = DatabaseWaits::kBeforeShowing;
  static constexpr std::chrono::milliseconds kBetweenPaints{100};

  enum class WayOut { None, Escape };

  /// `bar` is a hidden control of `form`.
  WorkProgress(ui::Form& form, ui::ProgressBar& bar, std::int32_t all, WayOut wayOut = WayOut::None);
  WorkProgress(const WorkProgress&) = delete;
  WorkProgress& operator=(const WorkProgress&) = delete;
  ~WorkProgress();

  /// `done` of all units are done. May repaint the form, which takes no input meanwhile.
  void advance(std::int32_t done);
  /// The total amount of work has changed to `all`.
  void expect(std::int32_t all) { all_ = all; }
  /// Whether the user wants the work to stop.
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

/// Marks work as in progress for the length of a block, so that a nested call leaves it
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
