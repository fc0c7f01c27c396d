#pragma once

#include <string_view>
#include <vector>

#include "tsql/conditions.h"
#include "tsql/syntax.h"

/// The forms of which the rules speak, and the words of the syntax in which they do.
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
/// By its declared type; a literal too.
[[nodiscard]] bool isNumber(const Expression& expression);

/// Whether the values of a select are its rows' own. An aggregate has a row even where there is none.
[[nodiscard]] bool hasPlainItems(const SelectCore& core);
/// Whether an exists of this select asks for its rows alone: it is no union, and has neither a limit nor an
/// aggregate.
[[nodiscard]] bool asksForRows(const Select& exists);
[[nodiscard]] ExpressionPtr existsOf(SelectCore core);

/// Whether a value is the same for all rows of the only table of a select: a literal, or a column that its
/// prefix tells to be of a statement around it.
[[nodiscard]] bool isGiven(const Expression& value, std::string_view source);
/// The columns of the only table of a select, of numbers, that the conditions hold to one given number each.
/// A bare column is taken for one of the table.
[[nodiscard]] std::vector<std::string_view> fixedColumns(ExpressionPtr& where, std::string_view source);

}  // namespace ledgertree::engines::sqlite
