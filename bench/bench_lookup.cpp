// A keystroke in the account picker, from the key to the list of hits, compared with a bare search of the
// same rows through SQLite's own interface: rows that begin with the text before the rest, ordered by code,
// letters folded, up to as many hits as the list takes.

#include <SQLiteCpp/SQLiteCpp.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <iterator>
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

/// A generated chart, a picker on it, and the bare library.
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

/// Rows that begin with the text come first: codes, by a range of their index, then titles, found while
/// scanning the accounts; the same scan keeps the first of the rest.
class SearchByHand {
 public:
  explicit SearchByHand(SQLite::Database& database)
      : codes_(database,
               "select ID, Code, Title from tblAccount where Code between ?1 and ?1 || '~' order by Code"),
        rows_(database, "select ID, Code, Title from tblAccount order by Code") {}

  std::vector<ui::LookupRow> find(const std::string& text) {
    const std::string needle = text::fold(text);
    std::vector<ui::LookupRow> hits;
    std::vector<ui::LookupRow> rest;
    for (codes_.bind(1, needle); hits.size() < kMost && codes_.executeStep();) hits.push_back(row(codes_));
    while (hits.size() < kMost && rows_.executeStep()) {
      const std::size_t inCode = placeIn(rows_.getColumn(1), needle);
      const std::size_t inTitle = inCode == 0 ? inCode : placeIn(rows_.getColumn(2), needle);
      if (inCode == 0) continue;
      if (inTitle == 0)
        hits.push_back(row(rows_));
      else if ((inCode != std::string::npos || inTitle != std::string::npos) && rest.size() < kMost)
        rest.push_back(row(rows_));
    }
    codes_.reset();
    rows_.reset();
    rest.resize(std::min(rest.size(), kMost - hits.size()));
    std::move(rest.begin(), rest.end(), std::back_inserter(hits));
    return hits;
  }

 private:
  static constexpr std::size_t kMost = shell::LookupSearch::kPageRows;

  std::size_t placeIn(const SQLite::Column& column, const std::string& needle) {
    text::fold({column.getText(), static_cast<std::size_t>(column.getBytes())}, folded_);
    return folded_.find(needle);
  }
  static ui::LookupRow row(SQLite::Statement& rows) {
    return {rows.getColumn(0).getInt(), rows.getColumn(2).getString(), rows.getColumn(1).getString()};
  }

  SQLite::Statement codes_;
  SQLite::Statement rows_;
  std::string folded_;
};

// Found in many titles, in a few codes and titles, in one title at the end of the chart, and in none.
constexpr const char* kTexts[] = {"بانک", "77", "يگانه", "نيست"};

/// From the key to the list of hits. `key_us` is the longest that a key waited, `slice_us` the longest that
/// the search held the thread without a pause.
void keystroke(benchmark::State& state) {
  Chart& here = Chart::of(static_cast<std::int32_t>(state.range(0)));
  const std::string text = kTexts[state.range(1)];
  SearchByHand byHand(here.database);
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
        if (here.picker.rows().size() != hits) state.SkipWithError("the rows differ from those by hand");
      },
      [&] { hits = byHand.find(text).size(); });
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
