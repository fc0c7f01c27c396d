#pragma once

#include <string>
#include <string_view>

namespace ledgertree::data {

/// A text as a SQL literal: in apostrophes, with apostrophes inside doubled. Throws DataError(Reason::Misuse)
/// for text that isn't clean. The only way in which text gets into a statement.
[[nodiscard]] std::string quoteText(std::string_view text);

/// A text between two quotes or brackets, with the closing one doubled inside.
[[nodiscard]] std::string quoted(std::string_view text, char opening, char closing);

}  // namespace ledgertree::data
