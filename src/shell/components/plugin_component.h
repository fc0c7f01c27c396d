#pragma once

#include "ledgertree/component.h"
#include "shell/outside_components.h"

namespace ledgertree::shell {

/// The single function that a plug-in exports.
using RegisterComponents = std::int32_t (*)(const LedgerTreeRegistry*);

/// Registers a plug-in's components; false, and none is registered, if the plug-in refuses
/// or has none. One that can't be created, or lacks functions, fails when it is requested,
/// with an error other than that of an unknown one.
bool registerPlugin(OutsideComponents& components, RegisterComponents plugin);

}  // namespace ledgertree::shell
