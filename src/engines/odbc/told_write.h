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

// What the user read, and the operation that a write belongs to, are put into the session's context in one
// batch with the write, without a further round trip. dbo.spAccountCompareRead takes what was read from
// there, and fails if the rows now differ; the history's triggers take the operation.

/// What goes into the context before a write; at least one of the two.
struct Said {
  const data::AsRead* read;  ///< null: nothing was passed
  Belonging& belonging;
};

/// Calls a procedure, and returns its return value. The values have passed checkArguments.
[[nodiscard]] std::int32_t callSaid(Session& session, const Said& said, const data::Procedure& procedure,
                                    std::span<const data::Value> values);
/// Runs a statement that returns no rows; if there is something to compare, after the comparison and in one
/// transaction with it.
void runSaid(Session& session, const Said& said, std::string_view statement);

/// Takes an operation back, see data::Connection::takeBack.
[[nodiscard]] data::Rows takeBackThere(Session& session, Belonging& belonging, std::int64_t operation);

}  // namespace ledgertree::engines::odbc
