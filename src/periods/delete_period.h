#pragma once

#include <string>

#include "periods/period_forms.h"
#include "shell/lookup/selector.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"

namespace ledgertree::periods {

/// Hides accounts from a whole period: those that no document of the period needs, or all of them if the
/// period has no document. Writes to tblAccountPeriodAccount; the accounts and the period stay.
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
  Outlook outlook;

  /// Whether a command has run, even if it found nothing to hide.
  bool ChangedFlag = false;

 private:
  void loadControls();
  /// Tells the user and returns false if no period is chosen.
  [[nodiscard]] bool periodIsChosen();
  /// Says how many accounts each command hides, and how many stay; empty if no period is chosen.
  [[nodiscard]] std::string outlookInWords();
  /// The accounts of the period, and those of them that no document of the period needs: each the rest of a
  /// statement on tblAccountPeriodAccount.
  [[nodiscard]] std::string ofPeriod() const;
  [[nodiscard]] std::string withoutDocument() const;
  /// The query for the documents of the period.
  [[nodiscard]] std::string documentsOfPeriod() const;
  void hideWithoutDocument();
  void hideAll();
  void cancel();

  shell::Shell& shell_;
};

}  // namespace ledgertree::periods
