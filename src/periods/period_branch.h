#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "data/data_error.h"
#include "data/dten.h"
#include "shell/lookup/selector.h"
#include "shell/rows_as_read.h"
#include "shell/shell.h"
#include "ui/buttons.h"
#include "ui/control.h"
#include "ui/form.h"
#include "ui/grid.h"

namespace ledgertree::periods {

/// The periods in which one account is shown: adds it to one period or all, and hides it from one, several or
/// all. Writes to tblAccountPeriodAccount.
///
/// The form stays loaded between showings, so that the chosen period is still there the next time.
///
/// An account can be hidden from a period unless a document prevents it: the account or one of its
/// descendants has a document line of any date, and the period has a document, of whatever account.
class FormPeriodBranch : public ui::Form {
 public:
  explicit FormPeriodBranch(shell::Shell& shell);

  /// Shows the screen modally for an account; with -1, or an ID that has no row, the screen has no account
  /// and its commands are disabled. Returns ChangedFlag. Throws data::DataError; then nothing was shown.
  [[nodiscard]] bool ShowPeriodBranch(std::int32_t inAccountID);

  /// Closing the window only hides it: the form stays loaded.
  void closeByPerson() override { hide(); }

  ui::Label lblAccount;
  shell::Selector sltAccount;
  ui::Label lblPeriod;
  shell::Selector sltPeriod;
  ui::PushButton cmdAdd;
  ui::PushButton cmdDel;
  ui::Label lblBranch;
  shell::Selector sltBranch;
  ui::Grid flxPeriodBranch;
  ui::PushButton cmdDeleteRows;
  ui::PushButton cmdDeleteAllRows;
  ui::PushButton cmdExit;

  /// Whether a command wrote, or may have written, during this showing.
  bool ChangedFlag = false;

 private:
  struct Period {
    std::int32_t id;
    std::string name;
  };

  void loadControls();
  void setCommandsInReach(bool inReach);
  void refreshPeriodGrid(std::int32_t accountID);
  /// Reads the periods of the account into the grid, and returns them.
  shell::RowsAsRead::Rows showPeriods(std::int32_t accountID);
  void refreshAfterFailure(std::int32_t accountID, const data::DataError& failure);
  [[nodiscard]] std::vector<Period> selectedPeriods() const;
  /// Whether a period is chosen, or the user means all of them.
  [[nodiscard]] bool periodsAreClear();

  void addToPeriods();
  void hideFromPeriods();
  void hideSelectedRows();
  void hideAllRows();
  /// Hides the account from one period, or tells the user what prevents it.
  void hideFromPeriod(data::DtEn& gateway, const std::string& account, const Period& period);
  [[nodiscard]] shell::RowsAsRead::Rows storedPeriods(std::int32_t accountID);
  /// Whether the account's periods are still those in the grid, or the user continues anyway.
  [[nodiscard]] bool mayWrite();
  /// Reads the grid again, and tells the user what others changed meanwhile. `left` is what the command was
  /// to leave of the periods that it was about.
  void written(const std::function<bool(const std::string& period)>& about, shell::RowsAsRead::Meant left);

  shell::Shell& shell_;
  shell::RowsAsRead read_;
};

}  // namespace ledgertree::periods
