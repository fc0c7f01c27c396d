#pragma once

#include <string>
#include <vector>

namespace ledgertree::testing {

/// The lines of a section of a text file below tests/, such as "ui/keys.txt". A section begins with "== " and
/// its name; a line that begins with a blank continues the previous one; empty lines and those starting with
/// "#" are ignored. Throws std::runtime_error if there is no such section or it is empty.
[[nodiscard]] std::vector<std::string> linesOf(const std::string& file, const std::string& section);

/// The same, each line split at "|", with cells trimmed.
[[nodiscard]] std::vector<std::vector<std::string>> tableOf(const std::string& file,
                                                            const std::string& section);

/// A text without surrounding blanks.
[[nodiscard]] std::string trimmed(const std::string& text);

}  // namespace ledgertree::testing
