#pragma once

#include <vector>

#include "tsql/syntax.h"

namespace ledgertree::tsql {

/// The conditions that a WHERE joins by AND, for a look or a change in place; none where there is no WHERE.
[[nodiscard]] std::vector<ExpressionPtr*> conjuncts(ExpressionPtr& where);

/// Both conditions; either may be none.
[[nodiscard]] ExpressionPtr both(ExpressionPtr left, ExpressionPtr right);

/// Takes away what came to true or false, with all that it decides, and the parentheses that join nothing: a
/// WHERE that always holds becomes none.
void settleWhere(ExpressionPtr& where);

}  // namespace ledgertree::tsql
