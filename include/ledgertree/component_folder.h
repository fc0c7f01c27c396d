#pragma once

#include <functional>
#include <string>

#include "ledgertree/export.h"

/// Where the outside components come from, such as SheetKit (spreadsheets) and PactKit (cost centres); see
/// component.h. A component that isn't known when it is used is looked for in the folder "System" below the
/// base path of the database, then in the folder of the package.
///
/// The base path is a row of the database, and whoever may write it must not run code on a person's machine.
/// So what stands in "System" is loaded only by an absolute path whose file and folders belong to the
/// administrator or the person, and to which nobody else may write, access lists included; never from the
/// current folder, and not through a link that leads out of the folder. On Windows, and on shares of Windows,
/// nobody's rights are read: there only what the host named is loaded.
///
/// All of it holds for all controls of the process, and is called after a desktop was installed (see
/// qt_desktop.h), on the user-interface thread. Each throws std::logic_error without a desktop, and
/// std::invalid_argument for a folder that isn't named by its whole path.
namespace ledgertree {

/// Names the folder of the components that came with the package. Without a call it is the folder
/// "ledgertree/components" beside the library, where the package has them. The host answers for what is in
/// it: it is loaded whoever may write there.
LEDGERTREE_API void useComponentFolder(const std::string& folder);

/// Names a folder below which components are loaded whoever may write there, such as that of an installation
/// whose base path the database names. Each call adds one.
LEDGERTREE_API void trustComponentsBelow(const std::string& folder);

/// Told of each component that was found and not loaded: its file, and the reason as the person has just been
/// told it, in Persian. The next place is tried all the same. A later call replaces the listener.
LEDGERTREE_API void onComponentRefused(
    std::function<void(const std::string& file, const std::string& reason)> listener);

}  // namespace ledgertree
