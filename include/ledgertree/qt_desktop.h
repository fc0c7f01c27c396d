#pragma once

#include "ledgertree/export.h"

namespace ledgertree {

/// How the screens appear in a host that is a Qt Widgets application.
struct QtDesktopOptions {
  /// False for a host that doesn't support modeless forms: LedgerTreeControl::ClearShow and View then return
  /// when the user has left the screen.
  bool modelessForms = true;
};

/// Makes this process show its screens with Qt, and registers the database engines. Call once, after the
/// QApplication is created and before the first LedgerTreeControl. Throws std::logic_error for a second call.
LEDGERTREE_API void installQtDesktop(const QtDesktopOptions& options = {});

}  // namespace ledgertree
