// How often the actions of a working day query a database with high latency. A batch is one query.

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>

#include "batch/account_batch.h"
#include "coding/recoding/auto_codding.h"
#include "shell/control/control_house.h"
#include "support/steps.h"

namespace ledgertree::testing {
namespace {

constexpr int kMany = 250;

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

  void atMost(int most, const std::string& name, const std::function<void()>& act) {
    static_cast<void>(faults.trips());
    act();
    EXPECT_LE(faults.trips(), most) << name;
  }
  void expand(const std::string& key) { form().treeAccount.expand(form().treeAccount.find(key)); }
  void save() {
    form().cmdSave.click();
    EXPECT_EQ(notices.taken(), "");
    EXPECT_EQ(form().formMode, mainform::FormMode::ModeView);
  }
  void edit(int lastParent) {
    form().View(9000);
    form().cmdEdit.click();
    form().LastNewParentID = lastParent;
    form().txtCode.setText("889" + std::to_string(lastParent));
  }
  /// The user selects the account with many descendants, and answers yes to a command.
  template <typename Screen>
  void confirm(const std::string& name, ui::MenuEntry& entry, shell::AccountPicker Screen::*picker,
               ui::PushButton Screen::*command) {
    desktop.inModal(name, [=, this](ui::Form& form) {
      auto& screen = dynamic_cast<Screen&>(form);
      (screen.*picker).setAccountID(9001);
      if (auto* const sample = dynamic_cast<ui::TextField*>(form.find("txtSimpleCode"))) sample->type("100");
      desktop.tick();
      (screen.*command).click();
    });
    notices.answer(1);
    entry.click();
    notices.forget();
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

TEST_F(Trips, EachActKeepsToItsNumberOfQuestions) {
  database.insertMany("tblAccount (ID, ParentID, Code, Title)", 10001, 10000 + kMany, [](int id) {
    return std::to_string(id) + ", 9001, '" + std::to_string(id) + "', 'x'";
  });
  atMost(6, "the first level", [&] { control.ClearShow(); });
  atMost(3, "a level", [&] { expand("-1:9001"); });
  atMost(3, "the periods", [&] { form().optPeriodic.click(); });
  atMost(3, "a level of a period", [&] { expand("3:-1"); });
  atMost(3, "an account", [&] { form().View(9000); });
  form().cmdEdit.click();
  // The picker last: the places of the accounts found are one more query, made when nothing else is to be
  // done.
  for (ui::LookupField* field :
       std::initializer_list<ui::LookupField*>{&form().sltBranch, &form().sltParent}) {
    for (const char* const key : {"0", "1"})
      atMost(field == &form().sltParent ? 2 : 1, field->name(), [&] { field->type(key), desktop.settle(); });
    field->press(ui::Key::Escape);
  }
  edit(0);
  atMost(10, "an edit", [&] { save(); });
  edit(1);
  atMost(10, "an edit below the parent of the last new account", [&] { save(); });
  const std::string record = shown();
  faults.late = false;
  form().View(9000);
  EXPECT_EQ(shown(), record) << "asked one by one";
  faults.late = true;
  form().cmdNew.click();
  pickRow(form().sltParent, desktop, 9001, "9");
  form().txtTitle.paste("تازه");
  pickRow(form().sltGroup, desktop, 12);
  pickRow(form().sltPosition, desktop, 2);
  pickRow(form().sltEntityType, desktop, 1);
  pickRow(form().sltEntity, desktop, 2);
  atMost(7, "a new account", [&] { save(); });

  // Selecting the account is one more.
  atMost(1 + kMany / 100 + 5, "a recoding", [&] {
    confirm("frmAutoCodding", form().mnuSameCoding, &coding::frmAutoCodding::klmMotherAcc,
            &coding::frmAutoCodding::cmdAutoCodding);
  });
  EXPECT_EQ(database.text("select max(Code) from tblAccount where ParentID = 9001"), "350");
  atMost(1 + kMany + 1 + 5, "a deletion in one batch", [&] {
    confirm("frmAccountBatch", form().mnuAccountBatch, &batch::frmAccountBatch::sltParent,
            &batch::frmAccountBatch::cmdDelete);
  });
  EXPECT_EQ(database.number("select count(*) from tblAccountParent where ID = 9001"), 0);
}

TEST_F(Trips, WhatFailsInAPacketFailsInItsTurnAndTheRestIsThere) {
  faults.failWhere("ID = 319");
  control.ClearShow();
  EXPECT_EQ(notices.taken(), "خطا|the disk gave up");
  EXPECT_EQ(session.form(), nullptr);
  faults.heal();
  control.ClearShow();
  form().View(9000);
  const std::string record = shown();
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
