#pragma once

#include <map>
#include <string>
#include <vector>

namespace ledgertree::text {

/// The characters that fold() takes for the same, by what it makes of them; those that it drops stand under
/// the empty text. A character that isn't here stands for itself alone. Each list is in the order of its
/// bytes.
using FoldForms = std::map<std::string, std::vector<std::string>, std::less<>>;
[[nodiscard]] const FoldForms& foldForms();

}  // namespace ledgertree::text
