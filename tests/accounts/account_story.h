#pragma once

#include <algorithm>
#include <initializer_list>
#include <map>
#include <string>

#include "data/quote_text.h"
#include "mainform/screen_story.h"
#include "support/table_watch.h"

namespace ledgertree::testing {

/// An accountant at the main screen, with an empty chart.
class AccountStory : public MainScreenHouse {
 protected:
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
  struct Row {
    int id, parent;
    const char *code, *title;
  };
  void accounts(std::initializer_list<Row> rows) {
    for (const Row& row : rows) account(row.id, row.parent, row.code, row.title);
  }
  void documentOn(int id) {
    database.execute(
        "insert or ignore into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1403/01/01');"
        "insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, " +
        std::to_string(id) + ")");
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
    if (mode() != mainform::FormMode::ModeView) return -1;
    EXPECT_EQ(form->focused(), &form->cmdNew);
    expectWhatIsStored();
    return std::stoi(form->txtID.text());
  }
  /// The record and the tree on the screen are as another look at the database shows them.
  void expectWhatIsStored() {
    expectRecordAsStored();
    const std::string tree = treeLabels();
    form->cmdRefreshAccountTree.click();
    EXPECT_EQ(tree, treeLabels());
  }
  void expectRecordAsStored() {
    const std::string shown = record();
    form->View(std::stoi(form->txtID.text()));
    EXPECT_EQ(shown, record());
  }
  void giveUp() {
    notices.answer(1);
    form->cmdCancel.click();
    EXPECT_EQ(notices.take().size(), 1U);
  }
  std::int32_t saveNew(std::int32_t parent, const std::string& title, const std::string& code = "") {
    typeNew(parent, title, code);
    return save();
  }

  /// Columns of an account as the database has them, joined by "|".
  [[nodiscard]] std::string stored(std::int32_t id, const std::string& columns) {
    return database.rows("select " + columns + " from tblAccount where ID = " + std::to_string(id));
  }
  /// An account as the database has it, a line for each column that isn't as in one that was made today at
  /// the top with nothing but a code and a title.
  [[nodiscard]] std::string stored(std::int32_t id) {
    static const std::map<std::string, std::string> plain = {
        {"ParentID", "null"},     {"NoLevel", "1"},     {"GroupID", "null"},
        {"BranchID", "0"},        {"PositionID", "0"},  {"FarsiCreateDate", "1405/09/01"},
        {"AccountNatureID", "0"}, {"IsPermanent", "0"}, {"IsClosed", "0"},
        {"MaxDebit", "0"},        {"MaxCredit", "0"},   {"CreateDate", "2026-11-22 00:00:00"}};
    const data::Rows rows = database.read("select * from tblAccount where ID = " + std::to_string(id));
    std::string text;
    for (std::size_t column = 1; rows.count() == 1 && column < rows.columns().size(); ++column) {
      const std::string& name = rows.columns()[column];
      if (isComputed(name)) continue;
      const std::string value = cellText(rows.value(0, column));
      const auto usual = plain.find(name);
      if (usual == plain.end() ? !value.empty() : usual->second != value) text += name + "=" + value + "\n";
    }
    return text;
  }
  /// Group, class and object of each relation of an account.
  [[nodiscard]] std::string relations(std::int32_t id) {
    return database.rows(
        "select AccountGroupID, RelatedClassID, RelatedObjectID from tblAccountRelatedObjects "
        "where AccountID = " +
        std::to_string(id));
  }
  [[nodiscard]] mainform::FormMode mode() const { return form->formMode; }
};

}  // namespace ledgertree::testing
