#include "accounts/save_validation.h"

#include "accounts/account_story.h"

namespace ledgertree::testing {
namespace {

using mainform::FormMode;

/// A chart of 1 with 2 and 3 below it, 4 below 3; 2 and 5 have documents, and 6 is below 5.
class ValidationStory : public AccountStory {
 protected:
  ValidationStory() {
    accounts({{1, 0, "1", "دارايي"},
              {2, 1, "101", "بانک"},
              {3, 1, "102", "صندوق"},
              {4, 3, "10201", "تنخواه"},
              {5, 0, "5", "فروش"},
              {6, 5, "501", "داخلي"}});
    documentOn(2);
    documentOn(5);
    // The message contains these words and those of the engine.
    person.acts["refused"] = [this](auto& words) {
      const std::string seen = saving();
      const std::string told = notices.taken();
      for (const std::string& part : {words, std::string("\nچيزي ثبت نشد.")})
        EXPECT_NE(told.find(part), std::string::npos) << told;
      return seen;
    };
  }
};

TEST_F(ValidationStory, WhatIsMissingIsToldOneByOne) {
  start();
  form->datCreate.setVisible(true);  // a hidden control can't have the focus
  person.acts["date"] = [this](auto& day) {
    form->datCreate.Clear();
    if (day == "today") form->datCreate.setToday(shell.clock);
  };
  person.acts["unchosen"] = [this](auto& name) {
    expectUnchosen(dynamic_cast<ui::LookupField&>(*form->find(name)), form->cmdSave);
  };
  go("what is missing");
  // Unless the user is typing, a save does nothing.
  TableWatch tables(database);
  form->cmdSave.onClick();
  EXPECT_EQ(tables.changes() + notices.taken(), "");
}

TEST_F(ValidationStory, TheCodeOfAnAccountWithMovementStays) {
  start();
  person.acts["EditCodeAllowed"] = [this](auto& may) { form->settings.EditCodeAllowed = may == "yes"; };
  go("the code of an account with movement");
}

TEST_F(ValidationStory, AParentIsNeitherTheAccountNorBelowItNorInUse) {
  start();
  go("parents that are none");
  // A refused new account is remembered too, and -1 means the top: neither looks anything up.
  EXPECT_EQ(form->LastNewParentID, -1);
}

TEST_F(ValidationStory, AMoveBelowItselfOnAPlainEditIsRefusedByTheDatabase) {
  start();
  go("a move below itself on a plain edit");
}

TEST_F(ValidationStory, WhatTheDatabaseCantKeepIsToldAheadOfTheFirstWrite) {
  start();
  person.acts["letters"] = [this](auto& about) {
    std::string text;
    for (int count = std::stoi(about); count > 0; --count) text += "ش";
    person.act(about.substr(about.find(' ') + 1) + " " + text);
  };
  person.acts["unreadable"] = [this](auto& name) {
    auto& field = dynamic_cast<ui::TextField&>(*form->find(name));
    const std::string before = field.text();
    field.setText("\xff\xfe");
    const std::string seen = saving();
    field.setText(before);
    return seen;
  };
  go("what a database can't keep");
  // An edit accepts every character that databases can store.
  const std::string hostile = "O'Brien's; drop table tblAccount --\n";
  form->txtTitle.paste(hostile + "😀");
  if (onServer()) {
    person.act("refused 😀");  // not in the server's code page
    form->txtTitle.paste(hostile + "ژ");
  }
  const std::string title = form->txtTitle.text();
  form->txtNotes.setText("  ' two blanks  ");
  save();
  EXPECT_EQ(stored(7, "Title, Notes"), title + "|  ' two blanks  ");
}

TEST_F(ValidationStory, AGroupBeyondSixteenBitsIsNeverAnotherGroup) {
  if (onServer()) GTEST_SKIP() << "its views belong to all the stories";
  database.execute(
      "drop view vwAccountGroup; create view vwAccountGroup as"
      " select 5 as ID, 'نزديک' as Name union select 65541, 'دور'");
  start();
  go("a group beyond sixteen bits");
}

TEST_F(ValidationStory, WhatAnotherUserDeletedMeanwhileIsTold) {
  start();
  go("what another user deleted meanwhile");
  EXPECT_EQ(mode(), FormMode::ModeView);
  EXPECT_EQ(form->sltAccount.text() + form->txtCode.text(), "");
}

}  // namespace
}  // namespace ledgertree::testing
