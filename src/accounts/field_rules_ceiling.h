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

/// The amount that the text of a ceiling stands for; pasted Persian and Arabic digits count like typed ones.
/// Throws std::range_error past the range of money.
[[nodiscard]] data::Money ceilingAmount(std::string_view text);

/// A ceiling after a key: "/" between thousands, no leading zeros, 0 where nothing is left. The caret keeps
/// its place among the digits. Beside a separator it stands behind it, or ahead of it after a backspace, so
/// that the next backspace takes a digit and not the separator once more.
///
/// An amount past the range of money keeps its digits: the save tells of it.
[[nodiscard]] EditedText formatCeiling(std::string_view text, std::size_t caret, bool afterBackspace);

}  // namespace ledgertree::accounts
