#pragma once

#include <optional>
#include <string_view>

namespace ledgertree::data {

/// The name of a view that comes from data, fit to stand in a statement as it is: without the blanks at its
/// ends.
///
/// Fit is a plain name, alone or behind the name of its schema, and that alone or behind the name of its
/// database ("vwThing", "dbo.vwThing", "Host.dbo.vwThing"), each of them in brackets or not. Without brackets
/// a name is a Latin, Arabic or Persian letter or "_", followed by these, digits and "$"; in brackets it is
/// any text without brackets, quotes and control characters. Each has at most 128 characters. Any other text
/// gives nothing, since it could say more than a name.
[[nodiscard]] std::optional<std::string_view> plainViewName(std::string_view text);

}  // namespace ledgertree::data
