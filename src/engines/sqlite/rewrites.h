#pragma once

#include "engines/sqlite/tables.h"
#include "tsql/syntax.h"

namespace ledgertree::engines::sqlite {

/// Gives a statement, whose values have their types, the form in which SQLite finds its rows by key. The
/// rules look at the form of a statement and at the schema, and know no table and no screen; each says when
/// it applies and why the rows are the same to the last one. What no rule fits stays as it is.
///
/// - Conditions that came to true or false disappear.
/// - A membership becomes a look-up for each row, where another condition finds the rows.
/// - A list of a key and of what belongs to it becomes two tests (see union_lists.h).
/// - A range that stands in one row becomes a range between two values.
/// - A condition that no row decides is asked once, ahead of the rows.
void rewriteForLookUps(tsql::Statement& statement, Tables& tables);

}  // namespace ledgertree::engines::sqlite
