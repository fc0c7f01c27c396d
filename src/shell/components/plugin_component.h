#pragma once

#include "ledgertree/component.h"
#include "shell/outside_components.h"

namespace ledgertree::shell {

/// The one function that a plug-in exports.
using RegisterComponents = std::int32_t (*)(const LedgerTreeRegistry*);

/// Makes the components of a plug-in known; false, and none is, where the plug-in refuses or has none. One
/// that can't be made, or whose functions are missing, fails with an error when it is asked for, and not as
/// one that nobody registered.
bool registerPlugin(OutsideComponents& components, RegisterComponents plugin);

}  // namespace ledgertree::shell
