#include "pactkit/cost_centers.h"

#include <filesystem>

#include "data/data_error.h"
#include "support/faulty_connection.h"
#include "support/given.h"
#include "support/test_house.h"

namespace ledgertree::testing {
namespace {

using pactkit::CostCenters;

class CostCentersStory : public TestHouse {
 protected:
  CostCentersStory() {
    faults.putInto(shell.providers);
    shell.resetDataConnection();
    database.execute(
        "insert into tblAccCostCenter (ID, Code, Name) values (1, '100', 'مالي'), (2, '200', 'فروش');"
        "insert into tblAccount (ID, Code, Title, PositionID) values (5, '1', 'x', 2)");
    form.open();
    desktop.show(form);
  }
  void type(const std::string& code, const std::string& name) {
    form.txtCode.paste(code);
    form.txtName.paste(name);
  }
  std::string rows() { return database.rows("select ID, Code, Name from tblAccCostCenter order by ID"); }
  std::string onScreen() const {
    std::string text;
    for (int row = 0; row < form.grid.rowCount(); ++row)
      text += (row == form.grid.currentRow() ? ">" : "") + form.grid.text(row, 0) + " " +
              form.grid.text(row, 1) + "\n";
    return text;
  }

  Faults faults;
  CostCenters form{shell};
};

TEST_F(CostCentersStory, AddsRenamesAndRemoves) {
  EXPECT_EQ(onScreen(), ">100 مالي\n200 فروش\n");
  type(" 150 ", "  o'neill ");
  form.cmdAdd.click();
  EXPECT_EQ(onScreen(), "100 مالي\n>150 o'neill\n200 فروش\n");
  EXPECT_EQ(form.txtName.text(), "o'neill");
  type("300", "بازرگاني");
  form.cmdRename.click();
  EXPECT_EQ(onScreen(), "100 مالي\n200 فروش\n>300 بازرگاني\n");
  EXPECT_EQ(rows(), "1|100|مالي\n2|200|فروش\n3|300|بازرگاني");

  EXPECT_EQ(toldBy(form.cmdDelete), "حذف مركز هزينه|آيا از حذف مركز هزينه «بازرگاني» اطمينان داريد؟");
  EXPECT_EQ(form.grid.rowCount(), 3) << "an answer that isn't yes";
  notices.answer(1);
  form.cmdDelete.click();
  EXPECT_EQ(onScreen(), ">100 مالي\n200 فروش\n");
  notices.take();

  form.grid.selectRow(1);
  EXPECT_EQ(form.txtCode.text(), "200");
  notices.answer(1);
  form.cmdDelete.click();
  EXPECT_EQ(notices.take().back().message,
            "مركز هزينه «فروش» به حسابها منتسب است. بنابراين امکان حذف آن وجود ندارد.");
  EXPECT_EQ(onScreen(), "100 مالي\n>200 فروش\n");
}

TEST_F(CostCentersStory, RefusesWhatCantBeStored) {
  for (const auto& [code, name] : {std::pair<std::string, std::string>{"1", "  "},
                                   {"200", "دوباره"},
                                   {std::string(21, '1'), "x"},
                                   {"1", std::string(10000, 'x')}}) {
    form.txtCode.setText(code);
    form.txtName.setText(name);
    form.cmdRename.click();
    form.cmdAdd.click();
    EXPECT_EQ(notices.take().size(), 2U) << code << name.substr(0, 5);
  }
  EXPECT_EQ(rows(), "1|100|مالي\n2|200|فروش");
  type("100", "امور مالي");
  EXPECT_EQ(toldBy(form.cmdRename), "") << "its own code is no other's";

  faults.failWhere("Insert Into");
  type("400", "y");
  EXPECT_EQ(toldBy(form.cmdAdd), std::string("خطا|") + std::string(Faults::kMessage));
  EXPECT_EQ(form.txtName.text(), "y") << "what was typed stays";
  faults.heal();
  form.cmdAdd.click();
  EXPECT_EQ(form.grid.rowCount(), 3);

  // Nothing is left to rename or remove.
  database.execute("delete from tblAccCostCenter");
  form.open();
  EXPECT_FALSE(form.cmdRename.enabled());
  EXPECT_FALSE(form.cmdDelete.enabled());
}

TEST_F(CostCentersStory, ALostFileIsToldAndNeverMadeAnew) {
  if (onServer()) GTEST_SKIP() << "it is about a file";
  shell::Shell own(desktop);
  own.providers = components::engines();
  own.context.gConnectionString = shell.context.gConnectionString;
  own.resetDataConnection();
  CostCenters opened(own);
  const std::filesystem::path away = database.file().string() + ".away";
  std::filesystem::rename(database.file(), away);
  EXPECT_THROW(opened.open(), data::DataError);
  EXPECT_THROW(opened.open(), data::DataError) << "a second look makes it no better";
  EXPECT_FALSE(std::filesystem::exists(database.file()));
  std::filesystem::rename(away, database.file());
  opened.open();
  EXPECT_EQ(opened.grid.rowCount(), 2);
}

}  // namespace
}  // namespace ledgertree::testing
