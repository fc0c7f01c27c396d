// Filling and emptying a whole period through its screens, from the click to the row on disk, compared with
// the best hand-written statement for the same rows, on the same file in the same run.

#include <SQLiteCpp/SQLiteCpp.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>
#include <memory>
#include <string>

#include "engines/sqlite/embedded_engine.h"
#include "periods/copy_period.h"
#include "periods/delete_period.h"
#include "shell/shell.h"
#include "support/generated_chart.h"
#include "support/idle_desktop.h"
#include "support/scratch_database.h"
#include "support/yes_sayer.h"

namespace {

using namespace ledgertree;

constexpr int kAccounts = 200'000;
constexpr int kLines = 100'000;

/// Where the document lines are.
enum Lines { kEverywhere, kInAnotherPeriod, kOnOneAccount, kOnFewAccounts };

/// A chart of ten children an account, with two periods and ten lines a document.
class Chart {
 public:
  Chart() {
    other_.exec("pragma synchronous = off");
    bench::generateChart(other_, {.accounts = kAccounts, .periods = {kAccounts, 0}});
    engines::sqlite::registerEmbedded(shell.providers);
    shell.components.add("NoticeKit.NoticeDialog", [] { return std::make_unique<bench::YesSayer>(); });
    shell.context.gConnectionString = scratch_.connectionText();
    shell.resetDataConnection();
  }

  void putLines(Lines lines) {
    const char* account[] = {"1 + i * 2 % 200000", "1 + i * 2 % 200000", "199999", "199000 + i % 100"};
    other_.exec(
        "begin; delete from tblAccountDocumentDetail; delete from tblAccountDocument;"
        "with recursive n(i) as (select 1 union all select i + 1 from n where i < " +
        std::to_string(kLines / 10) + ") insert into tblAccountDocument (ID, FarsiDocumentDate) select i, '" +
        (lines == kEverywhere || lines == kOnFewAccounts ? "1402" : "1403") +
        "' || printf('/%02d/%02d', 1 + i % 12, 1 + i % 29) from n;"
        "with recursive n(i) as (select 1 union all select i + 1 from n where i < " +
        std::to_string(kLines) +
        ") insert into tblAccountDocumentDetail (DocumentID, AccountID) select 1 + (i - 1) / 10, " +
        account[lines] + " from n; commit");
  }
  /// The whole chart in period 1, no account in period 2.
  void putMembers() {
    other_.exec(
        "begin; delete from tblAccountPeriodAccount; insert into tblAccountPeriodAccount (AccountID,"
        " PeriodID) select ID, 1 from tblAccount; commit; pragma wal_checkpoint(truncate)");
  }
  std::int64_t members() {
    return other_.execAndGet("select count(*) * 1000 + max(PeriodID) from tblAccountPeriodAccount")
        .getInt64();
  }
  /// A bare connection that syncs its writes, as the screen's does.
  SQLite::Database openDurable() {
    SQLite::Database database = scratch_.open();
    database.exec("pragma foreign_keys = on; pragma synchronous = full");
    return database;
  }

  bench::IdleDesktop desktop;
  shell::Shell shell{desktop};

 private:
  bench::ScratchDatabase scratch_{"periods"};
  SQLite::Database other_ = scratch_.open();
};

Chart& chart() {
  static Chart chart;
  return chart;
}

using Statements = std::vector<std::string>;

/// Alternates the screen and the hand-written variants, and reports the ratio of their best times.
void compare(benchmark::State& state, const std::function<void()>& screen,
             const std::vector<Statements>& byHand) {
  chart().putMembers();
  SQLite::Database bare = chart().openDurable();
  const auto measured = [](const std::function<void()>& work) {
    chart().putMembers();
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  };
  // The best of several runs: noise from the machine only adds time.
  double own = std::numeric_limits<double>::max();
  double best = own;
  for (auto _ : state) {
    for (const Statements& way : byHand) {
      best = std::min(best, measured([&] {
                        for (const std::string& statement : way) bare.exec(statement);
                      }));
    }
    const auto expected = chart().members();
    const double seconds = measured(screen);
    own = std::min(own, seconds);
    state.SetIterationTime(seconds);
    if (chart().members() != expected) state.SkipWithError("the rows differ from those by hand");
  }
  state.counters["best_ms"] = own * 1e3;
  state.counters["bare_ms"] = best * 1e3;
  state.counters["ratio"] = own / best;
}

void copyPeriod(benchmark::State& state) {
  compare(state,
          [] {
            periods::FormCopyPeriodAccount form(chart().shell);
            form.sltPeriodFrom.setSelectedID(1);
            form.sltPeriodTo.setSelectedID(2);
            form.cmdAutoCodding.click();
          },
          {{"insert into tblAccountPeriodAccount (AccountID, PeriodID) select m.AccountID, 2 from"
            " tblAccountPeriodAccount m where m.PeriodID = 1 and not exists (select 1 from "
            "tblAccountPeriodAccount x"
            " where x.PeriodID = 2 and x.AccountID = m.AccountID)"}});
}

void copyChart(benchmark::State& state) {
  compare(state,
          [] {
            periods::FormCopyPeriodAccount form(chart().shell);
            form.sltPeriodTo.setSelectedID(1);
            form.cmdAutoCodding.click();
          },
          {{"delete from tblAccountPeriodAccount where PeriodID = 1",
            "insert into tblAccountPeriodAccount (AccountID, PeriodID) select ID, 1 from tblAccount"}});
}

void hideWithoutDocument(benchmark::State& state) {
  chart().putLines(static_cast<Lines>(state.range(0)));
  compare(
      state,
      [] {
        periods::FormDeletePeriod form(chart().shell);
        form.sltPeriodFrom.setSelectedID(1);
        form.cmdDeletePossible.click();
      },
      {{"with used(ID) as (select dd.AccountID from tblAccountPeriod p"
        "  cross join tblAccountDocument d on d.FarsiDocumentDate between p.FarsiBeginDate and p.FarsiEndDate"
        "  cross join tblAccountDocumentDetail dd on dd.DocumentID = d.ID where p.ID = 1) "
        "delete from tblAccountPeriodAccount where PeriodID = 1 and AccountID not in"
        " (select ID from used union select a.ID from used u cross join tblAccountParent a on a.ChildID = "
        "u.ID)"},
       {"delete from tblAccountPeriodAccount where PeriodID = 1"
        " and not exists (select 1 from tblAccountDocumentDetail dd cross join tblAccountDocument d"
        " on d.ID = dd.DocumentID cross join tblAccountPeriod p on p.ID = 1 and d.FarsiDocumentDate between"
        " p.FarsiBeginDate and p.FarsiEndDate where dd.AccountID = tblAccountPeriodAccount.AccountID)"
        " and not exists (select 1 from tblAccountParent a cross join tblAccountDocumentDetail dd"
        " on dd.AccountID = a.ChildID cross join tblAccountDocument d on d.ID = dd.DocumentID"
        " cross join tblAccountPeriod p on p.ID = 1 and d.FarsiDocumentDate between p.FarsiBeginDate and"
        " p.FarsiEndDate where a.ID = tblAccountPeriodAccount.AccountID)"}});
}

BENCHMARK(copyPeriod)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(copyChart)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(hideWithoutDocument)
    ->ArgName("lines")
    ->DenseRange(kEverywhere, kOnFewAccounts)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
