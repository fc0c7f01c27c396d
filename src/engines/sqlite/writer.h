#pragma once

#include "engines/sqlite/dialect.h"
#include "tsql/syntax.h"

namespace ledgertree::engines::sqlite {

/// Writes a statement in SQLite's dialect. The decisions of the translation stay empty.
[[nodiscard]] Translation writeStatement(const tsql::Statement& statement);

}  // namespace ledgertree::engines::sqlite
