#include "coding/proposal/code_proposal.h"

#include "accounts/account_story.h"
#include "coding/proposal/suffix.h"

namespace ledgertree::testing {
namespace {

constexpr const char* kSameTitle =
    "نام حساب تكراري|قبلا حسابي با همين نام ثبت شده آيا ميخواهيد كه همان كد واگذار شود .";

TEST(Suffix, OneMoreOnTheSameWidth) {
  using coding::nextSuffix;
  EXPECT_EQ(nextSuffix("01"), "02");
  EXPECT_EQ(nextSuffix("09"), "10");
  EXPECT_EQ(nextSuffix("007"), "008");
  EXPECT_EQ(nextSuffix("000199"), "000200");
  EXPECT_EQ(nextSuffix("99"), "00");
  EXPECT_EQ(nextSuffix("9"), "0");
  // To the full width of a code, where a double would have lost the last digits.
  EXPECT_EQ(nextSuffix("123456789012345"), "123456789012346");
  EXPECT_EQ(nextSuffix("00000000000000000001"), "00000000000000000002");
  EXPECT_EQ(nextSuffix("99999999999999999998"), "99999999999999999999");
  EXPECT_EQ(nextSuffix("99999999999999999999"), "00000000000000000000");
  // The number that the piece begins with counts.
  EXPECT_EQ(nextSuffix("12A"), "13");
  EXPECT_EQ(nextSuffix("A1"), "");
  EXPECT_EQ(nextSuffix("2E3"), "3");
  EXPECT_EQ(nextSuffix(""), "");
  EXPECT_EQ(nextSuffix(" 1\t\r\n9"), "20");
  EXPECT_EQ(nextSuffix("1.50"), "2.5");
  EXPECT_EQ(nextSuffix("1.2.3"), "2.2");
  EXPECT_EQ(nextSuffix("10:"), "11");
  EXPECT_EQ(nextSuffix("5/7"), "6");
  EXPECT_EQ(nextSuffix("۱۲"), "");
}

TEST(Suffix, TheOwnPartIsWhatIsBehindAsManyCharactersAsTheParentHas) {
  using coding::ownPart;
  EXPECT_EQ(ownPart("110105", "1101"), "05");
  EXPECT_EQ(ownPart("110105", "9999"), "05") << "by the length alone";
  EXPECT_EQ(ownPart("110105", "۱۱"), "0105") << "characters, not bytes";
  EXPECT_EQ(ownPart("۱۱۰۵", "11"), "۰۵");
  EXPECT_EQ(ownPart("1101", "1101"), "1101");
  EXPECT_EQ(ownPart("11", "1101"), "11");
  EXPECT_EQ(ownPart("11", ""), "11");
}

class ProposalStory : public AccountStory {
 protected:
  /// What the screen proposes for a new account below a parent.
  std::string proposalBelow(std::int32_t parent, const std::string& title = "") {
    if (mode() != mainform::FormMode::ModeNew) form->cmdNew.click();
    form->txtTitle.paste(title);
    pickParent(parent);
    form->cmdAutoCode.press(ui::Key::Enter);
    return form->txtCode.text();
  }
};

TEST_F(ProposalStory, EachParentNumbersItsOwnChildren) {
  start();
  EXPECT_EQ(form->getNewAccountCode(-1), "01") << "the first account of all";
  account(1, 0, "1101", "بانک");
  account(2, 0, "11", "دارايي");
  account(3, 2, "1101", "يادداشت");
  account(4, 0, "9", "کوتاه");
  account(5, 0, "10", "بلند");
  EXPECT_EQ(proposalBelow(1), "01") << "the first child";
  for (int child = 1; child <= 9; ++child) account(10 + child, 1, "11010" + std::to_string(child), "ش");
  EXPECT_EQ(proposalBelow(1), "10");
  EXPECT_EQ(form->txtMotherCode.text(), "1101");
  form->txtTitle.paste("شعبه");
  const std::int32_t saved = save();
  EXPECT_EQ(stored(saved, "Code, NoLevel"), "110110|2");

  // The greatest text counts, 9 above 10; and at the top, the whole code.
  EXPECT_EQ(proposalBelow(-1), "0");
  // A sibling that is no longer than the parent's code counts as a whole.
  database.execute("update tblAccount set Code = '1101', ParentID = 11 where ID = 3");
  EXPECT_EQ(proposalBelow(11), "1102");
  database.execute("update tblAccount set Code = '110101A1' where ID = 3");
  EXPECT_EQ(proposalBelow(11), "") << "no number to go on from";
  database.execute("update tblAccount set Code = null where ID = 3");
  EXPECT_EQ(proposalBelow(11), "");
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(ProposalStory, ALevelSharesOneRunningNumber) {
  setting(307, "1");
  start();
  EXPECT_EQ(form->getNewAccountCode(-1), "") << "nothing to go on from";
  account(1, 0, "01", "دارايي");
  account(2, 0, "02", "بدهي");
  EXPECT_EQ(proposalBelow(-1), "03") << "the first level numbers by itself";
  EXPECT_EQ(proposalBelow(2), "") << "the second level has no account at all";
  account(3, 1, "0107", "بانک");
  EXPECT_EQ(proposalBelow(2), "0108") << "the number of the other parent's child goes on";
  account(4, 3, "0107000123", "مشتري الف");
  account(5, 3, "0107000045", "مشتري ب");
  account(6, 2, "0299", "جاري");
  EXPECT_EQ(proposalBelow(6), "000124");
  EXPECT_EQ(form->getNewAccountCode(77), "") << "a parent that is gone";
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(ProposalStory, AnAccountOfTheSameTitleMayShareItsNumber) {
  setting(307, "1");
  account(1, 0, "01", "دارايي");
  account(2, 0, "02", "بدهي");
  account(3, 1, "01000007", "Ali's 50% [x]_");
  account(4, 1, "01000009", "Ali");
  start();
  notices.answer(1);
  notices.answer(1);
  EXPECT_EQ(proposalBelow(2, "Ali's 50% [x]_"), "000007");
  EXPECT_EQ(notices.taken(), kSameTitle + std::string("\n") + kSameTitle)
      << "for the pick and for the button";
  const auto shared = save();
  EXPECT_EQ(stored(shared, "Code"), "02000007");

  for (const int neither : {0, 5}) notices.answer(neither);
  EXPECT_EQ(proposalBelow(2, "Ali's 50% [x]_"), "000010") << "anything but a yes: the level's next number";
  EXPECT_EQ(notices.take().size(), 2U);
  EXPECT_EQ(proposalBelow(2, "A%"), "000010") << "the sign is a sign";
  EXPECT_EQ(proposalBelow(2, std::string("a\0b", 3)), "000010");
  EXPECT_EQ(proposalBelow(2, std::string(10000, '\'')), "000010");
  EXPECT_EQ(notices.taken(), "");

  // Under edit the search finds the account itself, too.
  notices.answer(1);
  form->cmdCancel.click();
  static_cast<void>(notices.take());
  edit(4);
  notices.answer(1);
  form->cmdAutoCode.click();
  EXPECT_EQ(notices.taken(), kSameTitle);
  EXPECT_EQ(form->txtCode.text(), "000009");
}

TEST_F(ProposalStory, AnUnknownModeProposesNothing) {
  setting(307, "2");
  account(1, 0, "01", "دارايي");
  start();
  form->cmdNew.click();
  form->txtCode.type("77");
  static_cast<void>(faults.take());
  form->cmdAutoCode.click();
  EXPECT_EQ(form->txtCode.text(), "");
  EXPECT_EQ(faults.take().size(), 0U) << "it asks the database nothing";
  form->cmdSave.click();
  EXPECT_EQ(notices.taken(), "اشکال|کد وارد نشده است!");
}

TEST_F(ProposalStory, AQuestionThatFailsLeavesTheField) {
  setting(307, "1");
  account(1, 0, "01", "دارايي");
  account(2, 1, "0101", "بانک");
  start();
  form->cmdNew.click();
  pickParent(1);
  form->txtTitle.paste("بانک");
  for (const char* failing : {"Code,NoLevel", "where Title", "Order By rCode"}) {
    form->txtCode.paste("5");
    faults.failWhere(failing);
    form->cmdAutoCode.click();
    faults.heal();
    const auto told = notices.take();
    EXPECT_EQ(told.back().message, Faults::kMessage) << failing;
    EXPECT_EQ(form->txtCode.text(), "5");
    notices.answer(1);
    form->cmdAutoCode.click();
    static_cast<void>(notices.take());
    EXPECT_EQ(form->txtCode.text(), "0101");
  }
}

}  // namespace
}  // namespace ledgertree::testing
