#pragma once

#include <string_view>

#include "engines/sqlite/tables.h"
#include "tsql/syntax.h"

/// The rules for a list of a key and of what belongs to it, as an account and all below it:
///     m in (select k union select t.c from t where ...)
/// m, t.c and k, which is a number or a column, are numbers, by their declared types: so it doesn't matter
/// which side of "=" one stands on. Every column in the list says whose it is.
namespace ledgertree::engines::sqlite {

/// In an exists, whose select has no limit and no aggregate,
///     exists (select ... from s where A and m in (list))
/// becomes
///     exists (select null from s where A and m = k) or
///     exists (select null from t, s where A and ... and m = t.c)
/// so that each part starts at a key and ends at its first row. A member of a union is a member of one of its
/// parts, and an exists asks for any row. A and the tables of s name t nowhere, and say of each column whose
/// it is, so that t may stand beside them.
///
/// Every split doubles what stands in the exists: `splits` counts those of a statement, which are few.
void splitUnionList(tsql::ExpressionPtr& exists, int& splits);

/// In a DELETE of many rows r of a table
///     not exists (select ... from s where A and m in (select r.k union select t.c from t where t.p = r.k))
/// becomes
///     not (r.k is not null and (r.k in (select m from s where A and m is not null) or
///                               r.k in (select t.p from t where t.p is not null and
///                                       t.c in (select m from s where A and m is not null))))
/// so that both lists are read once. Looked up row by row, an account near the top asks for each of its
/// descendants; from the other side each m names its few ancestors. Some m is k, or the c of a row of t whose
/// p is k: asked from k, that is a membership. The lists have no null, and A names r nowhere. It doesn't
/// apply where the conditions hold the rows to a key, since one row is looked up sooner.
void testsToLists(tsql::ExpressionPtr& where, std::string_view table, Tables& tables);

}  // namespace ledgertree::engines::sqlite
