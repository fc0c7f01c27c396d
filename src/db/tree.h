#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

namespace ledgertree::db {

/// Whether ancestors and levels of a file look true: the triggers that keep them are all there, and the
/// newest account was seen by them. It costs the same whatever the size of the chart; a program that switched
/// the triggers off, moved old accounts and switched them on again goes unnoticed (see check.h).
[[nodiscard]] bool treeLooksTrue(SQLite::Database& database);

/// Makes tblAccountParent and NoLevel what the parents say, where they aren't, within a transaction of the
/// caller. Gives how many accounts were gone over, those below a wrong one among them; 0 where all was true.
/// Looks at every account. Throws data::DataError(Connection) that names accounts which are below themselves.
int mendTree(SQLite::Database& database);

}  // namespace ledgertree::db
