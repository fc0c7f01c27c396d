#pragma once

#include <string>
#include <vector>

namespace ledgertree::testing {

/// The lines of a section of a text file below tests/, such as "ui/keys.txt". A section begins with "== " and
/// its name; a line that begins with a blank goes on the one before; empty lines and those with "#" in front
/// don't count. Throws std::runtime_error where there is no such section or nothing in it.
[[nodiscard]] std::vector<std::string> linesOf(const std::string& file, const std::string& section);

/// The same, each line cut at its bars; the blanks around a cell don't belong to it.
[[nodiscard]] std::vector<std::vector<std::string>> tableOf(const std::string& file,
                                                            const std::string& section);

/// A text without the blanks around it.
[[nodiscard]] std::string trimmed(const std::string& text);

}  // namespace ledgertree::testing
