#pragma once

#include <map>
#include <string>
#include <vector>

namespace ledgertree::text {

/// The characters that fold() treats as equal, by their folded form; those that it drops are
/// under the empty text. A character not listed here only equals itself. Each list is in byte
/// order.
using FoldForms = std::map<std::string, std::vector<std::string>, std::less<>>;
[[nodiscard]] const FoldForms& foldForms();

}  // namespace ledgertree::text
