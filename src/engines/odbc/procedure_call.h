#pragma once

#include <cstdint>
#include <span>

#include "data/catalogue.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// Calls a procedure as "{? = CALL name( ?, ?) }" and returns its return value. The values have passed
/// checkArguments. Text is sent as Unicode, folded to the session's code page.
[[nodiscard]] std::int32_t callProcedure(Session& session, const data::Procedure& procedure,
                                         std::span<const data::Value> values);

}  // namespace ledgertree::engines::odbc
