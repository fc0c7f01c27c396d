#include "accounts/field_rules.h"

#include "accounts/account_story.h"
#include "accounts/field_rules_ceiling.h"

namespace ledgertree::testing {
namespace {

using ui::Key;

class FieldRulesStory : public AccountStory {};

/// Text and caret of a field: "1/2|34".
std::string at(const ui::TextField& field) {
  std::string text = field.text();
  return text.insert(std::min(field.caret(), text.size()), "|");
}

TEST_F(FieldRulesStory, ACeilingGroupsItsDigitsAndTheCaretKeepsItsPlaceAmongThem) {
  start();
  form->cmdNew.click();
  ui::TextField& ceiling = form->txtMaxDebit;
  ceiling.setText("1234567");
  ceiling.setCaret(3);
  ceiling.press(Key::Delete);
  EXPECT_EQ(at(ceiling), "123/|567") << "as the first key too";
  ceiling.setText("");
  const char* const typed[] = {"1|", "12|", "123|", "1/234|", "12/345|", "123/456|", "1/234/567|"};
  for (int digit = 1; digit <= 7; ++digit) {
    ceiling.type(std::to_string(digit));
    EXPECT_EQ(at(ceiling), typed[digit - 1]);
  }
  ceiling.setCaret(3);
  ceiling.type("9");
  EXPECT_EQ(at(ceiling), "12/9|34/567");
  ceiling.type("8");
  EXPECT_EQ(at(ceiling), "129/8|34/567");
  // A separator can't be taken away; the key after it takes the digit behind.
  const std::pair<Key, const char*> edits[] = {
      {Key::Backspace, "12/9|34/567"}, {Key::Delete, "1/29|4/567"},    {Key::Left, "1/2|94/567"},
      {Key::Left, "1/|294/567"},       {Key::Backspace, "1|/294/567"}, {Key::Backspace, "|294/567"},
      {Key::Right, "2|94/567"},        {Key::Right, "29|4/567"},       {Key::Right, "294|/567"},
      {Key::Delete, "294/|567"},       {Key::Delete, "29/4|67"},       {Key::Home, "|29/467"}};
  for (const auto& [key, after] : edits) {
    ceiling.press(key);
    EXPECT_EQ(at(ceiling), after);
  }
  ceiling.type("0");
  EXPECT_EQ(at(ceiling), "|29/467") << "zeros in front go";
  ceiling.paste("0005");
  ceiling.press(Key::Left);
  EXPECT_EQ(at(ceiling), "|5");

  // What can be typed, and in which digits.
  ceiling.paste("");
  for (ui::TextField* one : {&form->txtMaxDebit, &form->txtMaxCredit}) {
    one->type("a.-۴ ٥/6:9");
    EXPECT_EQ(at(*one), "4/569|");
    for (int key = 0; key < 4; ++key) one->press(Key::Backspace);
    EXPECT_EQ(at(*one), "0|");
    one->type("7");
    EXPECT_EQ(at(*one), "7|");
  }

  // Past the range of money the digits stay, for the save to tell.
  form->txtMaxCredit.paste("");
  form->txtMaxCredit.type("092233720368547758079");
  EXPECT_EQ(at(form->txtMaxCredit), "92/233/720/368/547/758/079|");
}

TEST_F(FieldRulesStory, AStoredCeilingIsGroupedAtTheFirstKey) {
  account(1, 0, "1", "دارايي");
  database.execute("update tblAccount set MaxDebit = " + database.amount(12345670000) +
                   ", MaxCredit = " + database.amount(15000));
  start();
  edit(1);
  EXPECT_EQ(form->txtMaxDebit.text() + " " + form->txtMaxCredit.text(), "1234567 1.5");
  form->txtMaxDebit.press(Key::Left);
  EXPECT_EQ(at(form->txtMaxDebit), "1/234/56|7");
  EXPECT_EQ(accounts::formatCeiling("12345.67", 8, false), (accounts::EditedText{"12/345/.67", 10}));
  save();
  EXPECT_EQ(stored(1, "MaxDebit, MaxCredit"), "12345670000|15000");
}

TEST_F(FieldRulesStory, TheCodeTakesTheKeysThatTheSettingsAllow) {
  setting(301, "1");
  start();
  form->cmdNew.click();
  form->txtCode.type("a1b-+۲٣:./ (9");
  EXPECT_EQ(form->txtCode.text(), "123./9");
  form->txtCode.press(Key::Backspace);
  form->txtCode.press(Key::Backspace);
  EXPECT_EQ(form->txtCode.text(), "123.");
  form->txtMotherCode.type("x۷");
  EXPECT_EQ(form->txtMotherCode.text(), "x7") << "the parent's part isn't filtered";
  form->settings.CodeIsNumeric = 2;
  form->txtCode.type("ب");
  EXPECT_EQ(form->txtCode.text(), "123.ب");
}

TEST_F(FieldRulesStory, AParentBringsItsCodeItsTypeItsNatureAndAProposal) {
  database.execute(
      "insert into tblAccount (ID, ParentID, Code, Title, IsPermanent, AccountNatureID, IsClosed) values"
      " (1, null, '11', 'دارايي', 1, 2, 1), (2, null, '22', 'بدهي', null, null, 0),"
      " (3, 2, '2207', 'وام', 0, 0, 0), (4, null, '44', 'درآمد', 0, 1, 0)");
  start();
  /// "code+own nature permanent closed" behind a pick.
  const auto picked = [this](std::int32_t parent) {
    pickParent(parent);
    const auto on = [](const ui::RadioButton& button) { return button.value() ? button.caption() : ""; };
    return form->txtMotherCode.text() + "+" + form->txtCode.text() + " " + on(form->optDebit) +
           on(form->OptCredit) + on(form->OptDebitAndCredit) + " " + on(form->OptReg) + on(form->OptNotReg) +
           " " + on(form->OptOpen) + on(form->OptClose);
  };
  form->cmdNew.click();
  EXPECT_EQ(picked(1), "11+01 هردو دائم باز") << "whether it is closed isn't inherited";
  form->txtTitle.type("بانک");
  EXPECT_EQ(stored(save(), "Code, IsPermanent, AccountNatureID, IsClosed"), "1101|1|2|0");

  form->cmdNew.click();
  EXPECT_EQ(picked(4), "44+01 بستانكار موقت باز");
  EXPECT_EQ(picked(1), "11+02 هردو دائم باز");
  EXPECT_EQ(picked(2), "22+08 بدهكار موقت باز") << "null counts as 0";
  form->OptCredit.click();
  form->OptNotReg.click();
  form->OptClose.click();
  EXPECT_EQ(picked(-1), "+45 بستانكار دائم بسته") << "no parent, nothing to inherit";
  EXPECT_EQ(form->sltParent.AccountID(), -1);
  form->txtTitle.type("سرمايه");
  EXPECT_EQ(stored(save(), "ParentID, IsPermanent, AccountNatureID, IsClosed"), "null|1|1|1");

  // Under edit, too, a parent replaces the code; and what was inherited may be changed again.
  edit(3);
  EXPECT_EQ(picked(1), "11+02 هردو دائم باز");
  form->optDebit.click();
  save();
  EXPECT_EQ(stored(3, "ParentID, Code, IsPermanent, AccountNatureID, NoLevel"), "1|1102|1|0|2");

  // Where nobody types, nothing follows.
  const std::string shown = record();
  form->sltParent.setAccountID(4);
  form->sltParent.onAccountChange();
  form->sltParent.setAccountID(1);
  EXPECT_EQ(record(), shown);
}

TEST_F(FieldRulesStory, TheClassDecidesWhichEntitiesAreOffered) {
  database.execute(
      "insert into tblAccountClass (ID, Name, ViewMajor, ViewMinor) values"
      " (13, 'حقوقي', 'vwEntityPerson', 'vwEntityProjectMinor');"
      "update tblEntityPerson set Description = 'تهران'; update tblEntityProject set Description = 'يزد'");
  start();
  form->cmdNew.click();
  shell::Selector& entity = form->sltEntity;
  const auto closer = [&] {
    entity.lookCloser();
    desktop.settle();
    return entity.title() + " " + entity.SelectedText() + " " + entity.detail();
  };
  EXPECT_FALSE(entity.IsActive());
  pick(form->sltEntityType, 11);
  EXPECT_TRUE(entity.IsActive());
  pick(entity, 7);
  EXPECT_EQ(closer(), "اشخاص بام تهران");
  pick(form->sltEntityType, 13);
  EXPECT_EQ(closer(), "حقوقي بام يزد") << "the same view, so that the person stays";
  pick(form->sltEntityType, 12);
  EXPECT_TRUE(entity.IsEmpty());
  pick(entity, 7);
  EXPECT_EQ(closer(), "پروژه ها پل يزد");

  // A class that can't be read, one that is gone, and none at all offer nothing.
  faults.failWhere("from tblAccountClass where ID");
  pick(form->sltEntityType, 11);
  faults.heal();
  EXPECT_EQ(notices.taken(), "خطا|" + std::string(Faults::kMessage));
  EXPECT_TRUE(entity.IsEmpty() && !entity.IsActive());
  pick(form->sltEntityType, 12);
  pick(entity, 6);
  form->sltEntityType.openList();
  desktop.settle();
  database.execute("delete from tblAccountClass where ID = 13");
  form->sltEntityType.pick(0);
  EXPECT_EQ(form->sltEntityType.SelectedID(), 13);
  EXPECT_TRUE(entity.IsEmpty() && !entity.IsActive());
  pick(form->sltEntityType, 12);
  pick(entity, 6);
  form->sltEntityType.press(Key::Delete);
  EXPECT_TRUE(entity.IsEmpty() && !entity.IsActive());
}

}  // namespace
}  // namespace ledgertree::testing
