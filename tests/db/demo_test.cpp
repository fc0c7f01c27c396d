#include <gtest/gtest.h>

#include "data/data_error.h"
#include "db/schema.h"
#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

class Demo : public ::testing::Test {
 protected:
  Demo() { createDemoChart(database.other()); }

  testing::TemporaryDatabase database;
};

TEST_F(Demo, IsAChartThatAnAccountantCouldHaveMade) {
  EXPECT_GE(database.number("select count(*) from tblAccount"), 300);
  EXPECT_EQ(database.number("select max(NoLevel) from tblAccount"), 5);
  EXPECT_EQ(database.number("select count(distinct Code) - count(*) from tblAccount"), 0);
  EXPECT_EQ(database.number("select max(length(Title)) <= 50 from tblAccount"), 1);
  EXPECT_EQ(database.number("select count(*) from tblAccount a left join tblAccount p on p.ID = a.ParentID"
                            " where a.NoLevel > 1 and substr(a.Code, 1, length(p.Code)) is not p.Code"),
            0);
  EXPECT_EQ(database.number("select count(*) from pragma_foreign_key_check"), 0);
}

TEST_F(Demo, ShowsEachAccountUnderItsParentInDifferentPeriods) {
  EXPECT_EQ(
      database.number("select count(*) from tblAccountPeriodAccount x join tblAccount a on a.ID = x.AccountID"
                      " where a.ParentID is not null and not exists (select 1 from tblAccountPeriodAccount y"
                      " where y.PeriodID = x.PeriodID and y.AccountID = a.ParentID)"),
      0);
  EXPECT_EQ(database.number("select count(distinct n) from (select count(*) as n from tblAccountPeriodAccount"
                            " group by PeriodID)"),
            4);
}

TEST_F(Demo, BooksBalancedDocumentsOnAccountsOfTheirPeriod) {
  EXPECT_GE(database.number("select count(*) from tblAccountDocument"), 190);
  EXPECT_EQ(database.number("select count(*) from (select 1 from tblAccountDocumentDetail group by DocumentID"
                            " having sum(Debit) <> sum(Credit))"),
            0);
  EXPECT_EQ(
      database.number("select count(*) from tblAccountDocumentDetail l"
                      " join tblAccountDocument d on d.ID = l.DocumentID"
                      " where not exists (select 1 from tblAccountPeriod p join tblAccountPeriodAccount x"
                      "  on x.PeriodID = p.ID and x.AccountID = l.AccountID"
                      "  where d.FarsiDocumentDate between p.FarsiBeginDate and p.FarsiEndDate"
                      "  and d.DocumentDate between p.BeginDate and p.EndDate)"),
      0);
  EXPECT_EQ(
      database.number(
          "select count(*) from tblAccountDocumentDetail l join tblAccount a on a.ParentID = l.AccountID"),
      0);
}

TEST_F(Demo, GivesEveryAccountOfAnEntityItsPlaceForItself) {
  EXPECT_EQ(database.number("select count(*) from (select 1 from tblAccountRelatedObjects"
                            " group by AccountGroupID, RelatedClassID, RelatedObjectID having count(*) > 1)"),
            0);
  EXPECT_GE(database.number("select count(*) from vwAccountRelatedObjects where RelatedClassID = 3"), 8);
  // The deep family has objects on five levels.
  EXPECT_EQ(database.number(
                "with recursive t (ID, Level) as (select ID, 1 from vwEntityProject where ParentID is null"
                " union all select v.ID, t.Level + 1 from vwEntityProject v join t on v.ParentID = t.ID)"
                " select max(Level) from t"),
            5);
}

TEST_F(Demo, ShowsTheTextsThatTheHeadingsOfTheExportMean) {
  EXPECT_EQ(
      database.text("select AccountStatus || '|' || AccountType || '|' || RemainedType || '|' || AccContract"
                    " from vwAccount where Code = '80302'"),
      "بدهكار|موقت|باز|فروش داخلی");
  EXPECT_EQ(database.text("select AccGroup || '|' || AccountStatus || '|' || AccountType from vwAccount"
                          " where Code = '601'"),
            "فروش|بستانكار|موقت");
  EXPECT_EQ(database.text("select AccountStatus || '|' || RemainedType from vwAccount where Code = '50501'"),
            "هردو|باز");
  EXPECT_EQ(database.text("select RemainedType from vwAccount where Code = '506'"), "بسته");
  EXPECT_EQ(database.text("select Name from vwAccountClass where ID = 2"), "02_پروژه‌ها");
}

TEST_F(Demo, IsNotMixedIntoAChartThatIsThere) {
  EXPECT_THROW(createDemoChart(database.other()), data::DataError);
}

}  // namespace
}  // namespace ledgertree::db
