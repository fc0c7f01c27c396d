#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "data/data_error.h"
#include "periods/period_screens.h"
#include "shell/lookup/selector.h"
#include "support/table_watch.h"

namespace ledgertree::testing {

/// A small chart in four years. The accounts 10 (assets) > 11 (banks) > 12 (a branch), 20 (debts) > 21 (a
/// loan) and their neighbour 30; the years 1403 and 1404 have documents, 1405 and 1406 have none.
class PeriodHouse : public WatchedHouse {
 protected:
  PeriodHouse() {
    given(R"(
      insert into tblAccountPeriod (ID, Name, BeginDate, EndDate, FarsiBeginDate, FarsiEndDate) values
        (1, 'سال 1403', '2024-03-20', '2025-03-20', '1403/01/01', '1403/12/30'),
        (2, 'سال 1404', '2025-03-21', '2026-03-20', '1404/01/01', '1404/12/29'),
        (3, 'سال 1405', '2026-03-21', '2027-03-20', '1405/01/01', '1405/12/29'),
        (4, 'سال 1406', '2027-03-21', '2028-03-19', '1406/01/01', '1406/12/29');
      insert into tblAccount (ID, ParentID, Code, Title, IsClosed) values
        (10, null, '1', 'دارايي', 0), (11, 10, '11', 'بانک', 0), (12, 11, '111', 'شعبه مرکزي', 0),
        (20, null, '2', 'بدهي', 0), (21, 20, '21', 'وام', 1), (30, null, '3', 'همسايه', 0);
      insert into tblAccountDocument (ID, FarsiDocumentDate) values
        (501, '1403/01/01'), (502, '1403/12/30'), (503, '1404/06/15');
      insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (1, 501, 12);
      insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (21, 1, 1), (30, 1, 1);
    )");
  }

  /// Sets tblAccountPeriodAccount to these pairs, "(account, period), ...", and those of the neighbours:
  /// account 30 in every year, 10, 12 and 21 in the last one.
  void members(const std::string& pairs) {
    given(
        "delete from tblAccountPeriodAccount; insert into tblAccountPeriodAccount (AccountID, PeriodID) "
        "values " +
        pairs + (pairs.empty() ? "" : ", ") +
        "(30, 1), (30, 2), (30, 3), (30, 4), (10, 4), (12, 4), (21, 4)");
  }
  std::string accountsOf(int period) {
    return database.rows("select AccountID from tblAccountPeriodAccount where PeriodID=" +
                         std::to_string(period) + " order by 1");
  }
  /// The changes in tblAccountPeriodAccount, and that there are no others: "-account|period +account|period".
  std::string moves() {
    const std::string found = changes();
    const std::string table = "tblAccountPeriodAccount: ";
    return found.starts_with(table) ? found.substr(table.size()) : found;
  }

  /// The user searches for a period by its name, and takes the first hit.
  void pick(shell::Selector& selector, const std::string& name) {
    selector.focus();
    selector.type(name);
    desktop.settle();
    selector.press(ui::Key::Enter);
    desktop.settle();
    ASSERT_EQ(selector.SelectedText(), name);
  }

  /// A section of periods/steps.txt on an open screen. Seen: the lookup fields, "_" after text that is only
  /// typed, what `more` adds, the focused control, and whether the screen counts as changed; reported: also
  /// the rows added and removed.
  template <typename Screen>
  void walk(
      Screen& screen, const std::string& section,
      const std::function<std::string()>& more = [] { return std::string(); }) {
    person.go(
        "periods/steps.txt", section,
        [&] {
          std::string text;
          for (ui::Control* control : screen.controls())
            if (const auto* field = dynamic_cast<ui::LookupField*>(control); field != nullptr)
              text += "«" + field->text() + (field->typing() ? "_» " : "» ");
          text += more() + (screen.focused() == nullptr ? "" : "@" + screen.focused()->name());
          return text + (screen.ChangedFlag ? " changed" : "");
        },
        [&] { return moves(); });
  }

  periods::PeriodScreens screens{shell};
};

}  // namespace ledgertree::testing
