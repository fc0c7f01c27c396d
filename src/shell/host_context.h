#pragma once

#include <cstdint>
#include <string>

#include "data/value.h"

namespace ledgertree::shell {

/// What the host told about itself and the user, and what was derived from it. The values outlive every form
/// and every call; LedgerTreeControl writes them, the forms read them.
struct HostContext {
  std::string gConnectionString;
  std::int32_t gUserID = 0;
  std::int32_t gPositionID = 0;
  std::int32_t gEmployeeID = 0;
  /// The current period, 0 for none. Nothing in the chart depends on it.
  std::int32_t gPeriodID = 0;
  data::DateTime gPeriodBegin;
  data::DateTime gPeriodEnd;
  /// The layout that the text fields switch to: "00000429" Persian, "00000401" Arabic, empty for none.
  std::string gKeyboardLayout;
};

}  // namespace ledgertree::shell
