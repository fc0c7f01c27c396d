#pragma once

#include <cstdint>
#include <span>

#include "data/catalogue.h"
#include "data/odbc/session.h"

namespace ledgertree::data::odbc {

/// Calls a procedure as "{? = CALL name( ?, ?) }" and gives its return value. The values were looked at by
/// checkArguments. Text goes as Unicode, in the letters of the session's code page.
[[nodiscard]] std::int32_t callProcedure(Session& session, const Procedure& procedure,
                                         std::span<const Value> values);

}  // namespace ledgertree::data::odbc
