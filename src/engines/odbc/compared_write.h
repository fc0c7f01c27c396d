#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "data/as_read.h"
#include "data/catalogue.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

// What was read goes into the session's context, in one batch with the write: no round trip more. There
// dbo.spAccountCompareRead finds it, which fails where the rows hold something else.

/// Calls a procedure that compares, and gives its return value. The values were looked at by checkArguments.
[[nodiscard]] std::int32_t callCompared(Session& session, const data::AsRead& read,
                                        const data::Procedure& procedure,
                                        std::span<const data::Value> values);
/// Runs a statement that gives no rows behind the comparison, in one transaction with it.
void runCompared(Session& session, const data::AsRead& read, std::string_view statement);

}  // namespace ledgertree::engines::odbc
