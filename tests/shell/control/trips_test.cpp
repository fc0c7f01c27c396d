// How often the acts of a working day ask the database where its answers take long. A packet is one question.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "shell/control/control_house.h"

namespace ledgertree::testing {
namespace {

class Trips : public ControlHouse {
 protected:
  Trips() {
    database.fillWithDemoChart();
    database.execute(
        "update tblTarvoSystemParameters set Value = '0' where ID = 302;"
        "update tblTarvoSystemParameters set Value = '1' where ID = 210;"
        "insert into tblAccount (ID, ParentID, Code, Title, GroupID, BranchID, PositionID) values"
        " (9000, 1, '88', 'کامل', 12, 1, 2), (9001, null, '9', 'مادر', null, null, null);"
        "insert into tblAccountRelatedObjects values (9000, 12, 1, 1)");
    faults.late = true;
  }

  [[nodiscard]] std::string shown() {
    std::string text = form().txtMotherCode.text() + "-" + form().txtCode.text();
    for (const ui::LookupField* field : std::initializer_list<const ui::LookupField*>{
             &form().sltAccount, &form().sltParent, &form().sltGroup, &form().sltBranch, &form().sltPosition,
             &form().sltEntityType, &form().sltEntity})
      text += "|" + field->text();
    return text;
  }
};

TEST_F(Trips, WhatFailsInAPacketFailsInItsTurnAndTheRestIsThere) {
  faults.failWhere("ID = 319");
  control.ClearShow();
  EXPECT_EQ(notices.taken(), "خطا|the disk gave up");
  EXPECT_EQ(session.form(), nullptr);
  faults.heal();
  control.ClearShow();
  static_cast<void>(faults.trips());
  form().View(9000);
  EXPECT_EQ(faults.trips(), 3);
  const std::string record = shown();
  faults.late = false;
  form().View(9000);
  EXPECT_EQ(shown(), record) << "asked one by one";
  faults.late = true;
  faults.failWhere("vwAccountBranchMajor");
  form().View(9000);
  EXPECT_EQ(notices.taken(), "خطا|the disk gave up");
  std::string without = record;
  const std::string branch = TemporaryDatabase::letters("دفتر مرکزی");
  without.erase(without.find(branch), branch.size());
  EXPECT_EQ(shown(), without);
  faults.heal();
}

}  // namespace
}  // namespace ledgertree::testing
