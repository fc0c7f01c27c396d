#pragma once

#include <algorithm>
#include <initializer_list>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "data/quote_text.h"
#include "mainform/screen_story.h"
#include "support/steps.h"
#include "support/table_watch.h"

namespace ledgertree::testing {

/// An accountant at the main screen, with an empty chart; the accountant's steps are in
/// tests/accounts/steps.txt.
class AccountStory : public MainScreenHouse {
 protected:
  AccountStory() {
    person.acts["save"] = [this](auto&) { return saving(); };
    person.acts["asked"] = [this](auto& words) { return asked(words); };
    person.acts["row"] = [this](auto& about) { return row(about); };
    person.acts["account"] = [this](auto& about) { addAccount(about); };
    person.acts["edit"] = [this](auto& id) { edit(std::stoi(id)); };
    person.acts["leave"] = [this](auto&) { giveUp(); };
    person.acts["document"] = [this](auto& id) { documentOn(std::stoi(id)); };
  }
  void go(const std::string& section) { person.go("accounts/steps.txt", section); }

  /// Sets a parameter of the installation before start().
  void setting(int parameter, const std::string& value) {
    database.execute("insert into tblTarvoSystemParameters (ID, Value) values (" + std::to_string(parameter) +
                     ", '" + value + "')");
  }
  /// Inserts an account without using the screen; parent 0 for none.
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

  // User actions.
  /// Finds a row by typing, and picks it; -1 clears the field.
  void pick(ui::LookupField& field, std::int32_t id, const std::string& typed = "") {
    pickRow(field, desktop, id, typed);
  }
  void pickParent(std::int32_t id) {
    pick(form->sltParent, id,
         id == -1 ? "" : database.text("select Code from tblAccount where ID = " + std::to_string(id)));
  }
  void edit(std::int32_t id) {
    form->View(id);
    form->cmdEdit.click();
  }
  /// A new account under a parent, with the proposed code unless another is given, ready to be saved.
  void typeNew(std::int32_t parent, const std::string& title, const std::string& code = "") {
    form->cmdNew.click();
    if (parent != -1) pickParent(parent);
    form->txtTitle.paste(title);
    if (!code.empty()) form->txtCode.paste(code);
  }
  /// Saves what is on the screen, and returns the account shown then.
  std::int32_t save() {
    const int hourglasses = desktop.hourglasses;
    form->cmdSave.click();
    if (mode() != mainform::FormMode::ModeView) return -1;
    EXPECT_EQ(form->focused(), &form->cmdNew);
    expectWhatIsStored();
    desktop.hourglasses = hourglasses;  // the tree's; the steps ignore them
    return std::stoi(form->txtID.text());
  }
  /// The record and the tree on the screen match a fresh look at the database.
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

  /// Columns of an account in the database, joined by "|".
  [[nodiscard]] std::string stored(std::int32_t id, const std::string& columns) {
    return database.rows("select " + columns + " from tblAccount where ID = " + std::to_string(id));
  }
  /// An account in the database, a line for each column that differs from one created today at the top with
  /// only a code and a title.
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

  /// Presses save. A refused save writes nothing and leaves the form as it was typed; seen is where the focus
  /// goes.
  std::string saving() {
    TableWatch tables(database);
    const mainform::FormMode before = mode();
    const std::string typed = record();
    const ui::Control* const place = form->focused();
    static_cast<void>(faults.take());
    const std::int32_t saved = save();
    commands_ = faults.take();
    if (saved != -1) return "saved " + std::to_string(saved);
    EXPECT_EQ(tables.changes(), "");
    EXPECT_EQ(mode(), before);
    EXPECT_EQ(record(), typed);
    return form->focused() == place ? "stays" : "stays at " + form->focused()->name();
  }

 private:
  /// Whether the last save sent this to the database.
  [[nodiscard]] std::string asked(const std::string& words) const {
    const bool found = std::any_of(commands_.begin(), commands_.end(), [&](const std::string& one) {
      return one.find(words) != std::string::npos;
    });
    return found ? "asked" : "unasked";
  }
  /// "3 Code, Title": what the database has for the ID.
  std::string row(const std::string& about) {
    return stored(std::stoi(about), about.substr(about.find(' ') + 1));
  }
  /// "3 1 1101 بانک": the ID, the parent's ID, the code and the title.
  void addAccount(const std::string& about) {
    std::istringstream words(about);
    int id = 0, parent = 0;
    std::string code, title;
    words >> id >> parent >> code >> title;
    account(id, parent, code, title);
  }

  std::vector<std::string> commands_;
};

}  // namespace ledgertree::testing
