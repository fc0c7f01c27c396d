// The tree compared with the bare library: a level of 1,000 children, and ClearShow up to the first level on
// charts of any size. The bare side reads the same rows and finds out with one query which of them have
// children, with statements prepared once.

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

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

/// A chart of ten groups and one period, kept for the whole run.
class Chart {
 public:
  Chart(std::int32_t accounts, std::int32_t members, std::int32_t fanOut)
      : scratch_("tree-" + std::to_string(accounts) + "-" + std::to_string(members) + "-" +
                 std::to_string(fanOut)) {
    SQLite::Database database = scratch_.open();
    generateChart(database, {.accounts = accounts, .topLevel = 10, .fanOut = fanOut, .periods = {members}});
  }

  /// The chart for a benchmark's arguments: accounts, members of the period, and the children of a node.
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

/// A level by hand: its rows, and which of them have children, stored as a program would to show them.
class BareLevel {
 public:
  explicit BareLevel(const std::string& file, std::int32_t period)
      : database_(file, SQLite::OPEN_READWRITE), isPeriodic_(period != -1) {
    const auto member = [this](const std::string& account) {
      return isPeriodic_ ? " and exists (select 1 from tblAccountPeriodAccount x where x.PeriodID = ?2 and "
                           "x.AccountID = " +
                               account + ")"
                         : "";
    };
    const std::string level = " from tblAccount a where ifnull(ParentID, -1) = ?1" + member("a.ID");
    const std::string between =
        isPeriodic_ ? " and exists (select 1 from tblAccountPeriodAccount x where x.PeriodID = ?2 and "
                      "x.AccountID between (select min(ID) from tblAccount where ParentID = a.ID) and "
                      "(select max(ID) from tblAccount where ParentID = a.ID))"
                    : "";
    rows_ = prepare("select ID, ParentID, IsClosed, AccountNatureID, Code, Title" + level + " order by Code",
                    period);
    parents_ =
        prepare("select ID" + level + between +
                    " and exists (select 1 from tblAccount c where c.ParentID = a.ID" + member("c.ID") + ")",
                period);
  }

  void read(std::int32_t parent) {
    readParents(*parents_, parent);
    nodes_.clear();
    rows_->bind(1, parent);
    while (rows_->executeStep()) {
      Node& node = nodes_.emplace_back();
      node.account = rows_->getColumn(0);
      node.image = 1 + rows_->getColumn(3).getInt() + 3 * rows_->getColumn(2).getInt();
      node.label.assign(rows_->getColumn(4).getText()).append(" ... ").append(rows_->getColumn(5).getText());
      node.hasChildren = std::binary_search(withChildren_.begin(), withChildren_.end(), node.account);
    }
    rows_->reset();
    benchmark::DoNotOptimize(nodes_.data());
  }

  /// The period view: all periods, and which of them have accounts.
  void readPeriods() {
    SQLite::Statement withAccounts(
        database_,
        "select p.ID from tblAccountPeriod p where exists (select 1 from tblAccount a where "
        "ifnull(ParentID, -1) = ?1 and exists (select 1 from tblAccountPeriodAccount x where x.PeriodID = "
        "p.ID and x.AccountID = a.ID))");
    readParents(withAccounts, -1);
    nodes_.clear();
    SQLite::Statement periods(database_,
                              "select ID, Name from tblAccountPeriod order by FarsibeginDate desc");
    while (periods.executeStep()) {
      Node& node = nodes_.emplace_back();
      node.account = periods.getColumn(0);
      node.label = periods.getColumn(1).getText();
      node.hasChildren = std::binary_search(withChildren_.begin(), withChildren_.end(), node.account);
    }
    benchmark::DoNotOptimize(nodes_.data());
  }

 private:
  struct Node {
    std::int32_t account = 0;
    int image = 0;
    bool hasChildren = false;
    std::string label;
  };

  std::unique_ptr<SQLite::Statement> prepare(const std::string& text, std::int32_t period) {
    auto statement = std::make_unique<SQLite::Statement>(database_, text);
    if (isPeriodic_) statement->bind(2, period);
    return statement;
  }

  void readParents(SQLite::Statement& statement, std::int32_t parent) {
    withChildren_.clear();
    statement.bind(1, parent);
    while (statement.executeStep()) withChildren_.push_back(statement.getColumn(0));
    statement.reset();
    std::sort(withChildren_.begin(), withChildren_.end());
  }

  SQLite::Database database_;
  bool isPeriodic_;
  std::unique_ptr<SQLite::Statement> rows_;
  std::unique_ptr<SQLite::Statement> parents_;
  std::vector<std::int32_t> withChildren_;
  std::vector<Node> nodes_;
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
  const ui::NodeId node = tree.find(key);
  BareLevel bare(chart.file(), periodOf(state));
  // Restores the unopened state.
  const auto close = [&] {
    while (!tree.children(node).empty()) tree.remove(tree.children(node).back());
    tree.setExpanded(node, false);
    tree.add(node, key + "!$@Dummy@$!", "!$@Dummy@$!");
  };
  sideBySide(
      state, [&] { tree.expand(node); }, [&] { bare.read(1); }, close);
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
        if (state.range(1) != 0) bare.readPeriods();
      });
}

BENCHMARK(fillLevelWhole)
    ->Args({100000, 0})
    ->Args({1010010, 0})
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
