#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::db {

/// The paths of the scripts in a folder ("db/embedded/"), sorted by name; subfolders don't
/// count.
[[nodiscard]] std::vector<std::string_view> scriptsIn(std::string_view folder);

/// The scripts shared by both databases and those of one engine, in the order they run, sorted by name: the
/// contents of a folder ("db/demo/"), overridden by those of the engine's subfolder ("embedded").
[[nodiscard]] std::vector<std::string_view> scriptsWithOwn(const std::string& folder,
                                                           std::string_view engine);

/// A part of a script that is sent at once: the text between two GO lines.
struct Batch {
  std::string_view text;
  int line = 1;  ///< the line of the script where the text begins
};

/// Splits a SQL Server script into its batches, without blank ones. A separator is a line that holds only GO
/// in any letter case and blanks; GO inside a comment, a text or a bracketed name doesn't count.
[[nodiscard]] std::vector<Batch> batchesOf(std::string_view script);

}  // namespace ledgertree::db
