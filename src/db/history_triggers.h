#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ledgertree::db {

struct Trigger {
  std::string name;
  std::string text;  ///< the statement that creates it
};

/// What whoever would change the memory is told, on both engines.
inline constexpr std::string_view kNobodyChanges =
    "سابقه حسابها تغيير نميکند و حذف نميشود. کوتاه کردن آن با ledgertree-schema --prune-history انجام ميشود.";

/// What keeps the changes of the five tables in a file; see embedded/history/tables.sql.
[[nodiscard]] std::vector<Trigger> rememberingTriggers();
/// What keeps the memory itself as it is.
[[nodiscard]] std::vector<Trigger> guardingTriggers();

}  // namespace ledgertree::db
