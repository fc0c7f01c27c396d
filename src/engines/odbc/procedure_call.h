#pragma once

#include <cstdint>
#include <span>

#include "data/catalogue.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// Calls a procedure as "{? = CALL name( ?, ?) }" and gives its return value. The values were looked at by
/// checkArguments. Text goes as Unicode, in the letters of the session's code page.
[[nodiscard]] std::int32_t callProcedure(Session& session, const data::Procedure& procedure,
                                         std::span<const data::Value> values);

}  // namespace ledgertree::engines::odbc
