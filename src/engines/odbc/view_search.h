#pragma once

#include "data/connection.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// A page of a search in a view, see Connection::search: within each rank, ordered by the first column in the
/// server's collation, then by ID. Usually one round trip: each rank has its own statement, so that no row is
/// sorted that no page shows, and all statements are sent together.
///
/// Which codes equal the text, or begin with it, is decided by the collation, using the index. A code written
/// otherwise (with a joiner, say) comes among the names with that beginning.
[[nodiscard]] data::SearchPage searchView(Session& session, const data::SearchRequest& request);

}  // namespace ledgertree::engines::odbc
