#pragma once

#include <string_view>
#include <vector>

#include "shell/outside_components.h"
#include "support/given.h"

namespace ledgertree::sheetkit {

/// The component SheetKit.SheetWriter: asks where the spreadsheet goes, writes it, and shows progress. It
/// reports its own failures. Needs a QApplication, and runs on the user-interface thread.
class SheetWriter : public shell::OutsideComponent {
 public:
  void set(std::string_view member, const data::Value& value) override;
  [[nodiscard]] data::Value get(std::string_view member) override;
  void call(std::string_view member, const std::vector<data::Value>& arguments) override;

 private:
  void exportToExcel(std::string_view statement) const;
  /// Returns the number of accounts, 0 if the user cancelled.
  std::int64_t write(std::string_view statement, const std::string& file) const;

  components::Given given_;
};

}  // namespace ledgertree::sheetkit
