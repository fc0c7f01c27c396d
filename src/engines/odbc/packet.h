#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/packet.h"
#include "engines/odbc/belonging.h"
#include "engines/odbc/code_page.h"
#include "engines/odbc/session.h"

namespace ledgertree::engines::odbc {

/// Runs commands as one batch, and appends to `ran` the answer of each as it arrives. Throws the failure of
/// the first one that fails. Needs a SQL Server session.
///
/// Each statement runs in its own `exec`, so that it has its own plan and its mistakes are found only when
/// its turn comes, and all are in one `try`: any error ends the batch there, even inside a procedure or
/// trigger that would continue, and is reported unchanged. A marker after each command tells that it has
/// ended.
void sendPacket(Session& session, Belonging& belonging, std::span<const data::Command> commands,
                std::vector<data::Answer>& ran);

/// A statement within a batch, with its own plan. Throws data::DataError(Misuse) for one that isn't clean.
[[nodiscard]] std::string executed(std::string_view statement, CodePage page);

}  // namespace ledgertree::engines::odbc
