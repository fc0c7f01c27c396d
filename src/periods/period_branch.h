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

/// The periods in which one account is shown: adds it to a period or to all of them, and hides it from one,
/// from several or from all. It works on tblAccountPeriodAccount.
///
/// The form stays loaded between two showings, so that the period chosen in one is there in the next.
///
/// An account is hidden from a period only where no document stands in the way. One does where the account,
/// or an account below it, has a document line of any date, and the period has a document, whomever it
/// concerns.
class FormPeriodBranch : public ui::Form {
 public:
  explicit FormPeriodBranch(shell::Shell& shell);

  /// Shows the screen modally for an account; -1, or an ID that has no row, leaves it without one and its
  /// commands out of reach. Gives ChangedFlag. Throws data::DataError, and then nothing was shown.
  [[nodiscard]] bool ShowPeriodBranch(std::int32_t inAccountID);

  /// Leaving by the frame of the window is leaving: the form stays loaded.
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

  /// Whether a command of this showing wrote, or may have.
  bool ChangedFlag = false;

 private:
  struct Period {
    std::int32_t id;
    std::string name;
  };

  void loadControls();
  void setCommandsInReach(bool inReach);
  void refreshPeriodGrid(std::int32_t accountID);
  /// Reads the periods of the account into the grid, and gives them.
  shell::RowsAsRead::Rows showPeriods(std::int32_t accountID);
  void refreshAfterFailure(std::int32_t accountID, const data::DataError& failure);
  [[nodiscard]] std::vector<Period> selectedPeriods() const;
  /// A period is chosen, or the person means all of them.
  [[nodiscard]] bool periodsAreClear();

  void addToPeriods();
  void hideFromPeriods();
  void hideSelectedRows();
  void hideAllRows();
  /// Hides the account from one period, or tells what stands in the way.
  void hideFromPeriod(data::DtEn& gateway, const std::string& account, const Period& period);
  [[nodiscard]] shell::RowsAsRead::Rows storedPeriods(std::int32_t accountID);
  /// Whether the periods of the account are what the grid shows, or the person goes on all the same.
  [[nodiscard]] bool mayWrite();
  /// Shows the grid anew, and tells what somebody else did in between. `left` is what the command was to
  /// leave of the periods that it was about.
  void written(const std::function<bool(const std::string& period)>& about, shell::RowsAsRead::Meant left);

  shell::Shell& shell_;
  shell::RowsAsRead read_;
};

}  // namespace ledgertree::periods
