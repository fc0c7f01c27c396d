// The tree beside the bare library: a level of 1,000 children, and the way from ClearShow to the first level
// on charts of any size. The bare side reads the same rows and counts with statements that are prepared once.

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "engines/sqlite/embedded_engine.h"
#include "ledgertree/ledger_tree_control.h"
#include "mainform/account_tree.h"
#include "shell/control/ledger_tree_control_session.h"
#include "support/generated_chart.h"
#include "support/idle_desktop.h"
#include "support/scratch_database.h"
#include "support/side_by_side.h"

namespace ledgertree::bench {
namespace {

constexpr std::int32_t kLevel = 1000;

/// A chart of ten groups and one period, kept for the length of the run.
class Chart {
 public:
  Chart(std::int32_t accounts, std::int32_t members, std::int32_t fanOut)
      : scratch_("tree-" + std::to_string(accounts) + "-" + std::to_string(members) + "-" +
                 std::to_string(fanOut)) {
    SQLite::Database database = scratch_.open();
    generateChart(database, {.accounts = accounts, .topLevel = 10, .fanOut = fanOut, .periods = {members}});
  }

  /// The chart that a benchmark's arguments name: accounts, members of the period, and the children of a
  /// node.
  static const Chart& of(const benchmark::State& state, std::int32_t fanOut) {
    static std::map<std::tuple<std::int64_t, std::int64_t, std::int32_t>, std::unique_ptr<Chart>> charts;
    auto& chart = charts[{state.range(0), state.range(1), fanOut}];
    if (!chart)
      chart = std::make_unique<Chart>(static_cast<std::int32_t>(state.range(0)),
                                      static_cast<std::int32_t>(state.range(1)), fanOut);
    return *chart;
  }

  [[nodiscard]] std::string file() const { return scratch_.file(); }
  [[nodiscard]] std::string connectionText() const { return scratch_.connectionText(); }

 private:
  ScratchDatabase scratch_;
};

/// The reads of one level by hand: its rows, and for each row the count of its children.
class BareLevel {
 public:
  explicit BareLevel(const std::string& file, std::int32_t period) : database_(file, SQLite::OPEN_READWRITE) {
    const std::string member = period == -1 ? ""
                                            : " and exists (select 1 from tblAccountPeriodAccount x where "
                                              "x.PeriodID = ?2 and x.AccountID = a.ID)";
    rows_ = std::make_unique<SQLite::Statement>(database_,
                                                "select ID, ParentID, IsClosed, AccountNatureID, Code, Title "
                                                "from tblAccount a where ifnull(ParentID, -1) = ?1" +
                                                    member + " order by Code");
    count_ = std::make_unique<SQLite::Statement>(
        database_, "select count(*) from tblAccount a where ifnull(ParentID, -1) = ?1" + member);
    if (period != -1) {
      rows_->bind(2, period);
      count_->bind(2, period);
    }
  }

  void read(std::int32_t parent) {
    rows_->bind(1, parent);
    while (rows_->executeStep()) {
      const std::int32_t account = rows_->getColumn(0);
      benchmark::DoNotOptimize(rows_->getColumn(2).getInt() + rows_->getColumn(3).getInt());
      label_.assign(rows_->getColumn(4).getText()).append(" ... ").append(rows_->getColumn(5).getText());
      count_->bind(1, account);
      count_->executeStep();
      benchmark::DoNotOptimize(count_->getColumn(0).getInt());
      count_->reset();
    }
    rows_->reset();
  }

 private:
  SQLite::Database database_;
  std::unique_ptr<SQLite::Statement> rows_;
  std::unique_ptr<SQLite::Statement> count_;
  std::string label_;
};

class House {
 public:
  explicit House(const Chart& chart) : screen(shell) {
    engines::sqlite::registerEmbedded(shell.providers);
    shell.context.gConnectionString = chart.connectionText();
    shell.resetDataConnection();
    screen.settings.ShowCompleteCode = true;
    tree.refreshTree();
  }

  IdleDesktop desktop;
  shell::Shell shell{desktop};
  mainform::MainScreen screen;
  mainform::AccountTree tree{screen, shell};
};

/// The same statements through the gateway, without a tree.
void readThroughGateway(data::DtEn& gateway, std::int32_t period, std::int32_t parent) {
  const std::string where =
      " where (ID in (Select x.AccountID from tblAccountPeriodAccount x Where x.PeriodID = " +
      std::to_string(period) + ") or -1=" + std::to_string(period) + ")" + " and IsNull(ParentID,-1)=";
  const data::OpenRows rows(gateway.rssqlAccCostCenter,
                            "Select ID,ParentID,IsClosed,AccountNatureID,Code,Title  from tblAccount " +
                                where + std::to_string(parent) + " Order by Code");
  for (; !rows->Eof(); rows->MoveNext()) {
    const data::OpenRows count(gateway.rssqlAccountChilds, "Select count(*) as cnt from tblAccount " + where +
                                                               rows->Fields("ID").toText() + " ");
    benchmark::DoNotOptimize(count->Fields("cnt").toInt64());
  }
}

std::int32_t periodOf(const benchmark::State& state) { return state.range(1) == 0 ? -1 : 1; }

void fillLevelWhole(benchmark::State& state) {
  const Chart& chart = Chart::of(state, kLevel);
  House house(chart);
  ui::Tree& tree = house.screen.treeAccount;
  if (periodOf(state) == 1) {
    house.screen.optPeriodic.setValue(true);
    house.tree.refreshTree();
    tree.expand(tree.find("1:-1"));
  }
  const std::string key = mainform::makeNodeKey(periodOf(state), 1);
  BareLevel bare(chart.file(), periodOf(state));
  sideBySide(
      state,
      [&] {
        const ui::NodeId node = tree.find(key);
        while (!tree.children(node).empty()) tree.remove(tree.children(node).back());
        house.tree.fillNodeChildren(key);
      },
      [&] { bare.read(1); });
}

void fillLevelGatewayOnly(benchmark::State& state) {
  const Chart& chart = Chart::of(state, kLevel);
  House house(chart);
  BareLevel bare(chart.file(), periodOf(state));
  const auto gateway = house.shell.dtEn();
  sideBySide(
      state, [&] { readThroughGateway(*gateway, periodOf(state), 1); }, [&] { bare.read(1); });
}

void clearShowToFirstLevel(benchmark::State& state) {
  const Chart& chart = Chart::of(state, 10);
  ControlSession session(std::make_unique<IdleDesktop>());
  engines::sqlite::registerEmbedded(session.shell().providers);
  LedgerTreeControl control = session.makeControl();
  control.OLEConnectionString(chart.connectionText());
  control.UserID(1);
  sideBySide(
      state,
      [&] {
        control.ClearShow();
        if (state.range(1) != 0) session.form()->optPeriodic.click();
        session.form()->closeByPerson();
      },
      [&] {
        BareLevel bare(chart.file(), -1);
        bare.read(-1);
      });
}

BENCHMARK(fillLevelWhole)
    ->Args({100000, 0})
    ->Args({1000000, 200000})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(fillLevelGatewayOnly)
    ->Args({100000, 0})
    ->Args({1000000, 200000})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(clearShowToFirstLevel)
    ->Args({1000, 0})
    ->Args({100000, 0})
    ->Args({1000000, 0})
    ->Args({1000000, 200000})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace ledgertree::bench

BENCHMARK_MAIN();
