#pragma once

#include <cstdint>
#include <memory>

#include "periods/period_branch.h"
#include "shell/shell.h"

namespace ledgertree::periods {

/// Opens the screens of the periods. Each function shows its screen modally and returns whether rows of
/// tblAccountPeriodAccount were written, so that a tree by periods must be read again. They check no
/// permission: their callers do.
class PeriodScreens {
 public:
  explicit PeriodScreens(shell::Shell& shell) : shell_(shell) {}

  /// The periods of one account, -1 for none. The form is loaded by the first call. Throws data::DataError if
  /// the periods can't be read.
  [[nodiscard]] bool ShowPeriodBranch(std::int32_t inAccountID);
  /// Copying into a period; the form is loaded by each call.
  [[nodiscard]] bool showCopyPeriod();
  /// Hiding from a period; the form is loaded by each call.
  [[nodiscard]] bool showDeletePeriod();
  /// Destroys the loaded form; if it is shown, hides it first.
  void unload();

 private:
  shell::Shell& shell_;
  /// Shared with the current showing, so that unload() during it doesn't destroy the form.
  std::shared_ptr<FormPeriodBranch> periodBranch_;
};

}  // namespace ledgertree::periods
