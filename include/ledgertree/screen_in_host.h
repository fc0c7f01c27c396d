#pragma once

#include <cstdint>
#include <functional>

#include "ledgertree/export.h"

class QWidget;

namespace ledgertree {

// For hosts that show the screen inside their own window, as a tab or a page that comes and goes. Everything
// here is about the one screen that all controls of a process share, must be called on the user-interface
// thread, and throws std::logic_error before a desktop is installed (see qt_desktop.h).

/// Where the screen appears when it is next opened: it fills `container`, which may be hidden at that time;
/// null gives it its own window. An open screen stays where it is. A container without a layout gets one.
/// Deleting the container removes the screen without asking and without calling `onScreenLeft`; the next
/// ClearShow or View restores it with everything typed.
LEDGERTREE_API void placeScreen(QWidget* container);

/// Whether the screen is open. It isn't after a ClearShow for a user without the permission, or if loading
/// failed: ClearShow returns normally in both cases.
[[nodiscard]] LEDGERTREE_API bool screenIsOpen();

/// The account shown (tblAccount.ID); 0 if the record is blank, or the screen isn't open.
[[nodiscard]] LEDGERTREE_API std::int32_t shownAccount();

/// Whether a new account or an edit is in progress, neither saved nor cancelled.
[[nodiscard]] LEDGERTREE_API bool hasUnsavedWork();

/// Leaves the screen as its own button does: a user in the middle of a new account or an edit is asked first.
/// True if it is closed afterwards, or was before; false if the user stays, or if the screen is busy. A host
/// calls this before closing its own window.
[[nodiscard]] LEDGERTREE_API bool leaveScreen();

/// Sets the listener called from the event loop each time the screen was left, unless it was reopened
/// meanwhile. It may delete the container, and must not throw. One per process; an empty one removes it.
LEDGERTREE_API void onScreenLeft(std::function<void()> listener);

}  // namespace ledgertree
