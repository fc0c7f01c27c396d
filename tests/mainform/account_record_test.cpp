#include "mainform/account_record.h"

#include "mainform/screen_story.h"

namespace ledgertree::testing {
namespace {

using mainform::SplitCode;

class RecordStory : public ScreenStory {
 protected:
  RecordStory() { start(); }
};

TEST_F(RecordStory, AClickInTheTreeShowsAllThatIsKnownOfAnAccount) {
  walk("an account from the tree");
  EXPECT_EQ(form->datCreate.englishdate(), (data::DateTime{.year = 2023, .month = 3, .day = 21}));
  for (const char* const none :
       {"3, IsPermanent = 2, IsClosed = 2", "null, IsPermanent = null, IsClosed = null"}) {
    database.execute("update tblAccount set AccountNatureID = " + std::string(none) + " where ID = 1");
    walk("no button for the value");
  }
  walk("the root has no record");
}

TEST_F(RecordStory, ANewAccountTakesNothingOfTheLastOneAndGivingUpAsks) {
  walk("giving up where there was no account before");
  walk("a new account takes nothing of the last one");
  EXPECT_EQ(form->sltEntity.SelectedID(), -1);
  walk("giving up goes back to the last account");
}

TEST_F(RecordStory, ExitAsksOnlyWhereSomethingIsTyped) { walk("leaving asks only where something is typed"); }

TEST_F(RecordStory, CommandsGoDarkWithTheRecordAndComeBackWithIt) { walk("an account that is gone"); }

TEST_F(RecordStory, APickInTheTitleLoadsTheAccountAndKeepsTheMode) { walk("a pick in the title"); }

TEST_F(RecordStory, ACodeIsSplitBehindItsParents) {
  const struct {
    const char *code, *parent, *mother, *own;
  } splits[] = {{"1101", "11", "11", "01"},     {"11", "", "", "11"},     {"11", "11", "11", ""},
                {"12345", "0012", "12", "345"}, {"12", "0012", "12", ""}, {"1", "0012", "", "1"},
                {"9901", "11", "", "9901"},     {"", "11", "", ""}};
  for (const auto& [code, parent, mother, own] : splits)
    EXPECT_EQ(mainform::splitCode(code, parent), (SplitCode{mother, own})) << code;
  // Whatever they contain, joining the parts gives the code.
  for (const char* parent : {"A", "00", "1E999", "-1", "1.50", "00123456789012345678", "۱۲"}) {
    for (const char* code : {"XYZ", "05", "1E999", " 12", "-15", "1.51", "12345678901234567899", "۱۲۳"}) {
      const SplitCode split = mainform::splitCode(code, parent);
      EXPECT_EQ(split.mother + split.own, code) << parent;
    }
  }

  database.execute(
      "insert into tblAccount (ID, ParentID, Code, Title) values (20, null, '0012', 'مادر'),"
      " (21, 20, '12345', 'فرزند')");
  form->View(21);
  EXPECT_EQ(form->txtMotherCode.text() + "+" + form->txtCode.text(), "12+345");
}

TEST_F(RecordStory, AReadThatFailsLeavesNoMixtureOfTwoAccounts) { walk("a read that fails"); }

TEST_F(RecordStory, AnAnswerThatComesLateLeavesTheOtherRecordAlone) {
  form->settings.CodingMode = 1;
  form->cmdNew.click();
  pickFirst(form->sltParent, "11");
  form->txtTitle.paste("بانک");
  notices.onShow = [this](const Notice&) { form->View(1); };
  answer(true);
  form->cmdAutoCode.click();
  EXPECT_EQ(notices.take().size(), 1U);
  EXPECT_EQ(form->txtCode.text(), "11") << "the host's account, not the proposal";
}

}  // namespace
}  // namespace ledgertree::testing
