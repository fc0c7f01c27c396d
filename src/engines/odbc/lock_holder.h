#pragma once

#include <optional>

#include "data/data_error.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// The refusal of a command because of a lock, with the lock's holder added to its message: the login,
/// computer and program of the session that has held a lock on the chart's tables, or on the chart as a
/// whole, for the longest. Returns nothing for any other failure, for a user without the right VIEW SERVER
/// STATE, and for a server without these views.
///
/// This takes one more query, which waits for no lock; its failures are ignored. Reason and number of the
/// refusal stay.
[[nodiscard]] std::optional<data::DataError> toldWithHolder(Session& session, const data::DataError& refusal);

}  // namespace ledgertree::engines::odbc
