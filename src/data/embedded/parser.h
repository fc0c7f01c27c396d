#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "data/embedded/syntax.h"
#include "data/embedded/tokens.h"

namespace ledgertree::data::embedded {

/// What a literal has decided about a statement, so that the statement with another literal there may be
/// another one.
struct Decision {
  bool folded = false;  ///< a condition between two literals; otherwise a literal that stays in the text
  std::size_t literal = 0;
  bool negated = false;
  std::string_view sign;  ///< of a folded condition, with the second literal of it
  std::size_t other = 0;
  bool otherNegated = false;
};

/// What the decisions come to for these literals: equal texts, equal statements but for their parameters.
/// Appends.
void appendOutcome(const std::vector<Decision>& decisions, const std::vector<Literal>& literals,
                   std::string& outcome);

struct ParsedStatement {
  Statement statement;
  std::vector<Literal> literals;  ///< in the order of the text, which they are views of
  std::vector<Decision> decisions;
};

/// Reads one statement. Throws DataError(Statement) that names the word which it doesn't understand; that is
/// one for several statements in one text, for a nesting deeper than any screen's, and for every part of the
/// language that no statement of the system uses.
[[nodiscard]] ParsedStatement parseStatement(std::string_view text);

}  // namespace ledgertree::data::embedded
