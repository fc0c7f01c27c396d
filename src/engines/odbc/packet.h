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

/// Runs commands as one batch of the server, and adds to `ran` what those gave that ran, as they come. Throws
/// the failure of the command behind them. Needs a session with SQL Server.
///
/// Each statement runs by itself (`exec`), so that its text has a plan of its own and that what is wrong with
/// it is found in its turn, and all stand in one `try`: whatever the server takes for an error ends the batch
/// there, also within a procedure or a trigger that would go on, and comes out as it is. A mark behind each
/// command tells that it has ended.
void sendPacket(Session& session, Belonging& belonging, std::span<const data::Command> commands,
                std::vector<data::Answer>& ran);

/// A statement within a batch, with a plan of its own. Throws data::DataError(Misuse) for one that isn't
/// clean.
[[nodiscard]] std::string executed(std::string_view statement, CodePage page);

}  // namespace ledgertree::engines::odbc
