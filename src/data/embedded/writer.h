#pragma once

#include "data/embedded/dialect.h"
#include "data/embedded/syntax.h"

namespace ledgertree::data::embedded {

/// Writes a statement in SQLite's dialect. The decisions of the translation stay empty.
[[nodiscard]] Translation writeStatement(const Statement& statement);

}  // namespace ledgertree::data::embedded
