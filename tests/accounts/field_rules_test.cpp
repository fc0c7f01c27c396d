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
  const char* const typed[] = {"1|", "12|", "123|", "1/234|", "12/345|", "123/456|", "1/234/567|"};
  for (int digit = 1; digit <= 7; ++digit) {
    ceiling.type(std::to_string(digit));
    EXPECT_EQ(at(ceiling), typed[digit - 1]);
  }
  // In the middle.
  ceiling.setCaret(3);
  ceiling.type("9");
  EXPECT_EQ(at(ceiling), "12/9|34/567");
  ceiling.type("8");
  EXPECT_EQ(at(ceiling), "129/8|34/567");
  ceiling.press(Key::Backspace);
  EXPECT_EQ(at(ceiling), "12/9|34/567");
  ceiling.press(Key::Delete);
  EXPECT_EQ(at(ceiling), "1/29|4/567");
  ceiling.press(Key::Left);
  EXPECT_EQ(at(ceiling), "1/2|94/567") << "an arrow moves the caret, and nothing else";
  ceiling.press(Key::Left);
  EXPECT_EQ(at(ceiling), "1/|294/567");
  // A separator can't be taken away; the key after it takes the digit behind.
  ceiling.press(Key::Backspace);
  EXPECT_EQ(at(ceiling), "1|/294/567");
  ceiling.press(Key::Backspace);
  EXPECT_EQ(at(ceiling), "|294/567");
  ceiling.press(Key::Right);
  ceiling.press(Key::Right);
  ceiling.press(Key::Right);
  ceiling.press(Key::Delete);
  EXPECT_EQ(at(ceiling), "294/|567");
  ceiling.press(Key::Delete);
  EXPECT_EQ(at(ceiling), "29/4|67");
  ceiling.press(Key::Home);
  ceiling.type("0");
  EXPECT_EQ(at(ceiling), "|29/467") << "zeros in front go";

  ceiling.paste("0005");
  ceiling.press(Key::Left);
  EXPECT_EQ(at(ceiling), "|5");

  // What can be typed, and in which digits.
  ceiling.paste("");
  ceiling.type("a.-۴ ٥/6");
  EXPECT_EQ(at(ceiling), "456|");
  for (int key = 0; key < 3; ++key) ceiling.press(Key::Backspace);
  EXPECT_EQ(at(ceiling), "0|");
  ceiling.type("7");
  EXPECT_EQ(at(ceiling), "7|");

  // Past the range of money the digits stay, for the save to tell.
  form->txtMaxCredit.type("92233720368547758079");
  EXPECT_EQ(at(form->txtMaxCredit), "92/233/720/368/547/758/079|");
  EXPECT_EQ(notices.taken(), "");
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
  save();
  EXPECT_EQ(stored(1, "MaxDebit, MaxCredit"), "12345670000|15000");
}

TEST_F(FieldRulesStory, TheCodeTakesTheKeysThatTheSettingsAllow) {
  setting(301, "1");
  start();
  form->cmdNew.click();
  form->txtCode.type("a1b-+۲٣./ (");
  EXPECT_EQ(form->txtCode.text(), "123./");
  form->txtCode.press(Key::Backspace);
  EXPECT_EQ(form->txtCode.text(), "123.");
  form->txtMotherCode.type("x۷");
  EXPECT_EQ(form->txtMotherCode.text(), "x7") << "the parent's part isn't filtered";
  form->settings.CodeIsNumeric = 2;
  form->txtCode.type("ب");
  EXPECT_EQ(form->txtCode.text(), "123.ب");
}

TEST_F(FieldRulesStory, AParentBringsItsCodeItsTypeItsNatureAndAProposal) {
  account(1, 0, "11", "دارايي");
  database.execute("update tblAccount set IsPermanent = 1, AccountNatureID = 1, IsClosed = 1 where ID = 1");
  account(2, 0, "22", "بدهي");
  database.execute("update tblAccount set IsPermanent = null, AccountNatureID = null where ID = 2");
  account(3, 2, "2207", "وام");
  start();
  form->cmdNew.click();
  pickParent(1);
  EXPECT_EQ(form->txtMotherCode.text() + "+" + form->txtCode.text(), "11+01");
  EXPECT_TRUE(form->OptNotReg.value() && form->OptCredit.value());
  EXPECT_TRUE(form->OptOpen.value()) << "whether it is closed isn't inherited";
  form->txtTitle.type("بانک");
  EXPECT_EQ(stored(save(), "Code, IsPermanent, AccountNatureID, IsClosed"), "1101|1|1|0");

  form->cmdNew.click();
  form->OptDebitAndCredit.click();
  pickParent(2);
  EXPECT_TRUE(form->OptReg.value() && form->optDebit.value()) << "null counts as 0";
  EXPECT_EQ(form->txtCode.text(), "08");
  form->OptDebitAndCredit.click();
  form->OptClose.click();
  form->sltParent.press(Key::Delete);
  EXPECT_EQ(form->sltParent.AccountID(), -1);
  EXPECT_EQ(form->txtMotherCode.text() + "+" + form->txtCode.text(), "+23");
  EXPECT_TRUE(form->OptDebitAndCredit.value()) << "no parent, nothing to inherit";
  form->txtTitle.type("سرمايه");
  EXPECT_EQ(stored(save(), "ParentID, IsPermanent, AccountNatureID, IsClosed"), "null|0|2|1");

  // Under edit, too, a parent replaces the code; and what was inherited may be changed again.
  edit(3);
  pickParent(1);
  EXPECT_EQ(form->txtMotherCode.text() + "+" + form->txtCode.text(), "11+02");
  form->optDebit.click();
  save();
  EXPECT_EQ(stored(3, "ParentID, Code, IsPermanent, AccountNatureID, NoLevel"), "1|1102|1|0|2");
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(FieldRulesStory, TheClassDecidesWhichEntitiesAreOffered) {
  database.execute(
      "insert into tblAccountClass (ID, Name, ViewMajor, ViewMinor) values"
      " (3, 'حقوقي', 'vwEntityPerson', 'vwEntityPersonMinor')");
  start();
  form->cmdNew.click();
  EXPECT_FALSE(form->sltEntity.IsActive());
  pick(form->sltEntityType, 1);
  EXPECT_TRUE(form->sltEntity.IsActive());
  EXPECT_EQ(form->sltEntity.title(), "اشخاص");
  pick(form->sltEntity, 2);
  pick(form->sltEntityType, 3);
  EXPECT_EQ(form->sltEntity.SelectedText(), "مغان") << "the same view, so that the person stays";
  pick(form->sltEntityType, 2);
  EXPECT_TRUE(form->sltEntity.IsEmpty());
  pick(form->sltEntity, 1);
  EXPECT_EQ(form->sltEntity.SelectedText(), "سد");
  form->sltEntityType.press(Key::Delete);
  EXPECT_TRUE(form->sltEntity.IsEmpty());
  EXPECT_FALSE(form->sltEntity.IsActive());
}

}  // namespace
}  // namespace ledgertree::testing
