#include "batch/account_batch.h"

#include "batch/bulk_house.h"

namespace ledgertree::testing {
namespace {

using batch::frmAccountBatch;

class AccountBatch : public BulkHouse {
 protected:
  AccountBatch() { start(); }

  void walk(frmAccountBatch& screen, const std::string& section) {
    person.go(
        "batch/steps.txt", section,
        [&screen] {
          const std::string focus = screen.focused() == nullptr ? "" : screen.focused()->name();
          return "«" + screen.sltParent.text() + "» @" + focus + (screen.ChangedFlag ? " changed" : "") +
                 (screen.isShown() ? "" : " closed");
        },
        [this] { return changes(); });
  }
  void onScreen(const std::string& section) {
    deleteInBatch([&](frmAccountBatch& screen) { walk(screen, section); });
  }
};

TEST_F(AccountBatch, DeletesAllBelowTheDeepestFirst) {
  EXPECT_NE(inTree(1, 4), "");
  deleteInBatch([&](frmAccountBatch& screen) {
    EXPECT_EQ(screen.sltParent.PickerPosition(), 12);
    walk(screen, "what is asked ahead of a deletion");
    EXPECT_EQ(desktop.layout(), "00000429");
  });
  EXPECT_NE(nodeText(4), "") << "nothing was done, and the tree stays as it is";
  EXPECT_EQ(desktop.hourglasses, 2) << "of the tree";
  deleteInBatch([&](frmAccountBatch& screen) {
    EXPECT_TRUE(screen.sltParent.IsEmpty()) << "loaded anew";
    // A handle left open must not matter.
    shell.dtEn()->rssqlViewTrans.Open("Select * From tblAccountGroup");
    walk(screen, "the deepest first");
  });
  EXPECT_EQ(nodeText(4), "") << "the tree is read anew";
}

TEST_F(AccountBatch, ADocumentOnAGrandchildStopsItAll) {
  given("insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (1, 501, 6)");
  onScreen("a document on a grandchild stops it all");
}

TEST_F(AccountBatch, ARefusedAccountKeepsThoseAboveIt) {
  // A table of another program that refuses the deletion.
  given(
      "create table tblBudget (AccountID int references tblAccount (ID)); insert into tblBudget values (6)");
  onScreen("a refused account keeps those above it");
}

TEST_F(AccountBatch, WhatIsSeenAheadIsWhatGoes) {
  shell.offers = {Offer::Preview};
  deleteInBatch([&](frmAccountBatch& screen) {
    person.acts["look"] = [&](auto& how) { return look(screen.cmdPreview, how); };
    person.acts["meanwhile"] = [this](auto& statement) {
      notices.onShow = [this, statement](const Notice& notice) {
        if (notice.question && !statement.empty()) given(statement);
      };
    };
    person.go(
        "batch/steps.txt", "a look ahead", [] { return ""; }, [this] { return changes(); });
    notices.onShow = nullptr;
  });
}

TEST_F(AccountBatch, EveryFailureLeavesAWholeChartThatCanBeFinished) {
  bool failed = true;
  for (int n = 1; failed; ++n) {
    SCOPED_TRACE(n);
    deleteInBatch([&](frmAccountBatch& screen) {
      pick(screen.sltParent, "11");
      notices.take();
      faults.failAt(n);
      answer(1);
      screen.cmdDelete.click();
      failed = faults.failures() > 0;
      if (failed) {
        EXPECT_EQ(notices.take().back().message, Faults::kMessage);
        EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
      }
      EXPECT_EQ(database.number("select count(*) from tblAccount a where a.ParentID is not null and not "
                                "exists (select 1 from tblAccount p where p.ID = a.ParentID)"),
                0);
      faults.heal();
      answer(1);
      screen.cmdDelete.click();
      EXPECT_TRUE(changes().starts_with("tblAccount: -3 -4 -5 -6\n"));
    });
    given(
        "insert into tblAccount (ID, ParentID, Code, Title) values (3, 1, '1101', 'بانک'), (4, 1, '1102', "
        "'صندوق'), (5, 3, '110101', 'ملت'), (6, 3, '110102', 'ملي')");
    notices.take();
  }
}

TEST_F(AccountBatch, LongWorkIsSeenAndTakesNoSecondCall) {
  deleteInBatch([&](frmAccountBatch& screen) {
    pick(screen.sltParent, "1101");
    notices.take();
    // The host opens its control again: the work continues with its own gateway.
    EXPECT_EQ(
        longWork(screen, screen.cmdDelete, "spAccountDeleteAccount", [this] { shell.resetDataConnection(); }),
        "1 از 2; 2 از 2; ");
    EXPECT_EQ(notices.taken(), "حذف دسته اي|آيا مطمئن هستيد؟");
    EXPECT_TRUE(changes().starts_with("tblAccount: -5 -6\n"));
  });
}

}  // namespace
}  // namespace ledgertree::testing
