#pragma once

#include <memory>
#include <string>
#include <vector>

#include "mainform/form/form_main.h"
#include "support/faulty_connection.h"
#include "support/test_house.h"

namespace ledgertree::testing {

/// A person at the main screen, on a chart small enough to be read here.
class ScreenStory : public TestHouse {
 protected:
  ScreenStory() {
    faults.putInto(shell.providers);
    shell.resetDataConnection();
    database.execute(
        "insert into tblUser (ID, Name) values (1, 'حسابدار'), (2, 'بيننده');"
        "insert into tblUserPermission (UserID, FormPermissionID) values"
        " (1, 301), (1, 30101), (1, 30102), (1, 30103);"
        "insert into tblAccountGroup (ID, Code, Name) values (4, '04', 'مشتريان');"
        "insert into tblAccountBranch (ID, Code, Name) values (2, '02', 'کارخانه');"
        "insert into tblAccCostCenter (ID, Code, Name) values (9, '310', 'مونتاژ');"
        "insert into tblAccountClass (ID, Code, Name, ViewMajor, ViewMinor) values"
        " (1, '01', 'اشخاص', 'vwEntityPerson', 'vwEntityPersonMinor'),"
        " (2, '02', 'پروژه ها', 'vwEntityProject', 'vwEntityProjectMinor');"
        "insert into tblEntityPerson (ID, Code, Name) values (7, '1007', 'بام'), (8, '1008', 'مغان');"
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
        " values (2, 4, 1, 7), (2, 4, 2, 1)");
  }

  void TearDown() override {
    for (const auto& gateway : gateways) {
      for (const data::RecordHandle* handle : gateway->handles())
        EXPECT_EQ(handle->State(), 0) << handle->name() << " was left open";
    }
    TestHouse::TearDown();
  }

  /// Opens the screen as the control does.
  void start() {
    if (!shell.hasDtEn()) shell.resetDataConnection();
    gateways.push_back(shell.dtEn());
    form = std::make_unique<mainform::FormMain>(shell);
    form->load();
    form->onClosed = [this] { form.reset(); };
    desktop.show(*form);
  }

  void clickInTree(const std::string& key) { form->treeAccount.click(form->treeAccount.find(key)); }
  void answer(bool yes) { notices.answer(yes ? 1 : 0); }

  /// The record as the person reads it, field by field.
  [[nodiscard]] std::string record() const {
    const mainform::FormMain& f = *form;
    const std::string title = f.sltAccount.visible() ? f.sltAccount.text() : f.txtTitle.text();
    const auto radio = [](const std::vector<const ui::RadioButton*>& buttons) {
      std::string on;
      for (const ui::RadioButton* button : buttons)
        if (button->value()) on += button->caption();
      return on;
    };
    std::string text;
    for (const std::string& field :
         {f.txtID.text(), title, f.sltParent.text(), f.txtMotherCode.text(), f.txtCode.text(),
          f.sltGroup.text(), f.sltBranch.text(), f.sltPosition.text(), f.sltEntityType.text(),
          f.sltEntity.text(), f.datCreate.farsidate(), f.txtMaxDebit.text(), f.txtMaxCredit.text(),
          f.txtNotes.text(),
          radio({&f.optDebit, &f.OptCredit, &f.OptDebitAndCredit}) + " " + radio({&f.OptReg, &f.OptNotReg}) +
              " " + radio({&f.OptOpen, &f.OptClose})})
      text += field + "|";
    return text;
  }

  Faults faults;
  /// Those of all starts, to be asked for open handles at the end.
  std::vector<std::shared_ptr<data::DtEn>> gateways;
  std::unique_ptr<mainform::FormMain> form;
};

}  // namespace ledgertree::testing
