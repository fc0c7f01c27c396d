// The cost of a statement on top of the bare library: the gateway's connection against prepared statements on
// SQLite, the same reads on the same file in the same run.

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engines/sqlite/embedded_connection.h"
#include "support/scratch_database.h"
#include "support/side_by_side.h"

namespace ledgertree::bench {
namespace {

using data::SearchRequest;
using engines::sqlite::EmbeddedConnection;

constexpr int kPeriod = 3;
constexpr int kParent = 1;

/// A two-level chart with `children` accounts below the first
/// one, all of them in the period, and as many others.
class Chart {
 public:
  explicit Chart(int accounts) : scratch_("statements-" + std::to_string(accounts)) {
    SQLite::Database database = scratch_.open();
    database.exec("PRAGMA synchronous = OFF");
    const std::string count = std::to_string(accounts);
    database.exec(
        "BEGIN; INSERT INTO tblAccountPeriod VALUES (3, '1404', '2025-03-21', '2026-03-20', '1404/01/01',"
        " '1404/12/29')");
    database.exec(
        "INSERT INTO tblAccount (ID, Code, Title) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1"
        " FROM n WHERE i < 10) SELECT i, printf('%02d', i), 'گروه ' || i FROM n");
    database.exec(
        "INSERT INTO tblAccount (ID, ParentID, Code, Title) WITH RECURSIVE n(i) AS (SELECT 11 UNION ALL"
        " SELECT i + 1 FROM n WHERE i < " +
        count +
        ") SELECT i, CASE WHEN i <= 1010 THEN 1 ELSE 2 + i % 9 END,"
        " printf('%02d%07d', CASE WHEN i <= 1010 THEN 1 ELSE 2 + i % 9 END, i),"
        " 'حساب‌های دريافتني تجاري شماره ' || i || ' شعبه مركزي' FROM n");
    database.exec("INSERT INTO tblAccountPeriodAccount SELECT ID, 3 FROM tblAccount; COMMIT");
  }

  [[nodiscard]] std::string path() const { return scratch_.file(); }

  static const Chart& of(std::int64_t accounts) {
    static std::vector<std::pair<std::int64_t, std::unique_ptr<Chart>>> made;
    for (const auto& [count, chart] : made) {
      if (count == accounts) return *chart;
    }
    made.emplace_back(accounts, std::make_unique<Chart>(static_cast<int>(accounts)));
    return *made.back().second;
  }

 private:
  ScratchDatabase scratch_;
};

constexpr const char* kBareCount =
    "SELECT count(*) AS cnt FROM tblAccount WHERE EXISTS (SELECT 1 FROM tblAccountPeriodAccount x WHERE"
    " x.PeriodID = ?1 AND x.AccountID = tblAccount.ID) AND ifnull(ParentID, -1) = ?2";
constexpr const char* kBareLevel =
    "SELECT ID, ParentID, IsClosed, AccountNatureID, Code, Title FROM tblAccount WHERE EXISTS (SELECT 1 FROM"
    " tblAccountPeriodAccount x WHERE x.PeriodID = ?1 AND x.AccountID = tblAccount.ID) AND ifnull(ParentID, "
    "-1) = ?2"
    " ORDER BY Code";

std::string membership(std::int64_t parent) {
  return " from tblAccount  where (ID in (Select x.AccountID from tblAccountPeriodAccount x Where x.PeriodID "
         "= " +
         std::to_string(kPeriod) + ") or -1=" + std::to_string(kPeriod) +
         ") and IsNull(ParentID,-1)=" + std::to_string(parent) + " ";
}

std::vector<std::string> countTexts() {
  std::vector<std::string> texts;
  for (int child = 11; child <= 1010; ++child) texts.push_back("Select count(*) as cnt" + membership(child));
  return texts;
}

SQLite::Database bare(const Chart& chart) {
  SQLite::Database database(chart.path(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX);
  database.exec("PRAGMA foreign_keys = ON; PRAGMA synchronous = FULL");
  return database;
}

/// Counts the children of 1,000 accounts, one statement each.
void count(benchmark::State& state) {
  const Chart& chart = Chart::of(state.range(0));
  EmbeddedConnection connection(chart.path());
  const std::vector<std::string> texts = countTexts();
  SQLite::Database database = bare(chart);
  SQLite::Statement statement(database, kBareCount);
  sideBySide(
      state,
      [&] {
        for (const std::string& text : texts) benchmark::DoNotOptimize(connection.run(text));
      },
      [&] {
        for (int child = 11; child <= 1010; ++child) {
          statement.bind(1, kPeriod);
          statement.bind(2, child);
          statement.executeStep();
          benchmark::DoNotOptimize(statement.getColumn(0).getInt());
          statement.reset();
        }
      });
}

/// A level of 1,000 accounts.
void level(benchmark::State& state) {
  const Chart& chart = Chart::of(state.range(0));
  EmbeddedConnection connection(chart.path());
  const std::string text =
      "Select ID,ParentID,IsClosed,AccountNatureID,Code,Title " + membership(kParent) + " Order by Code";
  SQLite::Database database = bare(chart);
  SQLite::Statement statement(database, kBareLevel);
  sideBySide(
      state, [&] { benchmark::DoNotOptimize(connection.run(text)); },
      [&] {
        statement.bind(1, kPeriod);
        statement.bind(2, kParent);
        std::vector<std::string> titles;
        while (statement.executeStep()) {
          for (int column = 0; column < 4; ++column)
            benchmark::DoNotOptimize(statement.getColumn(column).getInt());
          titles.emplace_back(statement.getColumn(4).getText());
          titles.emplace_back(statement.getColumn(5).getText());
        }
        statement.reset();
        benchmark::DoNotOptimize(titles);
      });
}

/// No row contains the first text; the hits of the second are
/// far apart, so that a page takes most of the rows.
const char* searchedText(std::int64_t which) { return which == 0 ? "نيست" : "شماره 77"; }

/// A page of hits. SQLite's own LIKE doesn't equate letters that look the same to a user.
void search(benchmark::State& state) {
  const Chart& chart = Chart::of(state.range(0));
  EmbeddedConnection connection(chart.path());
  SearchRequest request;
  request.view = "vwAccountMajor";
  request.columns = {"Code", "Name"};
  request.order = ledgertree::data::SearchOrder::Code;
  request.text = searchedText(state.range(1));
  SQLite::Database database = bare(chart);
  SQLite::Statement statement(database,
                              "SELECT ID, Code, Name FROM vwAccountMajor WHERE "
                              "Code LIKE ?1 OR Name LIKE ?1"
                              " ORDER BY Code LIMIT 100");
  statement.bind(1, "%" + request.text + "%");
  std::size_t hits = 0;
  sideBySide(
      state,
      [&] {
        if (connection.search(request).rows.count() != hits)
          state.SkipWithError("the rows differ from those by hand");
      },
      [&] {
        for (hits = 0; statement.executeStep(); ++hits)
          benchmark::DoNotOptimize(statement.getColumn(2).getText());
        statement.reset();
      });
}

BENCHMARK(count)->Arg(20000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(level)->Arg(20000)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(search)->ArgsProduct({{20000, 100000}, {0, 1}})->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ledgertree::bench

BENCHMARK_MAIN();
