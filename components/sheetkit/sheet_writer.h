#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "sheetkit/sheet_file.h"
#include "shell/outside_components.h"
#include "support/given.h"

namespace ledgertree::sheetkit {

/// The component SheetKit.SheetWriter: asks where the spreadsheet goes, writes it, and shows how far it is.
/// It writes the rows of a statement, or those that it was given.
/// What fails it tells by itself. It stands on a QApplication, and on the thread of the screens.
class SheetWriter : public shell::OutsideComponent {
 public:
  void set(std::string_view member, const data::Value& value) override;
  [[nodiscard]] data::Value get(std::string_view member) override;
  void call(std::string_view member, const std::vector<data::Value>& arguments) override;

 private:
  /// What the person reads of what is written.
  struct Said {
    const char* title;
    const char* file;  ///< behind the day
    const char* unit;  ///< of what is counted
  };
  void exportFrom(const Source& source, const Said& said) const;
  void showRows(const std::function<bool(const data::Rows& row)>& show) const;

  components::Given given_;
  std::vector<std::vector<data::Value>> rows_;  ///< the heading first
};

}  // namespace ledgertree::sheetkit
