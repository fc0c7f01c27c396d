// Saving a new account on the form, from the click until the record and the tree have been read again, and
// proposing its code, compared with the bare library: the same statements, prepared once, on the same file in
// the same run. The file is once on disk and once in memory, where syncs are free and can't hide waste.

#include <SQLiteCpp/SQLiteCpp.h>

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "engines/sqlite/embedded_engine.h"
#include "mainform/form/form_main.h"
#include "support/generated_chart.h"
#include "support/idle_desktop.h"
#include "support/scratch_database.h"
#include "support/side_by_side.h"

namespace ledgertree::bench {
namespace {

using Storage = ScratchDatabase::Storage;

/// The parent of every saved account: an account on the second level.
constexpr std::int32_t kParent = 11;

class Chart {
 public:
  Chart(Storage storage, const ChartShape& shape)
      : scratch_("save-" + std::to_string(shape.accounts), storage) {
    SQLite::Database database = scratch_.open();
    generateChart(database, shape);
    database.exec(
        "insert or ignore into tblAccountGroup (ID, Name) values (1, 'گروه');"
        "insert or ignore into tblAccountClass (ID, Name, ViewMajor, ViewMinor) values (1, 'اشخاص',"
        " 'vwEntityPerson', 'vwEntityPersonMinor'); update tblAccountClass set ViewMajor = 'vwEntityPerson'"
        " where ID = 1; insert or ignore into tblEntityPerson (ID, Name) with recursive n(i) as"
        " (select 1 union all select i + 1 from n where i < 200000) select i, 'شخص ' || i from n");
  }

  static const Chart& of(Storage storage, std::int64_t accounts) {
    static std::map<std::pair<Storage, std::int64_t>, std::unique_ptr<Chart>> charts;
    auto& chart = charts[{storage, accounts}];
    if (!chart) chart = std::make_unique<Chart>(storage, ChartShape{.accounts = static_cast<int>(accounts)});
    return *chart;
  }
  [[nodiscard]] std::string file() const { return scratch_.file(); }

 private:
  ScratchDatabase scratch_;
};

/// The product: a form on the chart, without a window.
class Product {
 public:
  explicit Product(const std::string& file, std::int16_t codingMode = 0) {
    engines::sqlite::registerEmbedded(shell_.providers);
    shell_.context.gConnectionString = "Provider=SQLite;Data Source=" + file;
    shell_.context.gUserID = 1;
    shell_.resetDataConnection();
    form_.emplace(shell_);
    form_->load();
    form_->settings.CodingMode = codingMode;
  }

  /// Fills in every stored field of a new account.
  void type(const std::string& ownCode, std::int32_t object) {
    form_->cmdNew.click();
    form_->sltParent.setAccountID(kParent);
    form_->txtMotherCode.setText(form_->sltParent.AccountCode());
    form_->txtCode.setText(ownCode);
    form_->txtTitle.setText("دريافتني " + ownCode);
    form_->txtNotes.setText("مانده اين حساب هر ماه با صورت حساب بانک مقابله مي شود");
    form_->sltGroup.setSelectedID(1);
    form_->sltEntityType.setSelectedID(1);
    form_->sltEntity.setMajorView("vwEntityPerson");
    form_->sltEntity.setSelectedID(object);
  }
  mainform::FormMain& form() { return *form_; }

 private:
  IdleDesktop desktop_;
  shell::Shell shell_{desktop_};
  std::optional<mainform::FormMain> form_;
};

/// A save by hand, conflict checks included: it compares the parent's code before inserting the account, and
/// what was written of the account before inserting its relation.
class ByHand {
 public:
  explicit ByHand(const std::string& file) : database_(file, SQLite::OPEN_READWRITE) {
    // Each side's write invalidates the other's cache, and reread pages are checked.
    database_.exec("pragma foreign_keys = on; pragma synchronous = full; pragma cell_size_check = on");
    mother_ = read("select Code from tblAccount where ID = ?", kParent).at(0);
  }

  void write(const std::string& ownCode, std::int32_t object) {
    const std::string code = mother_ + ownCode;
    run("begin immediate");
    requireSame(read("select ifnull(Code, '') from tblAccount where ID = ?", kParent).at(0), mother_);
    SQLite::Statement& insert = prepared(
        "insert into tblAccount (CreateDate, FarsiCreateDate, GroupID, IsPermanent, AccountNatureID, "
        "ParentID,"
        " Title, Code, IsClosed, BranchID, PositionID, Notes, MaxDebit, MaxCredit, NoLevel)"
        " select '2026-11-22 00:00:00', '1405/09/01', 1, 0, 0, ?1, ?2, ?3, 0, 0, 0, ?4, 0, 0, 3"
        " where not exists (select 1 from tblAccount where Code = ?3)");
    insert.bind(1, kParent);
    insert.bind(2, "دريافتني " + ownCode);
    insert.bind(3, code);
    insert.bind(4, "مانده اين حساب هر ماه با صورت حساب بانک مقابله مي شود");
    run(insert);
    account_ = static_cast<std::int32_t>(database_.getLastInsertRowid());
    run("commit");
    SQLite::Statement& test = prepared(
        "select * from vwAccountRelatedObjects where AccountGroupID = 1 and RelatedClassID = 1 and "
        "RelatedObjectID = ?");
    test.bind(1, object);
    run(test);
    run("begin immediate");
    requireSame(read("select * from tblAccount where ID = ?", account_).at(2), code);
    requireSame(
        std::to_string(read("select * from tblAccountRelatedObjects where AccountID = ?", account_).size()),
        "0");
    SQLite::Statement& clear = prepared("delete from tblAccountRelatedObjects where AccountID = ?");
    clear.bind(1, account_);
    run(clear);
    SQLite::Statement& relate = prepared("insert into tblAccountRelatedObjects values (?, 1, 1, ?)");
    relate.bind(1, account_);
    relate.bind(2, object);
    run(relate);
    run("commit");
  }

  /// The record with the texts of what it refers to, and the first level of the tree with its counts.
  void readBack(std::int32_t object) {
    read("select * from vwAccount where ID = ?", account_);
    read("select * from tblAccountRelatedObjects where AccountID = ?", account_);
    for (const std::int32_t id : {account_, account_, kParent})
      read("select ID, Code, Name from vwAccountMajor where ID = ?", id);
    read("select ID, Code, Name from vwAccountGroup where ID = ?", 1);
    read("select ID, Code, Name from vwAccountClass where ID = ?", 1);
    read("select * from tblAccountClass where ID = ?", 1);
    read("select ID, Code, Name from vwEntityPerson where ID = ?", object);
    const auto level = read(
        "select ID, ParentID, IsClosed, AccountNatureID, Code, Title from tblAccount where "
        "ifnull(ParentID, -1) = ? order by Code",
        -1);
    for (std::size_t row = 0; row < level.size(); row += 6)
      read("select count(*) from tblAccount where ifnull(ParentID, -1) = ?", std::stoi(level[row]));
  }

  /// All rows of a statement with one parameter, as texts.
  std::vector<std::string> read(const char* text, std::int32_t parameter) {
    SQLite::Statement& statement = prepared(text);
    statement.bind(1, parameter);
    std::vector<std::string> fields;
    while (statement.executeStep()) {
      for (int column = 0; column < statement.getColumnCount(); ++column)
        fields.emplace_back(statement.getColumn(column).getText());
    }
    statement.reset();
    benchmark::DoNotOptimize(fields);
    return fields;
  }

 private:
  SQLite::Statement& prepared(const char* text) {
    const auto found = statements_.find(text);
    return found != statements_.end() ? found->second
                                      : statements_.try_emplace(text, database_, text).first->second;
  }
  void run(const char* text) { run(prepared(text)); }
  static void requireSame(const std::string& now, const std::string& before) {
    if (now != before) throw std::runtime_error("somebody else changed it");
  }
  static void run(SQLite::Statement& statement) {
    while (statement.executeStep()) benchmark::DoNotOptimize(statement.getColumn(0).getText());
    statement.reset();
  }

  SQLite::Database database_;
  std::map<const char*, SQLite::Statement> statements_;
  std::string mother_;
  std::int32_t account_ = 0;
};

using Clock = std::chrono::steady_clock;

/// Notes when a save has finished writing: next, it shows the account in its picker.
class EndOfWrites : public ui::FormObserver {
 public:
  explicit EndOfWrites(mainform::FormMain& form) : form_(form) { form_.addObserver(*this); }
  ~EndOfWrites() override { form_.removeObserver(*this); }
  void start() { end_.reset(); }
  [[nodiscard]] Clock::time_point end() const { return end_.value_or(Clock::time_point()); }

  void controlChanged(ui::Control& control, ui::Change) override {
    if (!end_ && &control == &form_.sltAccount) end_ = Clock::now();
  }
  void treeChanged(ui::Tree&, const ui::TreeChange&) override {}
  void formChanged(ui::FormChange) override {}
  void timerRestarted(ui::Timer&) override {}

 private:
  mainform::FormMain& form_;
  std::optional<Clock::time_point> end_;
};

/// Counters: `ratio` is the whole save relative to its writes and reads by hand,
/// `ratio_writes` excludes the reads on both sides.
void save(benchmark::State& state) {
  const Chart& chart = Chart::of(state.range(0) != 0 ? Storage::Disk : Storage::Memory, state.range(1));
  Product product(chart.file());
  ByHand byHand(chart.file());
  EndOfWrites endOfWrites(product.form());
  std::chrono::duration<double> ours{};
  std::chrono::duration<double> ourWrites{};
  std::chrono::duration<double> writes{};
  std::chrono::duration<double> reads{};
  static std::int32_t next = 1;  // codes and objects are unique in a chart
  const auto code = [](std::int32_t number) { return "x" + std::to_string(number); };
  for (auto turn : state) {
    static_cast<void>(turn);
    const std::int32_t bare = next++;
    const std::int32_t typed = next++;
    product.type(code(typed), typed);
    const auto begin = Clock::now();
    byHand.write(code(bare), bare);
    const auto written = Clock::now();
    byHand.readBack(bare);
    endOfWrites.start();
    const auto middle = Clock::now();
    product.form().cmdSave.click();
    const auto end = Clock::now();
    writes += written - begin;
    reads += middle - written;
    ours += end - middle;
    ourWrites += endOfWrites.end() - middle;
    state.SetIterationTime(std::chrono::duration<double>(end - middle).count());
    if (product.form().formMode != mainform::FormMode::ModeView) state.SkipWithError("not saved");
  }
  const auto turns = static_cast<double>(state.iterations());
  state.counters["product_us"] = ours.count() / turns * 1e6;
  state.counters["bare_us"] = (writes + reads).count() / turns * 1e6;
  state.counters["ratio"] = ours / (writes + reads);
  state.counters["ratio_writes"] = ourWrites / writes;
}

constexpr const char* kSiblings = "select Code from tblAccount where ParentID = ? order by Code desc";
constexpr const char* kSiblingsAndLevels =
    "select Code, NoLevel from tblAccount where ParentID = ? order by Code desc";
constexpr const char* kSameTitle =
    "select ID, substr(Code, -6), Code, Title, NoLevel from tblAccount where Title = '' and NoLevel = ?";
constexpr const char* kLevel =
    "select ID, substr(Code, -6) as rCode, Title, NoLevel from tblAccount where NoLevel = ? order by "
    "substr(Code, -6) collate nocase desc";

/// A proposal in coding mode range(1) on a chart of range(0) accounts.
void propose(benchmark::State& state) {
  const Chart& chart = Chart::of(Storage::Memory, state.range(0));
  const auto mode = static_cast<std::int16_t>(state.range(1));
  Product product(chart.file(), mode);
  ByHand byHand(chart.file());
  sideBySide(
      state, [&] { benchmark::DoNotOptimize(product.form().getNewAccountCode(kParent)); },
      [&] {
        byHand.read(mode == 0 ? kSiblings : kSiblingsAndLevels, kParent);
        if (mode == 0) return;
        byHand.read(kSameTitle, 3);
        byHand.read(kLevel, 3);
      });
}

/// The next number in a level of 100,000 accounts.
void searchLevel(benchmark::State& state) {
  const Chart chart(Storage::Memory, {.accounts = 100010, .topLevel = 10, .fanOut = 100000});
  Product product(chart.file(), 1);
  ByHand byHand(chart.file());
  sideBySide(
      state, [&] { benchmark::DoNotOptimize(product.form().getNewAccountCode(2)); },
      [&] {
        byHand.read(kSiblingsAndLevels, 2);
        byHand.read("select * from tblAccount where ID = ?", 2);
        byHand.read(kSameTitle, 2);
        byHand.read(kLevel, 2);
      });
}

BENCHMARK(save)
    ->ArgNames({"on_disk", "accounts"})
    ->ArgsProduct({{1, 0}, {1000, 1000000}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(propose)
    ->ArgNames({"accounts", "mode"})
    ->ArgsProduct({{1000, 1000000}, {0, 1}})
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(searchLevel)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ledgertree::bench

BENCHMARK_MAIN();
