#include "pactkit/cost_centers.h"

#include <filesystem>
#include <utility>

#include "data/data_error.h"
#include "support/faulty_connection.h"
#include "support/given.h"
#include "support/screen_walk.h"
#include "support/test_house.h"

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
  /// A section of components/cost_centers.txt. Seen: the rows, the current one in brackets, the contents of
  /// the fields, and the disabled commands; reported: also what changed in the database.
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
          for (const auto* command : {&form.cmdNew, &form.cmdSave, &form.cmdDelete})
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

TEST_F(CostCentersStory, LettersAreCounted) {
  std::string letters;
  for (int letter = 0; letter < 100; ++letter) letters += "ن";
  const std::pair<std::string, std::string> tooLong[] = {
      {std::string(21, '1'), "x"}, {"1", letters + "x"}, {"1", std::string(10000, 'x')}};
  const auto enter = [&](const std::string& code, const std::string& name) {
    form.txtCode.setText(code);
    form.txtName.setText(name);
    return toldBy(form.cmdSave);
  };
  for (const auto& [code, name] : tooLong)
    EXPECT_EQ(enter(code, name), "اشکال|كد بيش از 20 حرف يا نام بيش از 100 حرف دارد. آن را کوتاه نماييد.");
  EXPECT_EQ(enter(std::string(20, '1'), letters), "");
  EXPECT_EQ(database.rows("select length(Name) from tblAccCostCenter order by ID"), "100\n4");
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
