#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "ledgertree/export.h"

namespace ledgertree {

/// What a user did to the chart, or looked at, on the screen that all controls of a process share.
struct ChartEvent {
  enum class Kind {
    Created,       ///< a new account was written
    Changed,       ///< an edited account was written; its descendants may have been opened or closed with it
    Deleted,       ///< one account, or several in a batch
    Recoded,       ///< accounts got new codes in bulk
    ChangedBelow,  ///< all descendants of the one account named got its type or its nature
    Shown,         ///< the account is shown now; empty for a blank record
  };
  Kind kind;
  std::vector<std::int32_t> accounts;  ///< tblAccount.ID, in the order they were written
};

/// Sets the listener that is told what happened, from the event loop, once the user's command has
/// returned and the screens that it opened are closed. All accounts of one action come in one
/// event per kind; of several accounts shown in one action, only the last. What was written is
/// reported even if a later step of the action failed.
///
/// The listener may call the control. It must not throw. One per process; an empty one removes it. Call on
/// the user-interface thread; throws std::logic_error before a desktop is installed (see qt_desktop.h).
LEDGERTREE_API void onChartEvent(std::function<void(const ChartEvent& event)> listener);

}  // namespace ledgertree
