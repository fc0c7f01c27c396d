#pragma once

#include <optional>

#include "data/data_error.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// Who holds what a command was refused for, behind the words of its refusal, where the server tells: the
/// login, the computer and the program of the session that has held a lock on the chart's tables, or on the
/// chart as a whole, for the longest. Nothing for a failure that is no such refusal, for a user who may not
/// look (it takes the right VIEW SERVER STATE), and for a server that doesn't know these views.
///
/// One more question to the server, which waits for nobody; whatever fails with it isn't told. The reason and
/// the number stay.
[[nodiscard]] std::optional<data::DataError> toldWithHolder(Session& session, const data::DataError& refusal);

}  // namespace ledgertree::engines::odbc
