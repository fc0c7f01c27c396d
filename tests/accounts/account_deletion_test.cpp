#include "accounts/account_deletion.h"

#include "accounts/account_story.h"

namespace ledgertree::testing {
namespace {

class DeletionStory : public AccountStory {
 protected:
  DeletionStory() {
    accounts({{1, 0, "1", "دارايي"}, {2, 1, "101", "بانک"}, {3, 1, "102", "صندوق"}});
    documentOn(3);
    database.execute(
        "update tblAccount set CreateDate = '2024-03-20', FarsiCreateDate = '1403/01/01';"
        "insert into tblAccountRelatedObjects values (2, 4, 11, 7), (3, 5, 12, 6);"
        "insert into tblAccountPeriod values (1, 'سال', '2024-03-20', '2025-03-20', '1403/01/01', "
        "'1403/12/30'); insert into tblAccountPeriodAccount (PeriodID, AccountID) values (1, 2), (1, 3)");
    // Without the component nobody can be asked.
    person.acts["alone"] = [this](auto& step) {
      const auto components = shell.components;
      shell.components.remove("NoticeKit.NoticeDialog");
      person.act(step);
      shell.components = components;
    };
    start();
  }
  /// Seen is what changed on the screen, and told is what changed in the database.
  void go(const std::string& section) {
    TableWatch tables(database);
    person.go(
        "accounts/steps.txt", section, [this] { return changed(); }, [&] { return tables.changes(); });
  }
};

TEST_F(DeletionStory, AnAccountOfItsOwnGoesForGood) { go("an account of its own goes for good"); }

TEST_F(DeletionStory, TheQuestionIsAboutTheAccountThatWasShown) {
  account(4, 1, "103", "تنخواه");
  go("the question is about the account that was shown");
}

TEST_F(DeletionStory, WhatDependsOnAnAccountKeepsIt) { go("what depends on an account keeps it"); }

TEST_F(DeletionStory, WhatStandsInTheWayIsToldAndLedTo) {
  shell.offers = {Offer::Preview};
  person.acts["twice"] = [this](auto& step) { notices.answer(1), person.act("yes " + step); };
  go("what stands in the way");
}

TEST_F(DeletionStory, TheRightIsAskedForAheadOfTheQuestion) { go("the right is asked for first"); }

}  // namespace
}  // namespace ledgertree::testing
