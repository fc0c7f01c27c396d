#pragma once

#include "shell/components/component_plugins.h"

namespace ledgertree::shell {

/// The shared libraries of this operating system. A loaded library stays until the process ends: its
/// components may be in use that long.
[[nodiscard]] ComponentPlugins::Platform pluginLibraries();

}  // namespace ledgertree::shell
