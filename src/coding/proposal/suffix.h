#pragma once

#include <string>
#include <string_view>

/// Arithmetic on pieces of account codes, on decimal digits rather than machine integers, so that it is exact
/// for every piece that fits a code.
namespace ledgertree::coding {

/// The piece plus one, keeping its width and leading zeros: 01 becomes 02, 099 becomes 100. The width never
/// grows: 99 becomes 00. Only the number at the start of the piece counts, with blanks skipped and decimals
/// kept (12A becomes 13, 1.5 becomes 2.5); a piece that starts with no number, like A1 or the empty one,
/// results in an empty text.
[[nodiscard]] std::string nextSuffix(std::string_view suffix);

/// An account's own part of its code: the code without as many leading characters as the parent's code has;
/// the whole code if it is no longer than that. The removed characters aren't compared with the parent's
/// code.
[[nodiscard]] std::string_view ownPart(std::string_view code, std::string_view motherCode);

}  // namespace ledgertree::coding
