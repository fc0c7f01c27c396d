#pragma once

#include <functional>

#include "data/permissions.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "periods/period_screens.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// Whether an account is being edited, which blocks commands that rewrite the chart; the user is told.
[[nodiscard]] bool refusedWhileTyping(const MainScreen& screen, shell::Shell& shell);

/// The commands that open a screen of their own: each checks its permission, shows the screen modally, and
/// updates the tree with what was done there.
class SecondaryScreens {
 public:
  SecondaryScreens(MainScreen& screen, shell::Shell& shell, AccountTree& tree);

  /// Destroys the screens that stay loaded between showings.
  void unload() { periods_.unload(); }

 private:
  [[nodiscard]] std::int32_t accountToWorkOn() const;
  void recode();
  void deleteInBatch();
  /// `show` returns whether a membership in a period changed, which only the tree by periods shows.
  void showPeriods(data::Permission permission, const std::function<bool()>& show);

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountTree& tree_;
  periods::PeriodScreens periods_;
};

}  // namespace ledgertree::mainform
