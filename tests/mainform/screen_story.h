#pragma once

#include <string>

#include "mainform/main_screen_house.h"

namespace ledgertree::testing {

/// A user of the main screen, on a chart small enough to be read here.
class ScreenStory : public MainScreenHouse {
 protected:
  ScreenStory() {
    database.execute(
        "insert into tblAccount (ID, ParentID, Code, Title, GroupID, BranchID, PositionID, CreateDate,"
        " FarsiCreateDate, Notes, AccountNatureID, IsPermanent, IsClosed, MaxDebit, MaxCredit) values"
        " (1, null, '11', 'دارايي', null, 0, 0, '2023-03-21', '1402/01/01', null, 0, 0, 0, null, null),"
        " (2, 1, '1101', 'دريافتني ها', 4, 2, 9, '2024-03-20', '1403/01/01', 'خط اول' || char(10) || "
        "'خط دوم',"
        "  2, 1, 1, " +
        database.amount(15000000) + ", " + database.amount(12345678) +
        "),"
        " (3, 1, '1102', 'بانک', null, null, null, '2024-03-20', '1403/01/01', '', null, null, null, 0, 0);"
        "insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)"
        " values (2, 4, 11, 7), (2, 4, 12, 6)");
  }

  void clickInTree(const std::string& key) { form->treeAccount.click(form->treeAccount.find(key)); }

  /// A section of mainform/steps.txt. Seen is what changed on the screen.
  void walk(const std::string& section) {
    person.go("mainform/steps.txt", section, [this] { return changed(); });
  }
};

}  // namespace ledgertree::testing
