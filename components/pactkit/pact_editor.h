#pragma once

#include <string_view>
#include <vector>

#include "shell/outside_components.h"
#include "support/given.h"

namespace ledgertree::pactkit {

/// The component PactKit.PactEditor: shows the cost centres of the database that it is given, until the
/// user closes it. It reports its own failures. Needs a QApplication, and runs on the user-interface
/// thread.
class PactEditor : public shell::OutsideComponent {
 public:
  void set(std::string_view member, const data::Value& value) override;
  [[nodiscard]] data::Value get(std::string_view member) override;
  void call(std::string_view member, const std::vector<data::Value>& arguments) override;

 private:
  void clearShow() const;

  components::Given given_;
};

}  // namespace ledgertree::pactkit
