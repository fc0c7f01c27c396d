// Showing an account compared with the bare library: what showAccount reads, on charts of any size. The bare
// side reads the same ten rows of the same file with statements prepared once, and copies their texts.

#include <SQLiteCpp/SQLiteCpp.h>

#include <array>
#include <map>
#include <memory>
#include <string>

#include "engines/sqlite/embedded_engine.h"
#include "mainform/form/form_main.h"
#include "support/generated_chart.h"
#include "support/idle_desktop.h"
#include "support/scratch_database.h"
#include "support/side_by_side.h"

namespace ledgertree::bench {
namespace {

/// The number of accounts shown in turn: users don't look at just one.
constexpr std::int32_t kShown = 100;

/// A chart whose accounts have a parent, a group, a branch, a cost centre, a class and an object.
class Chart {
 public:
  explicit Chart(std::int32_t accounts) : scratch_("record-" + std::to_string(accounts)) {
    SQLite::Database database = scratch_.open();
    generateChart(database, {.accounts = accounts, .relations = accounts, .objects = accounts});
    database.exec(
        "insert or replace into tblAccountBranch (ID, Code, Name) values (1, '01', 'دفتر مرکزي');"
        "insert or replace into tblAccCostCenter (ID, Code, Name) values (1, '100', 'امور مالي')");
    database.exec(
        "update tblAccount set GroupID = 1, BranchID = 1, PositionID = 1, MaxDebit = 15000000,"
        " Notes = 'مانده اين حساب هر ماه با صورت حساب بانک مقابله مي شود' where ID between 11 and 200");
  }

  static const Chart& of(std::int64_t accounts) {
    static std::map<std::int64_t, std::unique_ptr<Chart>> charts;
    auto& chart = charts[accounts];
    if (!chart) chart = std::make_unique<Chart>(static_cast<std::int32_t>(accounts));
    return *chart;
  }

  [[nodiscard]] const ScratchDatabase& scratch() const { return scratch_; }

 private:
  ScratchDatabase scratch_;
};

/// One account by hand: its row, the texts of what it refers to, its relation and that one's texts.
class BareRecord {
 public:
  explicit BareRecord(const std::string& file) : database_(file, SQLite::OPEN_READWRITE) {}

  void show(std::int32_t id) {
    const auto account = read(account_, id);
    read(picker_, id);
    read(picker_, std::stoi(account[1]));
    read(group_, std::stoi(account[5]));
    read(branch_, std::stoi(account[6]));
    read(position_, std::stoi(account[7]));
    const auto relation = read(relation_, id);
    read(selectorOfClass_, std::stoi(relation[2]));
    read(class_, std::stoi(relation[2]));
    read(object_, std::stoi(relation[3]));
  }

 private:
  using Fields = std::array<std::string, 21>;

  Fields read(SQLite::Statement& statement, std::int32_t id) {
    Fields fields;
    statement.bind(1, id);
    if (statement.executeStep()) {
      for (int column = 0; column < statement.getColumnCount(); ++column)
        fields[static_cast<std::size_t>(column)] = statement.getColumn(column).getText();
    }
    statement.reset();
    benchmark::DoNotOptimize(fields);
    return fields;
  }

  SQLite::Database database_;
  SQLite::Statement account_{database_, "select * from vwAccount where ID = ?"};
  SQLite::Statement picker_{database_, "select ID, Code, Name from vwAccountMajor where ID = ?"};
  SQLite::Statement group_{database_, "select ID, Code, Name from vwAccountGroup where ID = ?"};
  SQLite::Statement branch_{database_, "select ID, Code, Name from vwAccountBranchMajor where ID = ?"};
  SQLite::Statement position_{database_,
                              "select ID, Code, Name from vwPosition_Employee_Special3 where ID = ?"};
  SQLite::Statement relation_{database_, "select * from tblAccountRelatedObjects where AccountID = ?"};
  SQLite::Statement selectorOfClass_{database_, "select ID, Code, Name from vwAccountClass where ID = ?"};
  SQLite::Statement class_{database_, "select * from tblAccountClass where ID = ?"};
  SQLite::Statement object_{database_, "select ID, Code, Name from vwEntityProject where ID = ?"};
};

void showAccount(benchmark::State& state) {
  const Chart& chart = Chart::of(state.range(0));
  IdleDesktop desktop;
  shell::Shell shell(desktop);
  engines::sqlite::registerEmbedded(shell.providers);
  shell.context.gConnectionString = chart.scratch().connectionText();
  shell.resetDataConnection();
  mainform::FormMain form(shell);
  form.load();
  BareRecord bare(chart.scratch().file());
  sideBySide(
      state,
      [&] {
        for (std::int32_t id = 11; id < 11 + kShown; ++id) form.View(id);
      },
      [&] {
        for (std::int32_t id = 11; id < 11 + kShown; ++id) bare.show(id);
      });
  if (form.sltEntity.IsEmpty() || form.sltPosition.IsEmpty() || form.sltParent.IsEmpty())
    state.SkipWithError("the record is incomplete");
}

BENCHMARK(showAccount)->Arg(1000)->Arg(100000)->Arg(1000000)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace ledgertree::bench

BENCHMARK_MAIN();
