#pragma once

#include <string>

#include "periods/period_forms.h"
#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"

namespace ledgertree::periods {

/// Adds the accounts of one period to another; without a source period, replaces the accounts of the target
/// by the whole chart. Writes to tblAccountPeriodAccount.
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

  /// Whether the rows of the target have changed, or may have.
  bool ChangedFlag = false;

 private:
  void loadControls();
  [[nodiscard]] bool targetIsChosen();
  /// Says how many accounts are added to the target, stay in it and are removed; empty if no target is
  /// chosen.
  [[nodiscard]] std::string outlookInWords();
  /// The rows that a merge adds to the target: the rest of a statement on tblAccountPeriodAccount.
  [[nodiscard]] std::string newFromSource() const;
  void copy();
  void copyChart();
  void copyPeriod();
  void cancel();

  shell::Shell& shell_;
  bool targetEmptied_ = false;  ///< its rows are deleted, and no new ones written yet
};

}  // namespace ledgertree::periods
