#pragma once

#include "ledgertree/export.h"

namespace ledgertree {

/// How the screens appear in a host that is a Qt Widgets application.
struct QtDesktopOptions {
  /// False for a host that takes no modeless form: LedgerTreeControl::ClearShow and View then return when the
  /// person has left the screen.
  bool modelessForms = true;
};

/// Makes this process draw its screens with Qt, and makes the database engines known. Call it once, after the
/// QApplication is made and before the first LedgerTreeControl. Throws std::logic_error for a second call.
LEDGERTREE_API void installQtDesktop(const QtDesktopOptions& options = {});

}  // namespace ledgertree
