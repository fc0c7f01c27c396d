#pragma once

#include <string>
#include <string_view>

/// Arithmetic on pieces of account codes. It counts decimal digits, not numbers of some width in bits, so
/// that it is exact for every piece that fits a code.
namespace ledgertree::coding {

/// The piece raised by one, with its width and its leading zeros: 01 gives 02, 099 gives 100. The width never
/// grows: 99 gives 00. What counts is the number that the piece begins with, blanks skipped and decimals kept
/// (12A gives 13, 1.5 gives 2.5); a piece that begins with none, like A1 or the empty one, gives an empty
/// text.
[[nodiscard]] std::string nextSuffix(std::string_view suffix);

/// An account's own part of its code: what is left of it behind as many characters as the parent's code has;
/// the whole code where it is no longer than that. The front isn't compared with the parent's code.
[[nodiscard]] std::string_view ownPart(std::string_view code, std::string_view motherCode);

}  // namespace ledgertree::coding
