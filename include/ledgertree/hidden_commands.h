#pragma once

#include "ledgertree/export.h"

namespace ledgertree {

/// Offers commands of the chart's screen that work and stand hidden otherwise: the menu "مشاهده" with its
/// button (details shown or not, whole codes or short ones in the tree) and the export of the chart to a
/// spreadsheet, for which the host registers the component SheetKit.SheetWriter.
///
/// It holds for all controls of the process and takes effect when the screen is next opened; a screen that is
/// open stays as it is. Call it after a desktop was installed (see qt_desktop.h), on the user-interface
/// thread. Throws std::logic_error without a desktop. Not offered at first.
LEDGERTREE_API void offerHiddenCommands(bool offer);

}  // namespace ledgertree
