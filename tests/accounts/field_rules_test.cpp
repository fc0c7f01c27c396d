#include "accounts/field_rules.h"

#include "accounts/account_story.h"
#include "accounts/field_rules_ceiling.h"

namespace ledgertree::testing {
namespace {

class FieldRulesStory : public AccountStory {};

TEST_F(FieldRulesStory, ACeilingGroupsItsDigitsAndTheCaretKeepsItsPlaceAmongThem) {
  account(1, 0, "1", "دارايي");
  database.execute("update tblAccount set MaxDebit = " + database.amount(12345670000) +
                   ", MaxCredit = " + database.amount(15000));
  start();
  go("a ceiling");
  EXPECT_EQ(accounts::formatCeiling("12345.67", 8, false), (accounts::EditedText{"12/345/.67", 10}));
}

TEST_F(FieldRulesStory, TheCodeTakesTheKeysThatTheSettingsAllow) {
  setting(301, "1");
  start();
  go("a code of digits");
  form->settings.CodeIsNumeric = 2;
  form->txtCode.type("ب");
  EXPECT_EQ(form->txtCode.text(), "123.ب");
}

TEST_F(FieldRulesStory, AParentBringsItsCodeItsTypeItsNatureAndAProposal) {
  start();
  /// "code+own nature permanent closed" after a pick.
  person.acts["parent"] = [this](auto& parent) {
    pickParent(std::stoi(parent));
    const auto on = [](const ui::RadioButton& button) { return button.value() ? button.caption() : ""; };
    return form->txtMotherCode.text() + "+" + form->txtCode.text() + " " + on(form->optDebit) +
           on(form->OptCredit) + on(form->OptDebitAndCredit) + " " + on(form->OptReg) + on(form->OptNotReg) +
           " " + on(form->OptOpen) + on(form->OptClose);
  };
  go("what a parent brings");
  // Unless the user is typing, nothing follows.
  const std::string shown = record();
  form->sltParent.setAccountID(4);
  form->sltParent.onAccountChange();
  form->sltParent.setAccountID(1);
  EXPECT_EQ(record(), shown);
}

TEST_F(FieldRulesStory, TheClassDecidesWhichEntitiesAreOffered) {
  start();
  shell::Selector& entity = form->sltEntity;
  person.acts["offer"] = [&](auto&) {
    entity.lookCloser();
    desktop.settle();
    if (entity.IsActive()) return entity.title() + ":" + entity.SelectedText() + ":" + entity.detail();
    EXPECT_TRUE(entity.IsEmpty());
    return std::string("nothing");
  };
  // Another user deletes the class while its list is open.
  person.acts["lost"] = [this](auto& id) {
    form->sltEntityType.openList();
    desktop.settle();
    database.execute("delete from tblAccountClass where ID = " + id);
    form->sltEntityType.pick(0);
    return std::to_string(form->sltEntityType.SelectedID());
  };
  go("the entities of a class");
}

}  // namespace
}  // namespace ledgertree::testing
