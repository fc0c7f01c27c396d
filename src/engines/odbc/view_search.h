#pragma once

#include "data/connection.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// A page of a search in a view, see Connection::search: in the order of the first column and the ID, or of
/// the ID alone where no column is asked for. The server leaves out most rows that can't be hits; whether the
/// others are is decided here, letters folded as everywhere in the product.
[[nodiscard]] data::SearchPage searchView(Session& session, const data::SearchRequest& request);

/// A pattern for "like" under a binary collation that every text fits whose folded form holds `folded`; a few
/// others fit too. It is no literal yet.
[[nodiscard]] std::string likePattern(std::string_view folded);

}  // namespace ledgertree::engines::odbc
