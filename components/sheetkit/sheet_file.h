#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>

#include "data/connection.h"

namespace ledgertree::sheetkit {

/// The rows of a sheet below its heading.
inline constexpr std::int64_t kMostRows = 1048575;

/// Told how many rows are done of all (0 while they are still being counted), and at last that all are, ahead
/// of the file being put together; false gives the work up.
using Progress = std::function<bool(std::int64_t done, std::int64_t all)>;

/// Shows the rows of a sheet one by one, each as the only one of its Rows, until it is told false; at the
/// first call the columns alone where there is none. The same rows each time.
using Source = std::function<void(const std::function<bool(const data::Rows& row)>& show)>;

/// Writes the rows of a source, or of a statement, into a workbook of one sheet that reads from right to
/// left: the column names as a heading that stays in sight and filters, text as text (a code keeps its
/// leading zeros), numbers as numbers, long texts wrapped, columns as wide as their texts. Where there is a
/// column "سطح", rows fold by that level, and the column "شرح حساب" is indented by it.
///
/// The rows are read twice, once to count and measure them, and never kept: memory doesn't grow with them.
/// The workbook is made under another name beside `file` and takes its place when it is whole; on every other
/// path nothing of it is left, and what stood there stays.
///
/// Gives the number of rows below the heading, 0 where `progress` gave it up. Throws data::DataError where
/// the database fails, and std::runtime_error with a text for the person for more than `mostRows` rows (ahead
/// of the first byte) or a file that can't be written.
[[nodiscard]] std::int64_t writeSheet(const Source& source, const std::filesystem::path& file,
                                      const Progress& progress, std::int64_t mostRows = kMostRows);
[[nodiscard]] std::int64_t writeSheet(data::Connection& connection, std::string_view statement,
                                      const std::filesystem::path& file, const Progress& progress,
                                      std::int64_t mostRows = kMostRows);

}  // namespace ledgertree::sheetkit
