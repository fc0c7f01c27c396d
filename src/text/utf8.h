#pragma once

#include <string>
#include <string_view>

namespace ledgertree::text {

/// Text is UTF-8 outside, and characters where a place in it counts. A byte that is no UTF-8 becomes U+FFFD.
[[nodiscard]] std::u32string charactersOf(std::string_view text);
[[nodiscard]] std::string textOf(std::u32string_view characters);

}  // namespace ledgertree::text
