#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "sheetkit/sheet_file.h"
#include "shell/outside_components.h"
#include "support/given.h"

namespace ledgertree::sheetkit {

/// The component SheetKit.SheetWriter: asks where the spreadsheet goes, writes the rows of a statement, or
/// those that it was given, and shows progress. It reports its own failures. Needs a QApplication, and runs
/// on the user-interface thread.
class SheetWriter : public shell::OutsideComponent {
 public:
  void set(std::string_view member, const data::Value& value) override;
  [[nodiscard]] data::Value get(std::string_view member) override;
  void call(std::string_view member, const std::vector<data::Value>& arguments) override;

 private:
  /// What the user reads about an export.
  struct Said {
    const char* title;
    const char* file;  ///< the file's name, after the day
    const char* unit;  ///< of what is counted
  };
  static void exportFrom(const Source& source, const Said& said);
  /// The number of rows in the file; 0 if the user cancelled. The progress is gone when it returns, so that
  /// it can't come up over what is said next.
  static std::int64_t writeShowingProgress(const Source& source, const Said& said, const QString& file);
  void showRows(const std::function<bool(const data::Rows& row)>& show) const;

  components::Given given_;
  std::vector<std::vector<data::Value>> rows_;  ///< the heading first
};

}  // namespace ledgertree::sheetkit
