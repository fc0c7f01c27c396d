#pragma once

#include <functional>
#include <string>

#include "ledgertree/export.h"

/// Where outside components such as SheetKit (spreadsheets) and PactKit (cost centres) are loaded from; see
/// component.h. An unknown component is looked for on first use, in the folder "System" below the database's
/// base path, then in the package's folder.
///
/// The base path is a row of the database, and write access to it must not mean running code on a user's
/// machine. So files in "System" are loaded only by an absolute path whose file and folders belong to the
/// administrator or the user and are writable by no one else, access lists included; never from the current
/// folder, nor through a link that leads out of the folder. On Windows, and on Windows shares, permissions
/// aren't read: only what the host named is loaded from there.
///
/// All of this applies to all controls of the process, and is called after a desktop is installed (see
/// qt_desktop.h), on the user-interface thread. Each throws std::logic_error without a desktop, and
/// std::invalid_argument for a folder that isn't an absolute path.
namespace ledgertree {

/// Sets the folder of the components that came with the package; by default,
/// "ledgertree/components" next to the library, where the package installs them. The host is
/// responsible for its contents: they are loaded whoever may write there.
LEDGERTREE_API void useComponentFolder(const std::string& folder);

/// Adds a folder below which components are loaded whoever may write there, such as that of an installation
/// named by the database's base path.
LEDGERTREE_API void trustComponentsBelow(const std::string& folder);

/// Sets the listener for components that were found but not loaded: the file, and the reason in Persian, as
/// the user has just been told. The next location is tried anyway. A later call replaces the listener.
LEDGERTREE_API void onComponentRefused(
    std::function<void(const std::string& file, const std::string& reason)> listener);

}  // namespace ledgertree
