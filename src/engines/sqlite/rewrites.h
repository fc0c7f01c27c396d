#pragma once

#include "engines/sqlite/tables.h"
#include "tsql/syntax.h"

namespace ledgertree::engines::sqlite {

/// Rewrites a statement, whose values must have their types, so that SQLite finds its rows by key. The rules
/// only look at its form and at the schema, not at particular tables or screens; each documents when it
/// applies and why the result is exactly the same. What no rule fits stays as it is.
///
/// - Conditions already decided as true or false disappear.
/// - A membership becomes a look-up for each row, if another condition finds the rows.
/// - A list of a key and its dependants becomes two tests (see union_lists.h).
/// - A range held in one row becomes a range between two values.
/// - A condition that doesn't depend on the row is evaluated once, before the rows.
void rewriteForLookUps(tsql::Statement& statement, Tables& tables);

}  // namespace ledgertree::engines::sqlite
