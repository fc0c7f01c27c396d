#pragma once

#include "data/connection.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// A page of a search in a view, see Connection::search: within each part of the order by the first column,
/// as the server's collation has it, and the ID. One question to the server, as a rule: what comes ahead has
/// a statement of its own, so that no row is sorted that no page shows, and all of them go out together.
///
/// Which code is the text, or begins with it, is the collation's to say, over the index. A code that is
/// written otherwise (with a joiner, say) comes with the names that begin so.
[[nodiscard]] data::SearchPage searchView(Session& session, const data::SearchRequest& request);

}  // namespace ledgertree::engines::odbc
