#pragma once

#include <string>

#include "periods/period_forms.h"
#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"

namespace ledgertree::periods {

/// Adds the accounts of one period to those of another; without a source, puts the whole chart in their
/// place. Writes to tblAccountPeriodAccount.
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
  Outlook outlook;

  /// Whether the target has other rows than before, or may have.
  bool ChangedFlag = false;

 private:
  void loadControls();
  [[nodiscard]] bool targetIsChosen();
  /// How many accounts come into the target and stay there; empty where none is chosen.
  [[nodiscard]] std::string outlookInWords();
  /// What a merge puts into the target: the rest of a statement on tblAccountPeriodAccount.
  [[nodiscard]] std::string newFromSource() const;
  void copy();
  void copyChart();
  void copyPeriod();
  void cancel();

  shell::Shell& shell_;
  bool targetEmptied_ = false;  ///< and nothing came in place of its rows
};

}  // namespace ledgertree::periods
