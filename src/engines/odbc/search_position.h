#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ledgertree::engines::odbc {

/// The passes of a search, in order. The statement of a pass leaves out the rows of the earlier ones, so that
/// every hit comes once.
enum class Pass : char {
  Whole = '0',   ///< codes equal to the text
  Begins = '1',  ///< codes that begin with it
  Names = '2',   ///< names that begin with it, and codes that do but not for the collation
  Holds = '3'    ///< the rest
};

/// Throws data::DataError(Misuse): no page returned this continuation.
[[noreturn]] void refuseContinuation();

/// The position of a search: after the last row examined.
struct Position {
  enum class Kind : char { Start = 's', Null = 'n', Integer = 'i', Narrow = 'v', Wide = 'w', Key = 'k' };

  explicit Position(Pass of = Pass::Holds) : pass(of) {}

  Pass pass;
  Kind kind = Kind::Start;  ///< type of the first column; Key: only the ID counts
  std::optional<std::int64_t> id;
  std::size_t passed = 0;  ///< rows with this ID so far
  std::string value;       ///< of the first column

  /// "<pass><kind> <passed> <id> <value>".
  [[nodiscard]] std::string toContinuation() const;
  /// An empty text is the start of the last pass. Throws data::DataError(Misuse) for one that no page
  /// returned.
  static Position parse(std::string_view continuation);

  /// The condition for the rows after this position, in Transact-SQL; empty for all rows.
  [[nodiscard]] std::string condition(const std::string& column) const;
};

}  // namespace ledgertree::engines::odbc
