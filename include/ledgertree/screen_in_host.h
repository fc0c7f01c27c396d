#pragma once

#include <cstdint>
#include <functional>

#include "ledgertree/export.h"

class QWidget;

namespace ledgertree {

// What a host needs that has the screen inside a window of its own, as a tab or a page that comes and goes.
// All of it holds for the one screen that the controls of a process share, belongs to the user-interface
// thread, and throws std::logic_error before a desktop was installed (see qt_desktop.h).

/// Where the screen appears when it is next opened: it fills `container`, which may be hidden at that time;
/// null gives it a window of its own. A screen that is open stays where it is. A container without a layout
/// gets one. One that is deleted takes the screen off without a question and without a word to
/// `onScreenLeft`; the next ClearShow or View shows it where it stood, with what was typed.
LEDGERTREE_API void placeScreen(QWidget* container);

/// Whether the screen is up. It isn't after a ClearShow for a user without the permission, or whose load
/// failed: ClearShow returns normally then.
[[nodiscard]] LEDGERTREE_API bool screenIsOpen();

/// The account on the record (tblAccount.ID); 0 where the record is blank, or the screen isn't open.
[[nodiscard]] LEDGERTREE_API std::int32_t shownAccount();

/// Whether a new account or an edit was begun and is neither saved nor given up.
[[nodiscard]] LEDGERTREE_API bool hasUnsavedWork();

/// Leaves the screen as its own button for it does: a person in the middle of a new account or an edit is
/// asked first. True where it is closed then, or was before; false where the person stays, or where the
/// screen is in the middle of something. A host asks so before it closes its own window.
[[nodiscard]] LEDGERTREE_API bool leaveScreen();

/// Called from the event loop each time the screen was left, unless it was opened again meanwhile. It may
/// delete the container, and must not throw. One for the process; an empty one ends it.
LEDGERTREE_API void onScreenLeft(std::function<void()> listener);

}  // namespace ledgertree
