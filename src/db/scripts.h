#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::db {

/// The paths of the scripts that stand in a folder ("db/embedded/"), in the order of their names; those of
/// folders below it don't count.
[[nodiscard]] std::vector<std::string_view> scriptsIn(std::string_view folder);

/// The scripts of both databases and those of one, in the order in which they run, that of their names: what
/// stands in a folder ("db/demo/"), and what the folder of the engine below it ("embedded") says differently.
[[nodiscard]] std::vector<std::string_view> scriptsWithOwn(const std::string& folder,
                                                           std::string_view engine);

/// A part of a script that is sent as one: what stands between two lines that say GO.
struct Batch {
  std::string_view text;
  int line = 1;  ///< the line of the script on which the text begins
};

/// Cuts a script of SQL Server into its batches, without those that are blank. A separator is a line that
/// holds GO in any letter case and blanks; GO inside a comment, a text or a name in brackets is none.
[[nodiscard]] std::vector<Batch> batchesOf(std::string_view script);

}  // namespace ledgertree::db
