#pragma once

#include "shell/component_plugins.h"

namespace ledgertree::platform {

/// Shared libraries as this operating system has them. A library that was loaded stays until the process
/// ends: its components may be in use for as long.
[[nodiscard]] shell::ComponentPlugins::Platform pluginLibraries();

}  // namespace ledgertree::platform
