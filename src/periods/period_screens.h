#pragma once

#include <cstdint>
#include <memory>

#include "periods/period_branch.h"
#include "shell/shell.h"

namespace ledgertree::periods {

/// The way into the screens of the periods. Each shows its screen modally and gives whether a row of
/// tblAccountPeriodAccount was written, so that a tree by periods has to be read anew. They ask no
/// permission: whoever opens them does.
class PeriodScreens {
 public:
  explicit PeriodScreens(shell::Shell& shell) : shell_(shell) {}

  /// The periods of one account, -1 for none. The form loads at the first call. Throws data::DataError where
  /// the periods can't be read.
  [[nodiscard]] bool ShowPeriodBranch(std::int32_t inAccountID);
  /// Copying into a period; the form loads anew at each call.
  [[nodiscard]] bool showCopyPeriod();
  /// Hiding from a period; the form loads anew at each call.
  [[nodiscard]] bool showDeletePeriod();
  /// Drops the form that stays loaded; one that is up leaves the screen first.
  void unload();

 private:
  shell::Shell& shell_;
  /// Shared with the showing under way, which a call of unload() in its middle doesn't take the form from.
  std::shared_ptr<FormPeriodBranch> periodBranch_;
};

}  // namespace ledgertree::periods
