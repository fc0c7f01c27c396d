// Bulk work compared with the bare library: recoding 10,000 children and deleting 10,000 accounts in a batch,
// on charts of a thousand to a million other accounts, with and without syncing to disk. The bare side runs
// the same statements, prepared once, each in its own transaction.

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "batch/account_batch.h"
#include "coding/recoding/auto_codding.h"
#include "db/schema.h"
#include "engines/sqlite/embedded_engine.h"
#include "support/generated_chart.h"
#include "support/idle_desktop.h"
#include "support/scratch_database.h"
#include "support/side_by_side.h"
#include "support/yes_sayer.h"

namespace ledgertree::bench {
namespace {

/// Two top-level accounts with `children` each: one for the product, one for the bare library.
class Chart {
 public:
  Chart(std::int32_t others, std::int32_t children, bool synced)
      : scratch_("batch-" + std::to_string(others),
                 synced ? ScratchDatabase::Storage::Disk : ScratchDatabase::Storage::Memory),
        children_(children) {
    SQLite::Database database = scratch_.open();
    generateChart(database, {.accounts = others, .topLevel = 10, .fanOut = 10});
    for (const std::int32_t mother : {kMother, kOtherMother}) {
      database.exec("insert into tblAccount (ID, Code, Title) values (" + std::to_string(mother) + ", '" +
                    std::to_string(mother / kMother) + "X', 'mother')");
      fill(database, mother);
    }
  }

  static constexpr std::int32_t kMother = 100000000;
  static constexpr std::int32_t kOtherMother = 200000000;

  /// Adds the children of a parent account; their IDs follow the parent's.
  void fill(SQLite::Database& database, std::int32_t mother) const {
    SQLite::Transaction whole(database);
    SQLite::Statement insert(
        database,
        "insert or ignore into tblAccount (ID, ParentID, Code, Title) values (?1 + ?2, ?1, "
        "?3 || printf('%06d', ?2), 'child')");
    for (std::int32_t child = 1; child <= children_; ++child) {
      insert.bind(1, mother);
      insert.bind(2, child);
      insert.bind(3, std::to_string(mother / kMother) + "X");
      insert.exec();
      insert.reset();
    }
    whole.commit();
  }
  [[nodiscard]] std::int32_t children() const { return children_; }
  [[nodiscard]] const ScratchDatabase& scratch() const { return scratch_; }

 private:
  ScratchDatabase scratch_;
  std::int32_t children_;
};

/// The product and the bare library on one chart.
class Bench {
 public:
  explicit Bench(const Chart& chart) : bare(chart.scratch().open()) {
    engines::sqlite::registerEmbedded(shell.providers);
    shell.components.add("NoticeKit.NoticeDialog", [] { return std::make_unique<YesSayer>(); });
    shell.context.gConnectionString = chart.scratch().connectionText();
    shell.pickerConnection = shell.context.gConnectionString;
    shell.resetDataConnection();
    db::openSchema(bare);
    bare.exec("pragma synchronous = full");
  }
  /// Each statement in its own transaction, as the product runs them.
  void eachByHand(const std::string& query, SQLite::Statement& change, const std::function<void(int)>& bind) {
    SQLite::Statement rows(bare, query);
    std::vector<std::int32_t> ids;
    while (rows.executeStep()) ids.push_back(rows.getColumn(0).getInt());
    for (const std::int32_t id : ids) {
      bind(id);
      change.exec();
      change.reset();
    }
  }

  IdleDesktop desktop;
  shell::Shell shell{desktop};
  SQLite::Database bare;
};

/// 10,000, or 500 where each one costs a disk sync of some milliseconds: more would tell no more.
/// LEDGERTREE_BENCH_ACCOUNTS overrides both.
std::int32_t accounts(bool synced) {
  const char* const wanted = std::getenv("LEDGERTREE_BENCH_ACCOUNTS");
  if (wanted != nullptr) return std::atoi(wanted);
  return synced ? 500 : 10000;
}

const Chart& chartOf(const benchmark::State& state) {
  static std::unique_ptr<Chart> chart;
  static std::pair<std::int64_t, std::int64_t> shape;
  const std::pair<std::int64_t, std::int64_t> wanted{state.range(0), state.range(1)};
  if (!chart || shape != wanted) {
    chart.reset();
    const bool synced = state.range(1) != 0;
    chart = std::make_unique<Chart>(static_cast<std::int32_t>(state.range(0)), accounts(synced), synced);
    shape = wanted;
  }
  return *chart;
}

void recode(benchmark::State& state) {
  const Chart& chart = chartOf(state);
  Bench bench(chart);
  coding::frmAutoCodding form(bench.shell);
  form.klmMotherAcc.setAccountID(Chart::kMother);
  form.txtMotherCode.setText("1X");
  SQLite::Statement update(bench.bare, "update tblAccount set Code = ? where ID = ?");
  int round = 0;
  const auto sample = [&] { return std::to_string(100000 + 10000 * (round % 9)); };
  sideBySide(
      state,
      [&] {
        ++round;
        form.txtSimpleCode.setText(sample());
        form.cmdAutoCodding.setEnabled(true);
        form.cmdAutoCodding.click();
      },
      [&] {
        int number = std::stoi(sample());
        bench.eachByHand("select * from tblAccount where ParentID = " + std::to_string(Chart::kOtherMother) +
                             " order by Code",
                         update, [&](int id) {
                           update.bind(1, "2X" + std::to_string(number++));
                           update.bind(2, id);
                         });
      });
  state.counters["us_an_account"] = state.counters["product_us"] / chart.children();
}

void deleteBatch(benchmark::State& state) {
  const Chart& chart = chartOf(state);
  Bench bench(chart);
  batch::frmAccountBatch form(bench.shell);
  form.sltParent.setAccountID(Chart::kMother);
  SQLite::Statement remove(bench.bare, "delete from tblAccount where ID = ?");
  const std::string below =
      "(select ChildID from tblAccountParent where ID = " + std::to_string(Chart::kOtherMother) + ")";
  using Clock = std::chrono::steady_clock;
  std::chrono::duration<double> ours{};
  std::chrono::duration<double> byHand{};
  for (auto turn : state) {
    static_cast<void>(turn);
    chart.fill(bench.bare, Chart::kMother);
    chart.fill(bench.bare, Chart::kOtherMother);
    const auto begin = Clock::now();
    SQLite::Statement lines(bench.bare, "select * from tblAccountDocumentDetail where AccountID in " + below);
    while (lines.executeStep()) continue;
    bench.eachByHand("select * from tblAccount where ID in " + below + " order by NoLevel desc", remove,
                     [&](int id) { remove.bind(1, id); });
    const auto middle = Clock::now();
    form.cmdDelete.click();
    const auto end = Clock::now();
    byHand += middle - begin;
    ours += end - middle;
    state.SetIterationTime(std::chrono::duration<double>(end - middle).count());
  }
  const auto turns = static_cast<double>(state.iterations());
  state.counters["product_us"] = ours.count() / turns * 1e6;
  state.counters["bare_us"] = byHand.count() / turns * 1e6;
  state.counters["ratio"] = ours.count() / byHand.count();
  state.counters["us_an_account"] = ours.count() / turns * 1e6 / chart.children();
  if (bench.bare.execAndGet("select count(*) from tblAccount where ID > 100000000").getInt() != 1)
    state.SkipWithError("not all accounts were deleted");
}

void charts(benchmark::internal::Benchmark* bench) {
  // Other accounts in the chart; 1 to sync to disk.
  bench->Args({1000, 0})
      ->Args({1000000, 0})
      ->Args({1000, 1})
      ->Args({1000000, 1})
      ->UseManualTime()
      ->Iterations(4)
      ->Unit(benchmark::kMillisecond);
}

BENCHMARK(recode)->Apply(charts);
BENCHMARK(deleteBatch)->Apply(charts);

}  // namespace
}  // namespace ledgertree::bench

BENCHMARK_MAIN();
