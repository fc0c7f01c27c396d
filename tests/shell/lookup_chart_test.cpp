#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "shell/account_picker.h"
#include "shell/selector.h"
#include "support/test_house.h"

namespace ledgertree::shell {
namespace {

using ui::Key;

/// The look-ups on a real chart.
class LookupChart : public testing::TestHouse {
 protected:
  LookupChart() {
    useDemoChart();
    sltAccount.setPickerConnection(database.connectionText());
    sltClass.setConnectionText(database.connectionText());
  }
  /// What the list shows for a text: codes and names, at most three.
  std::string found(ui::LookupField& field, const std::string& text) {
    field.type(text);
    desktop.settle();
    std::string list;
    for (std::size_t index = 0; index < field.rows().size() && index < 3; ++index)
      list += (list.empty() ? "" : ", ") + field.rows()[index].code + " " + field.rows()[index].text;
    field.press(Key::Escape);
    return list;
  }

  ui::Form form{shell.surroundings(), "Form", "", {.width = 6000, .height = 3000}};
  Selector sltClass{form, shell, "sltClass", {}};
  AccountPicker sltAccount{form, shell, "sltAccount", {}};
};

TEST_F(LookupChart, LettersThatAPersonTakesForTheSame) {
  sltClass.setMajorView("vwAccountGroup");
  sltClass.setMinorView("vwAccountGroupMinor");
  EXPECT_EQ(found(sltClass, "بانكها"), "02 بانک‌ها");
  EXPECT_EQ(found(sltClass, "صندوقها"), "01 صندوق‌ها");
  EXPECT_EQ(found(sltClass, "۰۸"), "08 تأمین‌کنندگان");
  EXPECT_EQ(found(sltClass, "تامين"), "08 تأمین‌کنندگان");
  EXPECT_EQ(found(sltClass, "'; delete from tblAccount --"), "");
  EXPECT_EQ(found(sltClass, std::string("\0\xff%_*", 5)), "");
  sltClass.edited(std::string(10000, 'x'));
  sltClass.press(Key::Enter);
  desktop.settle();
  sltClass.press(Key::Escape);
  EXPECT_TRUE(sltClass.IsEmpty());
  sltClass.setSelectedID(2);
  sltClass.lookCloser();
  desktop.settle();
  EXPECT_EQ(sltClass.detail(), "حساب‌های ریالی و ارزی نزد بانک‌ها");
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(LookupChart, ViewsOfTheHostAreTakenAsTheyAre) {
  database.execute(
      "create view [نماي قرارداد] as select 7 as id, 'پيمان' as name, 3 as Extra union all "
      "select null, 'بي کليد', 0 union all select 9, null, 0;"
      "create view vwNameless as select 1 as ID, 'x' as Title");
  sltClass.setMajorView("dbo.[نماي قرارداد]");
  sltClass.setSelectedID(7);
  EXPECT_EQ(sltClass.SelectedText(), "پيمان");
  sltClass.openList();
  desktop.settle();
  ASSERT_EQ(sltClass.rows().size(), 2U) << "what has no ID can't be picked";
  EXPECT_EQ(sltClass.rows()[0], (ui::LookupRow{.id = 9, .text = "", .code = ""}));
  EXPECT_EQ(sltClass.highlighted(), 1);
  sltClass.setMajorView("vwNameless");
  EXPECT_EQ(notices.taken(), "");
  sltClass.openList();
  desktop.settle();
  EXPECT_EQ(notices.taken(), "خطا|نماي «vwNameless» ستونهاي ID و Name را ندارد.");
  sltClass.press(Key::Escape);
}

TEST_F(LookupChart, EveryAccountComesOnceAsOneScrolls) {
  // Many of one code, as they stand in the middle of a recoding.
  database.execute(
      "with recursive n(i) as (select 1 union all select i + 1 from n where i < 420) "
      "insert into tblAccount (Code, Title) "
      "select case when i between 90 and 320 then '9500' else '9' || (1000 + i) end, 'پيمانکار ' || i from "
      "n");
  for (const std::string text : {"کار", "95"}) {
    sltAccount.type(text);
    desktop.settle();
    std::size_t pages = 1;
    while (sltAccount.hasMore() && pages < 10) {
      sltAccount.reachedEnd();
      desktop.settle();
      ++pages;
    }
    EXPECT_GT(pages, 2U);
    const bool asCode = sltAccount.rows()[15].code.starts_with(text);
    EXPECT_EQ(asCode, text == "95") << "the codes that begin so come first";
    std::set<std::int32_t> seen;
    for (const ui::LookupRow& row : sltAccount.rows()) seen.insert(row.id);
    EXPECT_EQ(seen.size(), sltAccount.rows().size());
    EXPECT_EQ(static_cast<std::int64_t>(seen.size()),
              database.number("select count(*) from tblAccount where Code || ' ' || "
                              "replace(replace(Title, '‌', ''), 'ك', 'ک') like '%" +
                              text + "%'"));
    sltAccount.press(Key::Escape);
  }
}

TEST_F(LookupChart, AnAccountThatIsGoneLeavesThePickerEmpty) {
  const auto id = static_cast<std::int32_t>(database.number(
      "select max(ID) from tblAccount a where not exists (select 1 from tblAccountDocumentDetail "
      "d where d.AccountID = a.ID)"));
  sltAccount.setAccountID(id);
  EXPECT_EQ(sltAccount.AccountCode(),
            database.text("select Code from tblAccount where ID = " + std::to_string(id)));
  EXPECT_EQ(sltAccount.text(), sltAccount.AccountTitle());
  // The whole code finds its account ahead of all that hold it, and Enter needs no look at the list.
  const std::string code = database.text("select Code from tblAccount where ParentID is null order by Code");
  sltAccount.type(code);
  sltAccount.press(Key::Enter);
  desktop.settle();
  EXPECT_EQ(sltAccount.AccountCode(), code);

  sltAccount.setAccountID(id);
  database.execute("delete from tblAccount where ID = " + std::to_string(id));
  sltAccount.ReloadAccounts();
  EXPECT_TRUE(sltAccount.IsEmpty());
  EXPECT_EQ(sltAccount.AccountID(), -1);
  EXPECT_EQ(sltAccount.AccountCode(), "");
  EXPECT_EQ(notices.taken(), "");
}

}  // namespace
}  // namespace ledgertree::shell
