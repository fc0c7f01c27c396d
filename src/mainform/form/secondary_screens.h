#pragma once

#include <functional>

#include "data/permissions.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "periods/period_screens.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// Whether an account is being typed, which keeps what rewrites the chart out of reach and is told.
[[nodiscard]] bool refusedWhileTyping(const MainScreen& screen, shell::Shell& shell);

/// The commands that open a screen of their own: each asks its permission, shows the screen modally, and
/// brings the tree up to date with what was done there.
class SecondaryScreens {
 public:
  SecondaryScreens(MainScreen& screen, shell::Shell& shell, AccountTree& tree);

  /// Ends the screens that stay loaded between two showings.
  void unload() { periods_.unload(); }

 private:
  [[nodiscard]] std::int32_t accountToWorkOn() const;
  void recode();
  void deleteInBatch();
  /// `show` gives whether a membership in a period changed, which the tree by periods shows alone.
  void showPeriods(data::Permission permission, const std::function<bool()>& show);

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountTree& tree_;
  periods::PeriodScreens periods_;
};

}  // namespace ledgertree::mainform
