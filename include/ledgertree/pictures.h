#pragma once

#include <string>
#include <vector>

#include "ledgertree/export.h"

namespace ledgertree {

/// Draws the open screen into PNG files in a folder, which is created if missing, and returns their paths;
/// the picture of an edit is missing if the user may not edit. For machines without a display. Throws
/// std::runtime_error if a file can't be written.
[[nodiscard]] LEDGERTREE_API std::vector<std::string> drawScreens(const std::string& folder);

/// The account tree as lines of text, its first `levels` expanded, for a log or a
/// terminal.
[[nodiscard]] LEDGERTREE_API std::string treeAsText(int levels);

}  // namespace ledgertree
