#pragma once

#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"

namespace ledgertree::periods {

/// Fills a period with accounts in one step: with those of another period beside the ones it has, or, where
/// no source is chosen, with the whole chart in place of the ones it has. It works on
/// tblAccountPeriodAccount.
class FormCopyPeriodAccount : public ui::Form {
 public:
  explicit FormCopyPeriodAccount(shell::Shell& shell);

  void closeByPerson() override { cancel(); }

  ui::Label Label2;
  ui::Label lblPeriodFrom;
  shell::Selector sltPeriodFrom;
  ui::Label lblPeriodTo;
  shell::Selector sltPeriodTo;
  ui::PushButton cmdAutoCodding;
  ui::PushButton cmdCancel;

  /// Whether the target has other rows than before, or may have.
  bool ChangedFlag = false;

 private:
  void loadControls();
  void copy();
  void copyChart();
  void copyPeriod();
  void cancel();

  shell::Shell& shell_;
  /// The target was emptied, and nothing came in its rows' place.
  bool targetEmptied_ = false;
};

}  // namespace ledgertree::periods
