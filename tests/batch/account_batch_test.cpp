#include "batch/account_batch.h"

#include "batch/bulk_house.h"

namespace ledgertree::testing {
namespace {

using batch::frmAccountBatch;

constexpr const char* kSure = "حذف دسته اي|آيا مطمئن هستيد؟";
constexpr const char* kDocuments =
    "خطا در حذف|از آنجايي كه يك يا چند حساب از حسابهاي زير مجموعه داراي سند حسابداري متناظر ميباشند، امكان "
    "حذف دستهاي حسابهاي فوق وجود ندارد.";

class AccountBatch : public BulkHouse {
 protected:
  AccountBatch() { start(); }

  void deleteBelow(frmAccountBatch& screen, const std::string& code) {
    pick(screen.sltParent, code);
    answer(1);
    screen.cmdDelete.click();
  }
};

/// What goes with account 5, because it belongs to it alone.
const std::string kOfFive =
    "\ntblAccountPeriodAccount: -5|1\ntblAccountRelatedClasses: -5|1|1|null\ntblAccountRelatedObjects: "
    "-5|1|null|null";

TEST_F(AccountBatch, DeletesAllBelowTheDeepestFirst) {
  EXPECT_NE(inTree(1, 4), "");
  deleteInBatch([&](frmAccountBatch& screen) {
    EXPECT_EQ(screen.sltParent.PickerPosition(), 12);
    screen.cmdCancel.focus();
    EXPECT_EQ(toldBy(screen.cmdDelete), "اشکال|حساب مشخص نشده است!");
    expectUnchosen(screen.sltParent, screen.cmdDelete);
    EXPECT_TRUE(screen.sltParent.hasFocus());
    EXPECT_EQ(desktop.layout(), "00000429");

    pick(screen.sltParent, "11");
    for (const int noOrNothing : {0, 7}) {
      answer(noOrNothing);
      EXPECT_EQ(toldBy(screen.cmdDelete), kSure);
      EXPECT_FALSE(screen.ChangedFlag);
    }
    screen.cmdCancel.click();
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_NE(nodeText(4), "") << "nothing was done, and the tree stays as it is";
  EXPECT_EQ(desktop.hourglasses, 2) << "of the tree";
  deleteInBatch([&](frmAccountBatch& screen) {
    EXPECT_TRUE(screen.sltParent.IsEmpty()) << "loaded anew";
    // A line on the account itself is in nobody's way: it stays. Neither is a handle that was left open.
    given("insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (1, 501, 1)");
    shell.dtEn()->rssqlViewTrans.Open("Select * From tblAccountGroup");
    deleteBelow(screen, "11");
    EXPECT_EQ(notices.taken(), kSure);
    EXPECT_EQ(changes(),
              "tblAccount: -3 -4 -5 -6\ntblAccountParent: -1|3 -1|4 -1|5 -1|6 -3|5 -3|6" + kOfFive);
    EXPECT_EQ(desktop.hourglasses, 3);
    EXPECT_TRUE(screen.isShown());
    EXPECT_EQ(screen.sltParent.AccountCode(), "11");
    EXPECT_TRUE(screen.press(ui::KeyChord::of(ui::Key::Escape)));
    EXPECT_FALSE(screen.isShown());
  });
  EXPECT_EQ(nodeText(4), "") << "the tree is read anew";
}

TEST_F(AccountBatch, ADocumentOnAGrandchildStopsItAll) {
  given("insert into tblAccountDocumentDetail (ID, DocumentID, AccountID) values (1, 501, 6)");
  deleteInBatch([&](frmAccountBatch& screen) {
    deleteBelow(screen, "11");
    EXPECT_EQ(notices.taken(), std::string(kSure) + "\n" + kDocuments);
    EXPECT_TRUE(screen.ChangedFlag) << "a confirmed command counts, whatever it achieved";
    // An account without children.
    deleteBelow(screen, "1201");
    EXPECT_EQ(notices.taken(), kSure);
  });
}

TEST_F(AccountBatch, ARefusedAccountKeepsThoseAboveIt) {
  // What another program of the host refuses to lose.
  given(
      "create table tblBudget (AccountID int references tblAccount (ID)); insert into tblBudget values (6)");
  deleteInBatch([&](frmAccountBatch& screen) {
    deleteBelow(screen, "11");
    EXPECT_EQ(notices.taken(), std::string(kSure) +
                                   "\nخطا|حساب ملي به كد 110102 به دليل وابستگي حذف نشد. "
                                   "\nخطا|حساب بانک به كد 1101 به دليل وابستگي حذف نشد. ");
    EXPECT_EQ(changes(), "tblAccount: -4 -5\ntblAccountParent: -1|4 -1|5 -3|5" + kOfFive);
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
        EXPECT_EQ(desktop.pointer, ui::Pointer::Default);
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
    // The host opens its control anew: the work goes on with the gateway that it has.
    EXPECT_EQ(
        longWork(screen, screen.cmdDelete, "spAccountDeleteAccount", [this] { shell.resetDataConnection(); }),
        "1 از 2; 2 از 2; ");
    EXPECT_EQ(notices.taken(), kSure);
    EXPECT_EQ(changes(), "tblAccount: -5 -6\ntblAccountParent: -1|5 -1|6 -3|5 -3|6" + kOfFive);
  });
}

}  // namespace
}  // namespace ledgertree::testing
