#pragma once

#include <string_view>
#include <vector>

#include "shell/outside_components.h"

namespace ledgertree::bench {

/// Replaces the notice component and answers yes to every question.
class YesSayer : public shell::OutsideComponent {
 public:
  void set(std::string_view, const data::Value&) override {}
  [[nodiscard]] data::Value get(std::string_view) override { return 1; }
  void call(std::string_view, const std::vector<data::Value>&) override {}
};

}  // namespace ledgertree::bench
