#pragma once

#include <optional>
#include <string_view>

namespace ledgertree::data {

/// Validates a view name that comes from data for use in a statement as it is; returns it
/// trimmed.
///
/// Accepted is a plain name, optionally after its schema, and that optionally after its database
/// ("vwThing", "dbo.vwThing", "Host.dbo.vwThing"), each in brackets or not. Without brackets a name is a
/// Latin, Arabic or Persian letter or "_", followed by these, digits and "$"; in brackets it is any text
/// without brackets, quotes and control characters. Each has at most 128 characters. Any other text
/// returns nothing, since it could be more than a name.
[[nodiscard]] std::optional<std::string_view> plainViewName(std::string_view text);

}  // namespace ledgertree::data
