#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "ledgertree/chart_events.h"

namespace ledgertree::shell {

/// Events of the chart that the host hasn't been told of.
class ChartNews {
 public:
  /// Called for the first event after a time without any.
  std::function<void()> onFirst;

  void add(ChartEvent::Kind kind, const std::vector<std::int32_t>& accounts) {
    const bool first = events_.empty();
    const bool goesOn = !first && events_.back().kind == kind;
    if (!goesOn) events_.push_back({.kind = kind, .accounts = {}});
    std::vector<std::int32_t>& known = events_.back().accounts;
    if (kind == ChartEvent::Kind::Shown) known.clear();
    known.insert(known.end(), accounts.begin(), accounts.end());
    if (first && onFirst) onFirst();
  }

  [[nodiscard]] bool empty() const { return events_.empty(); }
  [[nodiscard]] std::vector<ChartEvent> take() { return std::exchange(events_, {}); }

 private:
  std::vector<ChartEvent> events_;
};

}  // namespace ledgertree::shell
