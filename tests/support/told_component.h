#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/outside_components.h"

namespace ledgertree::testing {

/// A host's component that reports to a story what is requested of it, and answers what the story gives:
/// "UserID=1", "Resualt?", "ExportToExcel(its first argument)", and "released" at its end.
class ToldComponent : public shell::OutsideComponent {
 public:
  using Listener = std::function<data::Value(const std::string& asked)>;

  explicit ToldComponent(Listener listener) : listener_(std::move(listener)) {}
  ~ToldComponent() override { listener_("released"); }
  void set(std::string_view member, const data::Value& value) override {
    listener_(std::string(member) + "=" + value.toText());
  }
  data::Value get(std::string_view member) override { return listener_(std::string(member) + "?"); }
  void call(std::string_view member, const std::vector<data::Value>& arguments) override {
    listener_(std::string(member) + "(" + (arguments.empty() ? "" : arguments[0].toText()) + ")");
  }

 private:
  Listener listener_;
};

}  // namespace ledgertree::testing
