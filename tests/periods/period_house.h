#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

#include "data/data_error.h"
#include "periods/period_screens.h"
#include "shell/lookup/selector.h"
#include "support/faulty_connection.h"
#include "support/test_house.h"

namespace ledgertree::testing {

/// A small chart in three years. The accounts 10 (assets) > 11 (banks) > 12 (a branch) and 20 (debts) > 21 (a
/// loan); the years 1403 and 1404 have documents, 1405 has none.
class PeriodHouse : public TestHouse {
 protected:
  PeriodHouse() {
    faults.putInto(shell.providers);
    shell.resetDataConnection();
    database.execute(R"(
      insert into tblAccountPeriod (ID, Name, BeginDate, EndDate, FarsiBeginDate, FarsiEndDate) values
        (1, 'سال 1403', '2024-03-20', '2025-03-20', '1403/01/01', '1403/12/30'),
        (2, 'سال 1404', '2025-03-21', '2026-03-20', '1404/01/01', '1404/12/29'),
        (3, 'سال 1405', '2026-03-21', '2027-03-20', '1405/01/01', '1405/12/29');
      insert into tblAccount (ID, ParentID, Code, Title, IsClosed) values
        (10, null, '1', 'دارايي', 0), (11, 10, '11', 'بانک', 0), (12, 11, '111', 'شعبه مرکزي', 0),
        (20, null, '2', 'بدهي', 0), (21, 20, '21', 'وام', 1);
      insert into tblAccountDocument (ID, FarsiDocumentDate) values
        (501, '1403/01/01'), (502, '1403/12/30'), (503, '1404/06/15');
      insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (1, 501, 12);
    )");
  }

  /// Leaves tblAccountPeriodAccount with these pairs: "(account, period), ...".
  void members(const std::string& pairs) {
    database.execute("delete from tblAccountPeriodAccount");
    database.execute("insert into tblAccountPeriodAccount (AccountID, PeriodID) values " + pairs);
  }
  /// The periods of an account, or the accounts of a period: "1 2 3".
  std::string periodsOf(int account) { return list("PeriodID", "AccountID", account); }
  std::string accountsOf(int period) { return list("AccountID", "PeriodID", period); }

  /// The person looks for a period by its name, and takes the first hit.
  void pick(shell::Selector& selector, const std::string& name) {
    selector.focus();
    selector.type(name);
    desktop.settle();
    selector.press(ui::Key::Enter);
    desktop.settle();
    ASSERT_EQ(selector.SelectedText(), name);
  }

  Faults faults;
  periods::PeriodScreens screens{shell};

 private:
  std::string list(const std::string& column, const std::string& key, int value) {
    std::string found = database.rows("select " + column + " from tblAccountPeriodAccount where " + key +
                                      "=" + std::to_string(value) + " order by 1");
    std::replace(found.begin(), found.end(), '\n', ' ');
    return found;
  }
};

/// Gets out of the way of the forms' names, which are those of their classes.
template <typename Screen>
Screen& as(ui::Form& form) {
  return dynamic_cast<Screen&>(form);
}

}  // namespace ledgertree::testing
