#pragma once

#include "data/connection.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// A page of a search in a view, see Connection::search: within each part of the order by the first column,
/// as the server's collation has it, and the ID. The server leaves out most rows that can't be hits; whether
/// the others are is decided here, letters folded as everywhere in the product. What comes ahead has a
/// statement of its own, so that no row is sorted that no page shows.
///
/// Which code is the text, or begins with it, is the collation's to say, over the index; ی and ي, ک and ك are
/// asked for both. A code that is written otherwise still (with a joiner, say) comes with the rest.
[[nodiscard]] data::SearchPage searchView(Session& session, const data::SearchRequest& request);

/// A pattern for "like" under a binary collation that every text fits whose folded form holds `folded`; a few
/// others fit too. It is no literal yet.
[[nodiscard]] std::string likePattern(std::string_view folded);

}  // namespace ledgertree::engines::odbc
