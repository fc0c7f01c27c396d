#pragma once

#include <string>

#include "ledgertree/export.h"

namespace ledgertree {

/// Names the folder of the outside components that came with the package, such as SheetKit (spreadsheets) and
/// PactKit (cost centres); see component.h. A component that isn't known when it is used is looked for in the
/// folder "System" below the base path of the database, then here. Without a call it is the folder
/// "ledgertree/components" beside the library, where the package has them.
///
/// It holds for all controls of the process. Call it after a desktop was installed (see qt_desktop.h), on the
/// user-interface thread. Throws std::logic_error without a desktop.
LEDGERTREE_API void useComponentFolder(const std::string& folder);

}  // namespace ledgertree
