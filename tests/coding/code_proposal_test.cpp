#include "coding/proposal/code_proposal.h"

#include <tuple>

#include "accounts/account_story.h"
#include "coding/proposal/suffix.h"

namespace ledgertree::testing {
namespace {

TEST(Suffix, OneMoreOnTheSameWidth) {
  // The number at the start of the piece counts.
  const std::pair<const char*, const char*> suffixes[] = {
      {"01", "02"},     {"09", "10"},  {"007", "008"},      {"000199", "000200"},
      {"99", "00"},     {"9", "0"},    {"12A", "13"},       {"A1", ""},
      {"2E3", "3"},     {"", ""},      {" 1\t\r\n9", "20"}, {"1.50", "2.5"},
      {"1.2.3", "2.2"}, {"10:", "11"}, {"5/7", "6"},        {"۱۲", ""}};
  for (const auto& [suffix, next] : suffixes) EXPECT_EQ(coding::nextSuffix(suffix), next) << suffix;
  // At the full width of a code, where a double would lose the last digits.
  EXPECT_EQ(coding::nextSuffix("123456789012345"), "123456789012346");
  EXPECT_EQ(coding::nextSuffix("00000000000000000001"), "00000000000000000002");
  EXPECT_EQ(coding::nextSuffix("99999999999999999998"), "99999999999999999999");
  EXPECT_EQ(coding::nextSuffix("99999999999999999999"), "00000000000000000000");
}

TEST(Suffix, TheOwnPartIsWhatIsBehindAsManyCharactersAsTheParentHas) {
  const std::tuple<const char*, const char*, const char*> parts[] = {
      {"110105", "1101", "05"}, {"110105", "9999", "05"}, {"110105", "۱۱", "0105"}, {"۱۱۰۵", "11", "۰۵"},
      {"1101", "1101", "1101"}, {"11", "1101", "11"},     {"11", "", "11"}};
  for (const auto& [code, parent, own] : parts) EXPECT_EQ(coding::ownPart(code, parent), own) << parent;
}

class ProposalStory : public AccountStory {
 protected:
  ProposalStory() {
    person.acts["below"] = [this](auto& parentAndTitle) { return proposalBelow(parentAndTitle); };
    person.acts["proposed"] = [this](auto& parent) { return form->getNewAccountCode(std::stoi(parent)); };
    person.acts["code"] = [this](auto&) { return form->txtMotherCode.text() + "+" + form->txtCode.text(); };
  }
  /// What the screen proposes for a new account below a parent: "2 بانک".
  std::string proposalBelow(const std::string& parentAndTitle) {
    if (mode() != mainform::FormMode::ModeNew) form->cmdNew.click();
    const std::size_t blank = parentAndTitle.find(' ');
    form->txtTitle.paste(blank == std::string::npos ? "" : parentAndTitle.substr(blank + 1));
    pickParent(std::stoi(parentAndTitle));
    form->cmdAutoCode.press(ui::Key::Enter);
    return "<" + form->txtCode.text() + ">";
  }
};

TEST_F(ProposalStory, EachParentNumbersItsOwnChildren) {
  start();
  go("each parent numbers its own children");
}

TEST_F(ProposalStory, ALevelSharesOneRunningNumber) {
  setting(307, "1");
  start();
  go("a level shares one running number");
}

TEST_F(ProposalStory, AnAccountOfTheSameTitleMayShareItsNumber) {
  setting(307, "1");
  accounts({{1, 0, "01", "دارايي"},
            {2, 0, "02", "بدهي"},
            {3, 1, "01000007", "Ali's 50% [x]_"},
            {4, 1, "01000009", "Ali"}});
  start();
  go("accounts of the same title");
  EXPECT_EQ(proposalBelow("2 " + std::string("a\0b", 3)), "<000010>");
  EXPECT_EQ(proposalBelow("2 " + std::string(10000, '\'')), "<000010>");
  EXPECT_EQ(notices.taken(), "");
  go("the same title under edit");
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
}

TEST_F(ProposalStory, AQuestionThatFailsLeavesTheField) {
  setting(307, "1");
  accounts({{1, 0, "01", "دارايي"}, {2, 1, "0101", "بانک"}});
  start();
  go("a question that fails");
}

}  // namespace
}  // namespace ledgertree::testing
