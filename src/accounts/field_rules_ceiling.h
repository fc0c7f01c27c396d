#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "data/value.h"

namespace ledgertree::accounts {

struct EditedText {
  std::string text;
  std::size_t caret = 0;  ///< counted in characters
  bool operator==(const EditedText&) const = default;
};

/// Parses the text of a ceiling; pasted Persian and Arabic digits count like typed ones. Throws
/// std::range_error beyond the range of money.
[[nodiscard]] data::Money ceilingAmount(std::string_view text);

/// Formats a ceiling after a key: "/" between thousands, no leading zeros, 0 if nothing is left. The caret
/// keeps its position among the digits. Next to a separator it goes after it, but after a backspace before
/// it, so that the next backspace deletes a digit and not the separator again.
///
/// An amount beyond the range of money keeps its digits: the save reports it.
[[nodiscard]] EditedText formatCeiling(std::string_view text, std::size_t caret, bool afterBackspace);

}  // namespace ledgertree::accounts
