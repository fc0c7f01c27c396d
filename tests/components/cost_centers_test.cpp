#include "pactkit/cost_centers.h"

#include <filesystem>
#include <sstream>
#include <utility>

#include "data/data_error.h"
#include "support/faulty_connection.h"
#include "support/given.h"
#include "support/screen_walk.h"
#include "support/test_house.h"
#include "support/text_table.h"

namespace ledgertree::testing {
namespace {

using pactkit::CostCenters;

class CostCentersStory : public FaultyHouse {
 protected:
  CostCentersStory() {
    database.execute(
        "insert into tblAccCostCenter (ID, Code, Name) values (1, '100', 'مالي'), (2, '200', 'فروش');"
        "insert into tblAccount (ID, Code, Title, PositionID) values (5, '1', 'x', 2)");
    form.open();
    desktop.show(form);
    person.acts["sql"] = [this](auto& statement) { database.execute(statement), form.open(); };
  }
  /// A section of components/cost_centers.txt. Seen are the rows, the current one in brackets, what stands in
  /// the fields, and the commands out of reach; told is what is stored too, where it changed.
  void walk(const std::string& section) {
    person.go(
        "components/cost_centers.txt", section,
        [this] {
          std::string text;
          for (int row = 0; row < form.grid.rowCount(); ++row) {
            const std::string line = form.grid.text(row, 0) + " " + form.grid.text(row, 1);
            text += (row == form.grid.currentRow() ? "[" + line + "]" : line) + ", ";
          }
          text += "«" + form.txtCode.text() + "» «" + form.txtName.text() + "»";
          for (const auto* command : {&form.cmdAdd, &form.cmdRename, &form.cmdDelete})
            if (!command->enabled()) text += " !" + command->caption();
          return text;
        },
        [this] {
          const std::string now =
              database.rows("select Code, Name from tblAccCostCenter order by Code, Name");
          return now == std::exchange(stored, now) ? "" : "stored <" + now + ">";
        });
  }

  CostCenters form{shell};
  std::string stored;
};

TEST_F(CostCentersStory, AddsRenamesAndRemovesAndRefusesWhatCantBeStored) {
  walk("added, renamed and removed");
  walk("refused");
}

TEST_F(CostCentersStory, TheScreenIsAsItIsDescribed) {
  EXPECT_EQ(form.name() + " " + form.caption(), "frmCostCenters مراكز هزينه");
  EXPECT_EQ(form.designSize(), (ui::Size{7800, 5700}));
  const auto described = tableOf("components/cost_centers.txt", "controls");
  ASSERT_EQ(form.controls().size(), described.size());
  for (std::size_t place = 0; place < described.size(); ++place) {
    const ui::Control& control = *form.controls()[place];
    const auto* button = dynamic_cast<const ui::PushButton*>(&control);
    const auto* label = dynamic_cast<const ui::Label*>(&control);
    const auto& [left, top, width, height] = control.bounds();
    std::ostringstream bounds;
    bounds << left << " " << top << " " << width << " " << height;
    const std::vector<std::string> row{control.name(),
                                       button != nullptr  ? button->caption()
                                       : label != nullptr ? label->caption()
                                                          : control.accessibleName(),
                                       bounds.str(), button != nullptr ? button->shortcut().text() : ""};
    EXPECT_EQ(row, described[place]);
    EXPECT_TRUE(control.withinReach()) << row[0];
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

TEST_F(CostCentersStory, LettersAreCounted) {
  std::string letters;
  for (int letter = 0; letter < 100; ++letter) letters += "ن";
  const std::pair<std::string, std::string> tooLong[] = {
      {std::string(21, '1'), "x"}, {"1", letters + "x"}, {"1", std::string(10000, 'x')}};
  const auto enter = [&](const std::string& code, const std::string& name, ui::PushButton& command) {
    form.txtCode.setText(code);
    form.txtName.setText(name);
    return toldBy(command);
  };
  for (const auto& [code, name] : tooLong)
    for (auto* command : {&form.cmdRename, &form.cmdAdd})
      EXPECT_EQ(enter(code, name, *command),
                "اشکال|كد بيش از 20 حرف يا نام بيش از 100 حرف دارد. آن را کوتاه نماييد.");
  EXPECT_EQ(enter(std::string(20, '1'), letters, form.cmdAdd), "");
  EXPECT_EQ(database.rows("select length(Name) from tblAccCostCenter order by ID"), "4\n4\n100");
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
