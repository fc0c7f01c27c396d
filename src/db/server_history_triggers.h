#pragma once

#include <string>
#include <utility>
#include <vector>

#include "db/history_triggers.h"

namespace ledgertree::db {

/// What keeps the changes of the five tables on a server; each stands statements of many rows.
[[nodiscard]] std::vector<Trigger> serverRememberingTriggers();
/// What keeps the memory itself as it is.
[[nodiscard]] std::vector<Trigger> serverGuardingTriggers();

/// A script in db/sqlserver/history/ whose names in braces are replaced, "{day}" by what stands for "day".
using Places = std::vector<std::pair<std::string, std::string>>;
[[nodiscard]] std::string historyScript(const std::string& name, const Places& places = {});

/// The statement that creates the procedure which takes an operation back.
[[nodiscard]] std::string serverTakeBack();

}  // namespace ledgertree::db
