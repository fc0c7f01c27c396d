#pragma once

#include <string>
#include <vector>

#include "ledgertree/export.h"

namespace ledgertree {

/// Draws the screen that is open into PNG files of a folder, which is made if it isn't there, and gives their
/// paths; the one of an edit is missing where the user may not edit. For a machine without a display. Throws
/// std::runtime_error where a file can't be written.
[[nodiscard]] LEDGERTREE_API std::vector<std::string> drawScreens(const std::string& folder);

/// The tree of accounts as lines of text, its first levels opened: what a log or a terminal can show of the
/// screen.
[[nodiscard]] LEDGERTREE_API std::string treeAsText(int levels);

}  // namespace ledgertree
