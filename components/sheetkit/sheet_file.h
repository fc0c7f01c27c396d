#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>

#include "data/connection.h"

namespace ledgertree::sheetkit {

/// The most rows that a sheet holds below its heading.
inline constexpr std::int64_t kMostRows = 1048575;

/// Called with how many of all rows are done (0 while they are still being counted), and finally with all of
/// them, before the file is put together; returning false cancels the work.
using Progress = std::function<bool(std::int64_t done, std::int64_t all)>;

/// Shows the rows of a sheet one by one, each as the only row of its Rows, until `show` returns false. A
/// source without rows shows its columns once. It is read twice and gives the same rows both times.
using Source = std::function<void(const std::function<bool(const data::Rows& row)>& show)>;

/// Writes the rows of a source, or of a statement, into a workbook with one right-to-left sheet: the column
/// names as a frozen heading with filters, text as text (a code keeps its leading zeros), numbers as numbers,
/// long texts wrapped, columns as wide as their texts. If there is a column "سطح", rows are grouped by that
/// level, and the column "شرح حساب" is indented by it.
///
/// The rows are read twice, once to count and measure them, and never kept: memory doesn't grow with them.
/// The workbook is created under a temporary name next to `file` and replaces it when complete; otherwise
/// nothing of it is left, and an existing file stays.
///
/// Returns the number of rows below the heading, 0 if `progress` cancelled. Throws data::DataError if the
/// database fails, and std::runtime_error with a message for the user for more than `mostRows` rows (before
/// the first byte) or a file that can't be written.
[[nodiscard]] std::int64_t writeSheet(const Source& source, const std::filesystem::path& file,
                                      const Progress& progress, std::int64_t mostRows = kMostRows);
[[nodiscard]] std::int64_t writeSheet(data::Connection& connection, std::string_view statement,
                                      const std::filesystem::path& file, const Progress& progress,
                                      std::int64_t mostRows = kMostRows);

}  // namespace ledgertree::sheetkit
