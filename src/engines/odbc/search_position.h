#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ledgertree::engines::odbc {

/// The passes of a search, one behind the other. What the statement of a pass takes is left out by those of
/// the later ones, so that every hit comes once.
enum class Pass : char {
  Whole = '0',   ///< codes that are the text
  Begins = '1',  ///< codes that begin with it
  Names = '2',   ///< names that do, and codes that the collation doesn't see begin so
  Holds = '3'    ///< the rest
};

/// Throws data::DataError(Misuse): no page gave this continuation.
[[noreturn]] void refuseContinuation();

/// Where a search stands: behind the last row that was looked at.
struct Position {
  enum class Kind : char { Start = 's', Null = 'n', Integer = 'i', Narrow = 'v', Wide = 'w', Key = 'k' };

  explicit Position(Pass of = Pass::Holds) : pass(of) {}

  Pass pass;
  Kind kind = Kind::Start;  ///< of the first column; Key: only the ID counts
  std::optional<std::int64_t> id;
  std::size_t passed = 0;  ///< rows with this ID, one behind the other
  std::string value;       ///< of the first column

  /// "<pass><kind> <passed> <id> <value>".
  [[nodiscard]] std::string toContinuation() const;
  /// The start of the last pass for an empty text; throws data::DataError(Misuse) for one that no page gave.
  static Position parse(std::string_view continuation);

  /// What the rows from this position on fulfil, in Transact-SQL; empty for all.
  [[nodiscard]] std::string condition(const std::string& column) const;
};

}  // namespace ledgertree::engines::odbc
