#include "ledgertree/hidden_commands.h"

#include "shell/control/ledger_tree_control_session.h"

namespace ledgertree {

void offerHiddenCommands(bool offer) { ControlSession::process().shell().offersHiddenCommands = offer; }

}  // namespace ledgertree
