#include "accounts/account_deletion.h"

#include "accounts/account_story.h"

namespace ledgertree::testing {
namespace {

using mainform::FormMode;

constexpr const char* kQuestion = "حذف حساب |آيا از حذف حساب مورد نظر اطمينان داريد؟ ";
constexpr const char* kDependency =
    "خطا|به اين سرفصل حساب وابستگي وجود دارد. بنابراين امکان حذف آن وجود ندارد.";

class DeletionStory : public AccountStory {
 protected:
  DeletionStory() {
    accounts({{1, 0, "1", "دارايي"}, {2, 1, "101", "بانک"}, {3, 1, "102", "صندوق"}});
    documentOn(3);
    database.execute(
        "insert into tblAccountRelatedObjects values (2, 4, 11, 7), (3, 5, 12, 6);"
        "insert into tblAccountPeriod values (1, 'سال', '2024-03-20', '2025-03-20', '1403/01/01', "
        "'1403/12/30'); insert into tblAccountPeriodAccount (PeriodID, AccountID) values (1, 2), (1, 3)");
    start();
  }
  /// Presses delete with an answer to the question, and gives what was told besides it.
  std::string deleting(std::int32_t id, int answer = 1) {
    form->View(id);
    notices.answer(answer);
    form->cmdDelete.click();
    auto told = notices.take();
    EXPECT_EQ(told.empty() ? "" : told[0].title + "|" + told[0].message, kQuestion);
    return told.size() < 2 ? "" : told[1].title + "|" + told[1].message;
  }
};

TEST_F(DeletionStory, AnAccountOfItsOwnGoesForGood) {
  form->treeAccount.expand(form->treeAccount.find("-1:1"));
  EXPECT_EQ(treeLabels(), "1 ... دارايي\n 101 ... بانک\n 102 ... صندوق\n");
  TableWatch tables(database);
  form->View(3);
  expectUnchosen(form->sltAccount, form->cmdDelete);
  EXPECT_EQ(deleting(2, 0), "");
  EXPECT_EQ(deleting(2, 5), "") << "an answer that is neither isn't a yes";
  const auto components = shell.components;
  shell.components.remove("NoticeKit.NoticeDialog");
  form->cmdDelete.click();  // nobody can be asked
  shell.components = components;
  EXPECT_EQ(mode(), FormMode::ModeView);
  EXPECT_EQ(tables.changes(), "");

  EXPECT_EQ(deleting(2), "");
  EXPECT_EQ(mode(), FormMode::ModeIdle);
  EXPECT_EQ(record(),
            "txtID=2\ntxtMotherCode=1\nFrameRemanedType=0 optDebit\nFrameAccountType=0 "
            "OptReg\nFrameAccountStatus=0 OptOpen\n");
  EXPECT_EQ(tables.changes(),
            "tblAccount: -2\ntblAccountParent: -1|2\ntblAccountPeriodAccount: -2|1\n"
            "tblAccountRelatedObjects: -2|4|11|7");
  EXPECT_EQ(treeLabels(), "1 ... دارايي +\n");
  form->treeAccount.expand(form->treeAccount.find("-1:1"));
  EXPECT_EQ(treeLabels(), "1 ... دارايي\n 102 ... صندوق\n");

  // The number of the deleted account is still remembered, and leads back to nothing.
  form->cmdNew.click();
  giveUp();
  EXPECT_EQ(mode(), FormMode::ModeView);
  desktop.tick();
  EXPECT_FALSE(form->cmdDelete.enabled() || form->cmdEdit.enabled());
}

TEST_F(DeletionStory, TheQuestionIsAboutTheAccountThatWasShown) {
  account(4, 1, "103", "تنخواه");
  notices.onShow = [this](const Notice&) { form->View(4); };
  EXPECT_EQ(deleting(2), "");
  EXPECT_EQ(database.rows("select ID from tblAccount"), "1\n3\n4") << "the host showed another one meanwhile";
}

TEST_F(DeletionStory, WhatDependsOnAnAccountKeepsIt) {
  for (const std::int32_t used : {1, 3}) {
    form->treeAccount.expand(form->treeAccount.find("-1:1"));
    EXPECT_EQ(deleting(used), kDependency);
    EXPECT_EQ(mode(), FormMode::ModeView);
    EXPECT_EQ(form->txtID.text(), std::to_string(used));
    EXPECT_NE(form->treeAccount.find("-1:2"), ui::kNoNode) << "the tree is as it was";
  }
  faults.failWhere("Delete tblAccount");
  EXPECT_EQ(deleting(2), kDependency) << "whatever the reason";
  faults.heal();
  EXPECT_EQ(database.number("select count(*) from tblAccount"), 3);

  // Deleted, but the tree couldn't be read again.
  faults.failWhere("Order by Code");
  EXPECT_EQ(deleting(2), kDependency);
  faults.heal();
  EXPECT_EQ(mode(), FormMode::ModeIdle);
  EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
  EXPECT_EQ(deleting(3), kDependency);
}

TEST_F(DeletionStory, TheRightIsAskedForAheadOfTheQuestion) {
  form->View(2);
  faults.failWhere("spTarvoHasPermission");
  form->cmdDelete.click();
  faults.heal();
  EXPECT_EQ(notices.take().size(), 1U);
  EXPECT_EQ(stored(2, "Code"), "101");

  edit(2);
  form->mnuFonc4.click();
  form->cmdDelete.click();
  EXPECT_EQ(notices.taken(), "") << "not under edit";
}

}  // namespace
}  // namespace ledgertree::testing
