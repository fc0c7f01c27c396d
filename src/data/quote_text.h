#pragma once

#include <string>
#include <string_view>

namespace ledgertree::data {

/// A text as a literal of a statement: between apostrophes, its own apostrophes doubled. Throws
/// DataError(Reason::Misuse) for text that isn't clean. The one way in which text gets into a statement.
[[nodiscard]] std::string quoteText(std::string_view text);

}  // namespace ledgertree::data
