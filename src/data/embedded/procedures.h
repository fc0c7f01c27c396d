#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <span>

#include "data/catalogue.h"
#include "data/value.h"

namespace ledgertree::data::embedded {

/// Carries out a procedure of the catalogue on a database that has the schema of src/db/embedded, and gives its return
/// value. Each one is atomic: it has done all of its work or none. The caller has checked the number of the values and
/// the widths of their texts. Throws SQLite::Exception where the engine fails, DataError for a procedure without a body.
[[nodiscard]] std::int32_t callProcedure(SQLite::Database& database, const Procedure& procedure,
                                         std::span<const Value> values);

}  // namespace ledgertree::data::embedded
