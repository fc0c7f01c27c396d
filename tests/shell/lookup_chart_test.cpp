#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <thread>

#include "shell/lookup/account_picker.h"
#include "shell/lookup/selector.h"
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
  /// Waits until the searches have their rows, which a server finds in the background.
  void settle() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    for (;;) {
      desktop.settle();
      const bool searching = sltClass.searching() || sltAccount.searching();
      if (!searching || std::chrono::steady_clock::now() > end) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  /// What the list shows for a text: at most three codes and names.
  std::string found(ui::LookupField& field, const std::string& text) {
    field.type(text);
    settle();
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
  EXPECT_EQ(found(sltClass, "۰۸"), database.letters("08 تأمین‌کنندگان"));
  EXPECT_EQ(found(sltClass, "تامين"), database.letters("08 تأمین‌کنندگان"));
  database.execute(
      "insert into tblAccount (Code, Title) values ('1حيك', 'x'), ('حيك', 'y'), ('حيك9', 'z'), "
      "('1', 'حيکها'), ('0', 'نو حيکها')");
  EXPECT_EQ(found(sltAccount, "حیک "), "حيك y, حيك9 z, 1 حيکها") << "the code, what begins, the title";
  EXPECT_EQ(found(sltAccount, "حيكها"), "1 حيکها, 0 نو حيکها");
  EXPECT_EQ(found(sltClass, "'; delete from tblAccount --"), "");
  EXPECT_EQ(found(sltClass, std::string("\0\xff%_*", 5)), "");
  sltClass.edited(std::string(10000, 'x'));
  sltClass.press(Key::Enter);
  settle();
  sltClass.press(Key::Escape);
  EXPECT_TRUE(sltClass.IsEmpty());
  sltClass.setSelectedID(2);
  sltClass.lookCloser();
  settle();
  EXPECT_EQ(sltClass.detail(),
            database.letters("حساب‌های ریالی و ارزی نزد بانک‌ها"));
  EXPECT_EQ(notices.taken(), "");
}

TEST_F(LookupChart, ViewsOfTheHostAreTakenAsTheyAre) {
  database.execute(
      "create table tblContract (id int null, name varchar(20) null, Extra int null);"
      "insert into tblContract values (7, 'پيمان', 3), (null, 'بي کليد', 0), (9, null, 0);"
      "create view [نماي قرارداد] as select * from tblContract;"
      "create view vwNameless as select 1 as ID, 'x' as Title");
  const std::string host = testing::onServer() ? database.text("select db_name()") : "Host";
  sltClass.setMajorView("[" + host + "].dbo.[نماي قرارداد]");
  sltClass.setSelectedID(7);
  EXPECT_EQ(sltClass.SelectedText(), "پيمان");
  sltClass.openList();
  settle();
  ASSERT_EQ(sltClass.rows().size(), 2U) << "what has no ID can't be picked";
  EXPECT_EQ(sltClass.rows()[0], (ui::LookupRow{.id = 9, .text = "", .code = ""}));
  EXPECT_EQ(sltClass.highlighted(), 1);
  sltClass.press(Key::Escape);
  database.execute("insert into tblContract values (3, 'نو پيمان', 0), (4, 'پيمانکار', 0)");
  EXPECT_EQ(found(sltClass, "پیمان"), " پيمان,  پيمانکار,  نو پيمان") << "what begins so";
  sltClass.setMajorView("vwNameless");
  EXPECT_EQ(notices.taken(), "");
  sltClass.openList();
  settle();
  EXPECT_EQ(notices.taken(), "خطا|نماي «vwNameless» ستونهاي ID و Name را ندارد.");
  sltClass.press(Key::Escape);
}

TEST_F(LookupChart, EveryAccountComesOnceAsOneScrolls) {
  // Several with one code, as in the middle of a recoding.
  database.insertMany("tblAccount (Code, Title)", 1, 420, [](int i) {
    // Those that contain 95 elsewhere come before those that begin with it.
    const std::string code = i < 90    ? "195" + std::to_string(i)
                             : i > 320 ? std::to_string(91000 + i)
                                       : "9500";
    return "'" + code + "', 'پيمانکار " + std::to_string(i) + "'";
  });
  for (const std::string text : {"کار", "95"}) {
    sltAccount.type(text);
    settle();
    std::size_t pages = 1;
    while (sltAccount.hasMore() && pages < 10) {
      sltAccount.reachedEnd();
      settle();
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

TEST_F(LookupChart, AnAccountThatIsGoneStaysAsItsNumber) {
  const auto id = static_cast<std::int32_t>(database.number(
      "select max(ID) from tblAccount a where not exists (select 1 from tblAccountDocumentDetail "
      "d where d.AccountID = a.ID)"));
  sltAccount.setAccountID(id);
  EXPECT_EQ(sltAccount.AccountCode(),
            database.text("select Code from tblAccount where ID = " + std::to_string(id)));
  EXPECT_EQ(sltAccount.text(), sltAccount.AccountTitle());
  // The whole code finds its account before all others that contain it, and Enter needs no look at the list.
  const std::string code = database.text("select Code from tblAccount where ParentID is null order by Code");
  sltAccount.type(code);
  sltAccount.press(Key::Enter);
  settle();
  EXPECT_EQ(sltAccount.AccountCode(), code);

  sltAccount.setAccountID(id);
  database.execute("delete from tblAccount where ID = " + std::to_string(id));
  sltAccount.ReloadAccounts();
  EXPECT_EQ(sltAccount.AccountID(), id);
  EXPECT_EQ(sltAccount.text() + sltAccount.AccountCode(), std::to_string(id) + " (در فهرست نيست)");
  EXPECT_EQ(notices.taken(), "");
}

}  // namespace
}  // namespace ledgertree::shell
