#pragma once

#include <string_view>
#include <vector>

#include "tsql/conditions.h"
#include "tsql/syntax.h"

/// The statement forms that the rules refer to, and short names for the syntax types.
namespace ledgertree::engines::sqlite {

using tsql::both;
using tsql::clone;
using tsql::conjuncts;
using tsql::Expression;
using tsql::ExpressionPtr;
using tsql::makeCompare;
using tsql::makeExpression;
using tsql::outerNames;
using tsql::Select;
using tsql::SelectCore;
using tsql::settleWhere;
using tsql::Source;
using Kind = Expression::Kind;

[[nodiscard]] bool isColumnOf(const Expression& expression, std::string_view source);
/// By its declared type, or as a literal.
[[nodiscard]] bool isNumber(const Expression& expression);

/// Whether a select returns its rows' own values. An aggregate returns a row even if there is none.
[[nodiscard]] bool hasPlainItems(const SelectCore& core);
/// Whether this exists only tests for rows: its select is no union, and has neither a limit nor an
/// aggregate.
[[nodiscard]] bool asksForRows(const Select& exists);
[[nodiscard]] ExpressionPtr existsOf(SelectCore core);

/// Whether a value is constant over all rows of a select's only table: a literal, or a column that its prefix
/// assigns to an outer statement.
[[nodiscard]] bool isGiven(const Expression& value, std::string_view source);
/// The numeric columns of a select's only table that the conditions fix to one given number each. An
/// unqualified column is taken as one of that table.
[[nodiscard]] std::vector<std::string_view> fixedColumns(ExpressionPtr& where, std::string_view source);

}  // namespace ledgertree::engines::sqlite
