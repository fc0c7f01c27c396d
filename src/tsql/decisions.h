#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/tokens.h"

namespace ledgertree::tsql {

/// A literal whose value changes the generated SQL, so that the same statement with
/// another literal there may need another translation.
struct Decision {
  bool folded = false;  ///< a condition between two literals; otherwise a literal kept in the text
  std::size_t literal = 0;
  bool negated = false;
  std::string_view op;  ///< of a folded condition, as is its second literal
  std::size_t other = 0;
  bool otherNegated = false;
};

/// Appends the outcome of the decisions for these literals: equal outcomes
/// mean equal statements except for their parameters.
void appendOutcome(const std::vector<Decision>& decisions, const std::vector<Literal>& literals,
                   std::string& outcome);

/// Whether a folded condition holds for these literals.
[[nodiscard]] bool holdsFor(const Decision& decision, const std::vector<Literal>& literals);

}  // namespace ledgertree::tsql
