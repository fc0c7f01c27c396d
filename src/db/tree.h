#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

namespace ledgertree::db {

/// Whether a file's ancestors and levels look right: all the triggers that maintain them exist, and have
/// processed the newest account. The cost doesn't depend on the size of the chart; a program that disabled
/// the triggers, moved old accounts and enabled them again goes unnoticed (see check.h).
[[nodiscard]] bool treeLooksTrue(SQLite::Database& database);

/// Corrects tblAccountParent and NoLevel where they contradict the parents, within the caller's transaction.
/// Returns how many accounts were processed, including those below a wrong one; 0 if all was right. Checks
/// every account. Throws data::DataError(Connection) naming accounts that are their own descendants.
int mendTree(SQLite::Database& database);

}  // namespace ledgertree::db
