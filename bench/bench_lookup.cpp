// A keystroke in the account picker, from the key to the list that shows its hits, beside a bare search in
// the same rows with SQLite's own interface: the rows in the order of their codes, the letters folded, up to
// as many hits as the list takes.

#include <SQLiteCpp/SQLiteCpp.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engines/sqlite/embedded_engine.h"
#include "shell/lookup/account_picker.h"
#include "shell/shell.h"
#include "support/generated_chart.h"
#include "support/idle_desktop.h"
#include "support/scratch_database.h"
#include "support/side_by_side.h"
#include "text/fold.h"

namespace ledgertree::bench {
namespace {

/// A generated chart, a picker on it, and the bare library beside the picker.
class Chart {
 public:
  explicit Chart(std::int32_t accounts)
      : scratch_("lookup-" + std::to_string(accounts)), database(scratch_.open()) {
    generateChart(database, {.accounts = accounts});
    database.exec(
        "update tblAccount set Title = 'حساب يگانه' where Code = (select max(Code) from tblAccount)");
    engines::sqlite::registerEmbedded(shell.providers);
    picker.setPickerConnection(scratch_.connectionText());
  }

  static Chart& of(std::int32_t accounts) {
    static std::map<std::int32_t, std::unique_ptr<Chart>> charts;
    auto& chart = charts[accounts];
    if (!chart) chart = std::make_unique<Chart>(accounts);
    return *chart;
  }

 private:
  ScratchDatabase scratch_;

 public:
  IdleDesktop desktop;
  shell::Shell shell{desktop};
  ui::Form form{shell.surroundings(), "Form", "", {}};
  shell::AccountPicker picker{form, shell, "sltAccount", {}};
  SQLite::Database database;
};

std::vector<ui::LookupRow> searchByHand(SQLite::Statement& rows, const std::string& text) {
  const std::string needle = text::fold(text);
  std::string folded;
  std::vector<ui::LookupRow> hits;
  const auto holds = [&](const SQLite::Column& column) {
    text::fold({column.getText(), static_cast<std::size_t>(column.getBytes())}, folded);
    return folded.find(needle) != std::string::npos;
  };
  while (hits.size() < shell::LookupSearch::kPageRows && rows.executeStep()) {
    if (!holds(rows.getColumn(1)) && !holds(rows.getColumn(2))) continue;
    hits.push_back(
        {rows.getColumn(0).getInt(), rows.getColumn(2).getString(), rows.getColumn(1).getString()});
  }
  rows.reset();
  return hits;
}

// In many titles, in a few codes and titles, in one title at the end of the chart, and in none.
constexpr const char* kTexts[] = {"بانک", "77", "يگانه", "نيست"};

/// From the key to the list with its hits. `key_us` is the longest that a key waited, `slice_us` the longest
/// that the search kept the thread at a stretch.
void keystroke(benchmark::State& state) {
  Chart& here = Chart::of(static_cast<std::int32_t>(state.range(0)));
  const std::string text = kTexts[state.range(1)];
  SQLite::Statement rows(here.database, "select ID, Code, Title from tblAccount order by Code");
  std::size_t hits = 0;
  std::chrono::duration<double> key{};
  sideBySide(
      state,
      [&] {
        here.picker.press(ui::Key::Escape);
        const auto begin = std::chrono::steady_clock::now();
        here.picker.edited(text);
        key = std::max<std::chrono::duration<double>>(key, std::chrono::steady_clock::now() - begin);
        here.desktop.settle();
        if (here.picker.rows().size() != hits) state.SkipWithError("other rows than by hand");
      },
      [&] { hits = searchByHand(rows, text).size(); });
  state.counters["hits"] = static_cast<double>(hits);
  state.counters["key_us"] = key.count() * 1e6;
  state.counters["slice_us"] = std::chrono::duration<double>(here.desktop.takeLongest()).count() * 1e6;
}

BENCHMARK(keystroke)
    ->ArgNames({"accounts", "text"})
    ->ArgsProduct({{1'000, 100'000, 1'000'000}, {0, 1, 2, 3}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace ledgertree::bench

BENCHMARK_MAIN();
