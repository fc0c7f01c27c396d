// Exporting the whole chart compared with the bare libraries: SheetKit's spreadsheet of 1,000 to 100,000
// accounts, and the same cells and formats by hand with libxlsxwriter from SQLite. Time per account and peak
// memory should be the same at every size.

#include <SQLiteCpp/SQLiteCpp.h>
#include <malloc.h>
#include <sqlite3.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "data/connection.h"
#include "db/schema.h"
#include "engines/sqlite/embedded_engine.h"
#include "sheetkit/sheet_file.h"
#include "support/generated_chart.h"
#include "support/side_by_side.h"

namespace ledgertree::bench {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStatement =
    "Select Code As 'كدحساب',Title As 'شرح حساب',AccGroup as 'گروه حساب',AccountStatus As 'ماهيت "
    "حساب',AccountType As 'حساب',RemainedType As 'وضعيت حساب',AccContract As 'مركز هزينه',NoLevel As "
    "'سطح',Notes As 'ملاحظات' From vwAccount Order By Code,NoLevel";
constexpr const char* kByHand =
    "select Code as \"كدحساب\", Title as \"شرح حساب\", AccGroup as \"گروه حساب\", AccountStatus as \"ماهيت "
    "حساب\", AccountType as \"حساب\", RemainedType as \"وضعيت حساب\", AccContract as \"مركز هزينه\", "
    "NoLevel as \"سطح\", Notes as \"ملاحظات\" from vwAccount order by Code, NoLevel";

/// A chart of the given size and a folder for the workbooks, both deleted with the object.
class Chart {
 public:
  explicit Chart(std::int32_t accounts) {
    fs::create_directories(folder_);
    SQLite::Database database(file(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db::openSchema(database);
    generateChart(database, {.accounts = accounts, .topLevel = 10, .fanOut = 10});
    database.exec(
        "update tblAccount set Notes = 'مانده اين حساب در پايان هر ماه با صورت حساب بانک مقابله "
        "مي شود' where ID % 10 = 0");
  }
  Chart(const Chart&) = delete;
  Chart& operator=(const Chart&) = delete;
  ~Chart() { fs::remove_all(folder_); }

  [[nodiscard]] std::string file() const { return (folder_ / "chart.db").string(); }
  [[nodiscard]] fs::path workbook(const char* name) const { return folder_ / name; }

 private:
  fs::path folder_ = "/dev/shm/bench-export";
};

/// The cell formats, the same as the component's.
struct Looks {
  explicit Looks(lxw_workbook* book) {
    const auto look = [book](lxw_format_alignments alignment) {
      lxw_format* made = workbook_add_format(book);
      format_set_align(made, static_cast<std::uint8_t>(alignment));
      format_set_align(made, LXW_ALIGN_VERTICAL_TOP);
      return made;
    };
    code = look(LXW_ALIGN_LEFT);
    format_set_num_format(code, "@");
    number = look(LXW_ALIGN_CENTER);
    plain = look(LXW_ALIGN_RIGHT);
    wrapped = look(LXW_ALIGN_RIGHT);
    format_set_text_wrap(wrapped);
    for (std::size_t depth = 0; depth < title.size(); ++depth) {
      title.at(depth) = look(LXW_ALIGN_RIGHT);
      format_set_indent(title.at(depth), static_cast<std::uint8_t>(depth));
    }
  }
  lxw_format* code;
  lxw_format* number;
  lxw_format* plain;
  lxw_format* wrapped;
  std::array<lxw_format*, 13> title{};
};

void writeByHand(SQLite::Database& database, const fs::path& file) {
  constexpr int kLevel = 7;
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  lxw_workbook* const book = workbook_new_opt(file.c_str(), &options);
  lxw_worksheet* const sheet = workbook_add_worksheet(book, nullptr);
  const Looks looks(book);
  worksheet_right_to_left(sheet);
  worksheet_freeze_panes(sheet, 1, 0);
  sqlite3_stmt* rows = nullptr;
  if (sqlite3_prepare_v2(database.getHandle(), kByHand, -1, &rows, nullptr) != SQLITE_OK)
    throw std::runtime_error(database.getErrorMsg());
  const int columns = sqlite3_column_count(rows);
  for (int column = 0; column < columns; ++column)
    worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(column), sqlite3_column_name(rows, column),
                           nullptr);
  lxw_row_t place = 1;
  for (; sqlite3_step(rows) == SQLITE_ROW; ++place) {
    const int depth = std::clamp(sqlite3_column_int(rows, kLevel) - 1, 0, 12);
    lxw_row_col_options fold{};
    fold.level = static_cast<std::uint8_t>(std::min(depth, 7));
    if (depth > 0) worksheet_set_row_opt(sheet, place, LXW_DEF_ROW_HEIGHT, nullptr, &fold);
    for (int column = 0; column < columns; ++column) {
      const auto at = static_cast<lxw_col_t>(column);
      const int kind = sqlite3_column_type(rows, column);
      if (kind == SQLITE_NULL) continue;
      if (kind == SQLITE_INTEGER) {
        worksheet_write_number(sheet, place, at, sqlite3_column_double(rows, column), looks.number);
        continue;
      }
      const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(rows, column));
      const int length = sqlite3_column_bytes(rows, column);
      lxw_format* look = length > 90 ? looks.wrapped : looks.plain;
      if (column == 0) look = looks.code;
      if (column == 1) look = looks.title.at(static_cast<std::size_t>(depth));
      if (length > 0) worksheet_write_string(sheet, place, at, text, look);
    }
  }
  sqlite3_finalize(rows);
  worksheet_autofilter(sheet, 0, 0, place - 1, static_cast<lxw_col_t>(columns - 1));
  if (workbook_close(book) != LXW_NO_ERROR)
    throw std::runtime_error("the hand-written workbook couldn't be saved");
}

/// A line of /proc/self/status, in MB.
double megabytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  std::string word;
  double kilobytes = 0;
  while (status >> word)
    if (word == name && status >> kilobytes) return kilobytes / 1024;
  return 0;
}

/// Runs the work and returns the peak resident memory meanwhile, in MB.
template <typename Work>
double peakOf(const Work& work) {
  malloc_trim(0);                               // left over from creating the chart
  std::ofstream("/proc/self/clear_refs") << 5;  // resets the peak
  work();
  return megabytes("VmHWM:");
}

void exportChart(benchmark::State& state) {
  const Chart chart(static_cast<std::int32_t>(state.range(0)));
  data::Providers providers;
  engines::sqlite::registerEmbedded(providers);
  const auto connection = providers.open("Provider=SQLite;Data Source=" + chart.file());
  SQLite::Database bare(chart.file(), SQLite::OPEN_READWRITE);
  db::openSchema(bare);
  const auto product = [&] {
    static_cast<void>(sheetkit::writeSheet(*connection, kStatement, chart.workbook("product.xlsx"),
                                           [](std::int64_t, std::int64_t) { return true; }));
  };
  const double peak = peakOf(product);
  sideBySide(state, product, [&] { writeByHand(bare, chart.workbook("by-hand.xlsx")); });
  state.counters["us_an_account"] = state.counters["product_us"] / static_cast<double>(state.range(0));
  state.counters["peak_mb"] = peak;
  state.counters["file_mb"] = static_cast<double>(fs::file_size(chart.workbook("product.xlsx"))) / (1 << 20);
}

BENCHMARK(exportChart)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ledgertree::bench

BENCHMARK_MAIN();
