#pragma once

#include <string_view>

#include "engines/sqlite/tables.h"
#include "tsql/syntax.h"

/// The rules for a list of a key and its dependants, such as an account and all below it:
///     m in (select k union select t.c from t where ...)
/// m, t.c and k, which is a number or a column, are numeric by their declared types, so the sides of "=" can
/// be swapped. Every column in the list is qualified.
namespace ledgertree::engines::sqlite {

/// In an exists, whose select has no limit and no aggregate,
///     exists (select ... from s where A and m in (list))
/// becomes
///     exists (select null from s where A and m = k) or
///     exists (select null from t, s where A and ... and m = t.c)
/// so that each part starts at a key and ends at its first row. A member of a union is a member of one of its
/// parts, and an exists only needs any row. Neither A nor the tables of s mention t, and all their columns
/// are qualified, so that t may join them.
///
/// Every split doubles the contents of the exists: `splits` counts those of a statement, to limit them.
void splitUnionList(tsql::ExpressionPtr& exists, int& splits);

/// In a DELETE of many rows r of a table
///     not exists (select ... from s where A and m in (select r.k union select t.c from t where t.p = r.k))
/// becomes
///     not (r.k is not null and (r.k in (select m from s where A and m is not null) or
///                               r.k in (select t.p from t where t.p is not null and
///                                       t.c in (select m from s where A and m is not null))))
/// so that both lists are read once. Looked up row by row, an account near the top would check each of its
/// descendants; from the other side each m names its few ancestors. Some m is k, or the c of a row of t whose
/// p is k: seen from k, that is a membership. The lists contain no null, and A doesn't mention r. It doesn't
/// apply if the conditions restrict the rows to a key, since one row is looked up faster.
void testsToLists(tsql::ExpressionPtr& where, std::string_view table, Tables& tables);

}  // namespace ledgertree::engines::sqlite
