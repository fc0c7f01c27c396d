#pragma once

#include <vector>

#include "tsql/syntax.h"

namespace ledgertree::tsql {

/// The conditions that a WHERE joins by AND, for reading or in-place changes; none if there is no WHERE.
[[nodiscard]] std::vector<ExpressionPtr*> conjuncts(ExpressionPtr& where);

/// Both conditions joined by AND; either may be null.
[[nodiscard]] ExpressionPtr both(ExpressionPtr left, ExpressionPtr right);

/// Removes conditions already decided as true or false, with everything they decide, and redundant
/// parentheses: a WHERE that always holds becomes null.
void settleWhere(ExpressionPtr& where);

}  // namespace ledgertree::tsql
