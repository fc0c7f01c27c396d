#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "ledgertree/export.h"

namespace ledgertree {

/// What a person did to the chart, or looked at, on the screen that the controls of a process share.
struct ChartEvent {
  enum class Kind {
    Created,       ///< a new account was written
    Changed,       ///< an edited account was written; what is below it may have been opened or closed with it
    Deleted,       ///< by itself, or in a batch
    Recoded,       ///< accounts got other codes in bulk
    ChangedBelow,  ///< all that is below the one account named got its type or its nature
    Shown,         ///< the account is on the record now; no account where the record is blank
  };
  Kind kind;
  std::vector<std::int32_t> accounts;  ///< tblAccount.ID, in the order in which they were written
};

/// Tells the host what happened, when the act is over: once the person's command has returned and the screens
/// that it opened are closed, from the event loop. All accounts of one act come in one event of their kind;
/// of several accounts shown in one act only the last. What was written counts even where a later step of the
/// act failed.
///
/// The listener may call the control. It must not throw. One for the process; an empty one ends it. Belongs
/// to the user-interface thread; throws std::logic_error before a desktop was installed (see qt_desktop.h).
LEDGERTREE_API void onChartEvent(std::function<void(const ChartEvent& event)> listener);

}  // namespace ledgertree
