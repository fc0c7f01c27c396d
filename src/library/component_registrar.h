#pragma once

#include "shell/shell.h"

namespace ledgertree {

/// Lets a missing component of the shell be registered from a plug-in on this platform.
void installComponentRegistrar(shell::Shell& shell);

}  // namespace ledgertree
