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
  type("50", "فروش");
  form.cmdAdd.click();
  EXPECT_EQ(onScreen(), "100 مالي\n200 فروش\n>50 فروش\n") << "the new one of a name";
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

TEST_F(CostCentersStory, TheScreenIsAsItIsDescribed) {
  const struct {
    const char* name;
    const char* caption;
    ui::Bounds bounds;
    const char* keys;
  } controls[] = {{"flxCostCenters", "مراكز هزينه", {225, 225, 7350, 3600}, ""},
                  {"lblCode", "كد:", {6450, 4005, 1125, 270}, ""},
                  {"txtCode", "كد", {4650, 3975, 1725, 330}, ""},
                  {"lblName", "نام:", {6450, 4470, 1125, 270}, ""},
                  {"txtName", "نام", {225, 4440, 6150, 330}, ""},
                  {"cmdAdd", "جديد", {6075, 5070, 1500, 405}, "Ctrl+N"},
                  {"cmdRename", "اصلاح", {4425, 5070, 1500, 405}, "Ctrl+E"},
                  {"cmdDelete", "حذف", {2775, 5070, 1500, 405}, "Ctrl+D"},
                  {"cmdExit", "خروج", {225, 5070, 1500, 405}, ""}};
  EXPECT_EQ(form.name() + " " + form.caption(), "frmCostCenters مراكز هزينه");
  EXPECT_EQ(form.designSize(), (ui::Size{7800, 5700}));
  ASSERT_EQ(form.controls().size(), std::size(controls));
  for (std::size_t place = 0; place < std::size(controls); ++place) {
    const ui::Control& control = *form.controls()[place];
    const auto& [name, caption, bounds, keys] = controls[place];
    const auto* button = dynamic_cast<const ui::PushButton*>(&control);
    const auto* label = dynamic_cast<const ui::Label*>(&control);
    EXPECT_EQ(control.name(), name);
    EXPECT_EQ(button != nullptr  ? button->caption()
              : label != nullptr ? label->caption()
                                 : control.accessibleName(),
              caption);
    EXPECT_EQ(control.bounds(), bounds) << name;
    EXPECT_EQ(button != nullptr ? button->shortcut().text() : "", keys) << name;
    EXPECT_TRUE(control.withinReach()) << name;
  }
  std::string columns;
  for (const auto& column : form.grid.columns())
    columns += column.header + " " + std::to_string(column.width) + ";";
  EXPECT_EQ(columns, "كد 1500;نام 5500;ش.ر. 0;");
  EXPECT_EQ(form.firstFocus(), &form.grid);
  EXPECT_EQ(form.txtCode.maximumLength(), 20U);
  EXPECT_EQ(form.txtName.maximumLength(), 100U);
  EXPECT_TRUE(form.txtCode.latinDigits() && form.txtCode.leftToRight() && !form.txtName.leftToRight());
  desktop.layouts.clear();
  form.txtCode.focus();
  form.txtName.focus();
  EXPECT_EQ(desktop.layouts, std::vector<std::string>{shell.context.gKeyboardLayout});
  EXPECT_TRUE(form.press({.key = ui::Key::Escape}));
  EXPECT_TRUE(desktop.shownForms.empty());
}

TEST_F(CostCentersStory, LettersAreCountedAndEachRefusalSaysWhy) {
  const std::string letters = [] {
    std::string text;
    for (int letter = 0; letter < 100; ++letter) text += "ن";
    return text;
  }();
  const std::string tooLong = "اشکال|كد بيش از 20 حرف يا نام بيش از 100 حرف دارد. آن را کوتاه نماييد.";
  for (const auto& [code, name, told] :
       {std::tuple<std::string, std::string, std::string>{"1", "  ", "اشکال|نام مركز هزينه را وارد نماييد."},
        {"200", "ديگر", "اشکال|مركز هزينه ديگري با اين كد وجود دارد."},
        {std::string(21, '1'), "x", tooLong},
        {"1", letters + "x", tooLong},
        {std::string(20, '1'), letters, ""},
        {"", "بي كد", ""},
        {"", "بي كد هم", ""}}) {
    form.txtCode.setText(code);
    form.txtName.setText(name);
    form.cmdAdd.click();
    EXPECT_EQ(notices.taken(), told) << code;
  }
  EXPECT_EQ(form.grid.rowCount(), 5);
  EXPECT_EQ(form.txtName.text(), "بي كد هم") << "the new one is selected";
  form.txtName.setText("  ");
  form.cmdRename.click();
  EXPECT_EQ(notices.taken(), "اشکال|نام مركز هزينه را وارد نماييد.");
  EXPECT_EQ(database.rows("select length(Name) from tblAccCostCenter order by ID"), "4\n4\n100\n5\n8");
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
