#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "data/quote_text.h"
#include "mainform/form/form_main.h"
#include "support/faulty_connection.h"
#include "support/test_house.h"

namespace ledgertree::testing {

/// An accountant at the main screen. The chart is empty at first; groups 1 and 2, cost centres 1 and 2,
/// branch 1, the classes 1 (persons 1 and 2) and 2 (project 1) and user 1 with all rights are there.
class AccountStory : public TestHouse {
 protected:
  AccountStory() {
    faults.putInto(shell.providers);
    shell.resetDataConnection();
    database.execute(
        "insert into tblUser (ID, Name) values (1, 'حسابدار');"
        "insert into tblUserPermission (UserID, FormPermissionID) values"
        " (1, 301), (1, 30101), (1, 30102), (1, 30103);"
        "insert into tblAccountGroup (ID, Code, Name) values (1, '1', 'مشتريان'), (2, '2', 'فروشندگان');"
        "insert into tblAccountBranch (ID, Code, Name) values (1, '1', 'کارخانه');"
        "insert into tblAccCostCenter (ID, Code, Name) values (1, '1', 'مونتاژ'), (2, '2', 'رنگ');"
        "insert into tblAccountClass (ID, Code, Name, ViewMajor, ViewMinor) values"
        " (1, '1', 'اشخاص', 'vwEntityPerson', 'vwEntityPersonMinor'),"
        " (2, '2', 'پروژه ها', 'vwEntityProject', 'vwEntityProjectMinor');"
        "insert into tblEntityPerson (ID, Code, Name) values (1, '1', 'بام'), (2, '2', 'مغان');"
        "insert into tblEntityProject (ID, Code, Name) values (1, '1', 'سد')");
  }

  /// Sets a parameter of the installation, ahead of start().
  void setting(int parameter, const std::string& value) {
    database.execute("insert into tblTarvoSystemParameters (ID, Value) values (" + std::to_string(parameter) +
                     ", '" + value + "')");
  }
  /// Puts an account into the chart past the screen; no parent for 0.
  void account(int id, int parent, const std::string& code, const std::string& title) {
    database.execute("insert into tblAccount (ID, ParentID, Code, Title) values (" + std::to_string(id) +
                     ", nullif(" + std::to_string(parent) + ", 0), " + data::quoteText(code) + ", " +
                     data::quoteText(title) + ")");
  }
  void documentOn(int id) {
    database.execute(
        "insert or ignore into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1403/01/01');"
        "insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, " +
        std::to_string(id) + ")");
  }

  /// Opens the screen as the control does.
  void start() {
    form = std::make_unique<mainform::FormMain>(shell);
    form->load();
    desktop.show(*form);
  }

  // The person.
  /// Finds a row by what is typed, and picks it; -1 empties the field.
  template <typename Lookup>
  void pick(Lookup& field, std::int32_t id, const std::string& typed = "") {
    if (id == -1) return static_cast<void>(field.press(ui::Key::Delete));
    field.openList();
    if (!typed.empty()) field.type(typed);
    desktop.settle();
    const auto& rows = field.rows();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& one) { return one.id == id; });
    ASSERT_NE(row, rows.end()) << "no row " << id << " in " << field.name();
    field.pick(static_cast<int>(row - rows.begin()));
  }
  void pickParent(std::int32_t id) {
    pick(form->sltParent, id,
         id == -1 ? "" : database.text("select Code from tblAccount where ID = " + std::to_string(id)));
  }
  void edit(std::int32_t id) {
    form->View(id);
    form->cmdEdit.click();
  }
  /// A new account below a parent, with the code that is proposed unless another is given, up to the save.
  void typeNew(std::int32_t parent, const std::string& title, const std::string& code = "") {
    form->cmdNew.click();
    if (parent != -1) pickParent(parent);
    form->txtTitle.paste(title);
    if (!code.empty()) form->txtCode.paste(code);
  }
  /// Saves what is on the screen, and gives the account that is shown then.
  std::int32_t save() {
    form->cmdSave.click();
    return form->formMode == mainform::FormMode::ModeView ? std::stoi(form->txtID.text()) : -1;
  }
  std::int32_t saveNew(std::int32_t parent, const std::string& title, const std::string& code = "") {
    typeNew(parent, title, code);
    return save();
  }

  /// Columns of an account as the database has them, joined by "|".
  [[nodiscard]] std::string stored(std::int32_t id, const std::string& columns) {
    return database.rows("select " + columns + " from tblAccount where ID = " + std::to_string(id));
  }
  /// Group, class and object of each relation of an account.
  [[nodiscard]] std::string relations(std::int32_t id) {
    return database.rows(
        "select AccountGroupID, RelatedClassID, RelatedObjectID from tblAccountRelatedObjects "
        "where AccountID = " +
        std::to_string(id));
  }
  [[nodiscard]] mainform::FormMode mode() const { return form->formMode; }

  Faults faults;
  std::unique_ptr<mainform::FormMain> form;
};

}  // namespace ledgertree::testing
