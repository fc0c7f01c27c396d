#pragma once

#include <string>
#include <vector>

namespace ledgertree::db {

struct Trigger {
  std::string name;
  std::string text;  ///< the statement that creates it
};

/// What keeps the changes of the five tables in a file; see embedded/history/tables.sql.
[[nodiscard]] std::vector<Trigger> rememberingTriggers();
/// What keeps the memory itself as it is.
[[nodiscard]] std::vector<Trigger> guardingTriggers();

}  // namespace ledgertree::db
