#pragma once

#include "shell/components/component_plugins.h"

namespace ledgertree::shell {

/// Shared libraries as this operating system has them. A library that was loaded stays until the process
/// ends: its components may be in use for as long.
[[nodiscard]] ComponentPlugins::Platform pluginLibraries();

}  // namespace ledgertree::shell
