#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/tokens.h"

namespace ledgertree::tsql {

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

/// Whether a folded condition holds for these literals.
[[nodiscard]] bool holdsFor(const Decision& decision, const std::vector<Literal>& literals);

}  // namespace ledgertree::tsql
