#pragma once

#include <string_view>
#include <vector>

#include "tsql/syntax.h"

/// The forms of which the rules speak.
namespace ledgertree::engines::sqlite {

[[nodiscard]] bool isColumnOf(const tsql::Expression& expression, std::string_view source);
/// By its declared type; a literal too.
[[nodiscard]] bool isNumber(const tsql::Expression& expression);

/// Whether the values of a select are its rows' own. An aggregate has a row even where there is none.
[[nodiscard]] bool hasPlainItems(const tsql::SelectCore& core);
/// Whether an exists of this select asks for its rows alone: it is no union, and has neither a limit nor an
/// aggregate.
[[nodiscard]] bool asksForRows(const tsql::Select& exists);
[[nodiscard]] tsql::ExpressionPtr existsOf(tsql::SelectCore core);

/// The columns of a table, of numbers, that the conditions hold to one literal each. A bare column is taken
/// for one of the table.
[[nodiscard]] std::vector<std::string_view> fixedColumns(tsql::ExpressionPtr& where, std::string_view source);

}  // namespace ledgertree::engines::sqlite
