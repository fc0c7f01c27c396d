#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "data/as_read.h"
#include "data/catalogue.h"
#include "data/rows.h"
#include "engines/odbc/belonging.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

// What was read, and what a write belongs to, goes into the session's context, in one batch with the write:
// no round trip more. There dbo.spAccountCompareRead finds what was read, and fails where the rows hold
// something else, and the triggers of the memory find the rest.

/// What a write says ahead of itself; one of the two at least.
struct Said {
  const data::AsRead* read;  ///< null: nothing was handed over
  Belonging& belonging;
};

/// Calls a procedure, and gives its return value. The values were looked at by checkArguments.
[[nodiscard]] std::int32_t callSaid(Session& session, const Said& said, const data::Procedure& procedure,
                                    std::span<const data::Value> values);
/// Runs a statement that gives no rows; where something was read behind the comparison, in one transaction
/// with it.
void runSaid(Session& session, const Said& said, std::string_view statement);

/// Takes an operation back, see data::Connection::takeBack.
[[nodiscard]] data::Rows takeBackThere(Session& session, Belonging& belonging, std::int64_t operation);

}  // namespace ledgertree::engines::odbc
