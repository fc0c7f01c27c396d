#pragma once

#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"

namespace ledgertree::periods {

/// Hides accounts from a whole period: those that no document of the period needs, or all of them where the
/// period has no document. It works on tblAccountPeriodAccount; the accounts and the period stay.
class FormDeletePeriod : public ui::Form {
 public:
  explicit FormDeletePeriod(shell::Shell& shell);

  void closeByPerson() override { cancel(); }

  ui::Label Label2;
  ui::Label lblPeriodFrom;
  shell::Selector sltPeriodFrom;
  ui::PushButton cmdDeletePossible;
  ui::PushButton cmdDelete;
  ui::PushButton cmdCancel;

  /// Whether a hiding has run, also one that found nothing to hide.
  bool ChangedFlag = false;

 private:
  void loadControls();
  /// Tells and gives false where no period is chosen.
  [[nodiscard]] bool periodIsChosen();
  void hideWithoutDocument();
  void hideAll();
  void cancel();

  shell::Shell& shell_;
};

}  // namespace ledgertree::periods
