#pragma once

#include "tsql/syntax.h"

namespace ledgertree::engines::sqlite {

/// Gives a statement the form in which SQLite finds its rows by key. The result is the same to the last row;
/// forms that aren't known stay as they are.
///
/// - Conditions that came to true or false disappear.
/// - A membership test beside a condition that already finds the rows, as in
///       ID in (select x.AccountID from t x where x.PeriodID = 5) and isnull(ParentID,-1) = 7
///   becomes a look-up for each row found, in place of a list of the whole period for every statement:
///       exists (select 1 from t x where x.PeriodID = 5 and x.AccountID = tblAccount.ID) and ...
/// - A list of an account and what lies below it, inside exists, becomes one exists for the account and one
///   for the rest, so that each starts at a key and ends at its first row.
/// - Where rows are deleted unless their account, or what lies below it, has some line, the lines are read
///   once into two lists: the accounts that have one, and the accounts above those.
/// - A document's date inside one period becomes a range of dates, which an index has.
/// - An exists that no row of the statement decides is asked once, ahead of the rows.
void rewriteForLookUps(tsql::Statement& statement);

}  // namespace ledgertree::engines::sqlite
