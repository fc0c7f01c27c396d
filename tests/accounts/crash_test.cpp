#include <chrono>
#include <thread>

#include "accounts/random_work.h"
#include "data/connection_text.h"
#include "db/schema.h"
#include "support/amount_of_work.h"
#include "support/child_process.h"
#include "support/power_cut_storage.h"

namespace ledgertree::testing {
namespace {

/// Random work on a form, command by command.
class Worker : public RandomWork {
 public:
  /// First the file; then ahead of each command that writes, and at the end, either the chart or a dot.
  Worker(int pipe, bool tellsChart) {
    database.execute("pragma synchronous = full; pragma wal_checkpoint(truncate)");
    tell(pipe, database.file().string() + "\n");
    faults.onCommand = [this, pipe, tellsChart](const std::string& command) {
      if (writes(command)) tell(pipe, tellsChart ? rows() + '\0' : ".");
    };
  }
  using RandomWork::rows;
  using RandomWork::work;

 private:
  void TestBody() override {}
  static bool writes(const std::string& command) {
    static const char* const words[] = {"spAccount", "Update", "INSERT", "Delete", "delete"};
    return std::any_of(std::begin(words), std::end(words),
                       [&](const char* word) { return command.starts_with(word); });
  }
};

/// The same work, done to its end: the chart ahead of each command that writes, and at last.
struct WholeWork {
  std::vector<std::string> charts;
  int storageOperations = 0;
};
constexpr int kSteps = 25;

WholeWork doWholeWork(unsigned seed) {
  Child child([seed](int pipe) {
    PowerCutStorage::putIn();
    Worker worker(pipe, true);
    const int before = PowerCutStorage::operations();
    worker.work(seed, kSteps);
    tell(pipe, worker.rows() + '\0' + std::to_string(PowerCutStorage::operations() - before));
  });
  WholeWork whole;
  static_cast<void>(child.hearLine());
  std::string chart;
  while (const auto letter = child.hear()) {
    if (*letter != '\0') {
      chart += *letter;
    } else {
      whole.charts.push_back(std::exchange(chart, {}));
    }
  }
  whole.storageOperations = std::stoi(chart);
  EXPECT_EQ(child.end(), 0);
  return whole;
}

const WholeWork& wholeWork(unsigned seed) {
  static std::map<unsigned, WholeWork> done;
  if (done.count(seed) == 0) done[seed] = doWholeWork(seed);
  return done[seed];
}

/// Every command that had returned is in the file, and none is half there. `begun` commands were begun.
void expectWhole(const std::filesystem::path& file, const WholeWork& whole, std::size_t begun) {
  SQLite::Database database(file.string(), SQLite::OPEN_READWRITE);
  expectSound(database);
  const std::string chart =
      RandomWork::rowsOf([&](const std::string& query) { return allRows(database, query); });
  const bool before = begun > 0 && chart == whole.charts[begun - 1];
  EXPECT_TRUE(before || chart == whole.charts[begun]) << "after " << begun << " commands:\n" << chart;
}

const int kCuts = amountOfWork("LEDGERTREE_CUTS", 20, 200);
constexpr int kSeeds = 4;

TEST(Crash, AKilledProcessLosesNothingThatHadReturned) {
  if (onServer()) GTEST_SKIP() << "it is about a file and kills";
  std::mt19937 dice(7);
  for (int cut = 0; cut < kCuts && !::testing::Test::HasFailure(); ++cut) {
    const unsigned seed = static_cast<unsigned>(cut % kSeeds);
    const WholeWork& whole = wholeWork(seed);

    Child child([seed](int pipe) {
      Worker worker(pipe, false);
      worker.work(seed, kSteps);
      // Where the work is done before the kill, the file still has to be there.
      ::close(pipe);
      for (;;) ::pause();
    });
    const LeftFolder folder{child.hearLine()};
    const std::size_t last = 1 + dice() % (whole.charts.size() - 1);
    const std::size_t begun = child.killBehind(last, std::chrono::microseconds(dice() % 1500));
    SCOPED_TRACE("cut " + std::to_string(cut) + ", command " + std::to_string(begun));
    expectWhole(folder.file, whole, begun);
  }
}

TEST(Crash, APowerCutLosesNothingThatHadReturned) {
  if (onServer()) GTEST_SKIP() << "it is about a file and kills";
  std::mt19937 dice(8);
  for (int cut = 0; cut < kCuts && !::testing::Test::HasFailure(); ++cut) {
    const unsigned seed = static_cast<unsigned>(cut % kSeeds);
    const WholeWork& whole = wholeWork(seed);

    const int at = 1 + static_cast<int>(dice() % static_cast<unsigned>(whole.storageOperations));
    SCOPED_TRACE("cut " + std::to_string(cut) + ", operation " + std::to_string(at));
    Child child([seed, at](int pipe) {
      PowerCutStorage::putIn();
      Worker worker(pipe, false);
      PowerCutStorage::cutAt(at, seed + static_cast<unsigned>(at));
      worker.work(seed, kSteps);
    });
    const LeftFolder folder{child.hearLine()};
    const std::size_t begun = child.hearAll().size();
    ASSERT_EQ(child.end(), PowerCutStorage::kExitCode);
    const TemporaryFolder disk;
    PowerCutStorage::recover(folder.file.parent_path(), disk.path());
    expectWhole(disk.path() / folder.file.filename(), whole, begun);
  }
}

/// One of several accountants on one file.
class Accountant : public AccountStory {
 public:
  Accountant(const std::filesystem::path& file, unsigned seed) : dice_(seed) {
    shell.context.gConnectionString =
        "Provider=SQLite;Data Source=" + data::quoteConnectionValue(file.string());
    shell.resetDataConnection();
    start();
  }

  /// Saves, changes and deletes accounts until the time is over; gives how many are left.
  int workFor(std::chrono::seconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    int left = 0;
    for (int round = 1; std::chrono::steady_clock::now() < end && !HasFailure(); ++round) {
      const std::int32_t saved = saveSomewhere();
      ++left;
      if (round % 3 == 0) {
        edit(saved);
        form->txtTitle.paste("ويرايش");
        EXPECT_EQ(save(), saved);
      }
      if (round % 5 == 0) {
        form->View(saved);
        notices.answer(1);
        form->cmdDelete.click();
        EXPECT_EQ(notices.take().size(), 1U) << "the question, and no refusal";
        --left;
      }
      EXPECT_EQ(notices.taken(), "");
    }
    return left;
  }
  /// How often another was first with a code.
  int refusals = 0;

 private:
  void TestBody() override {}
  /// Another accountant may save the code that was proposed here; then a new proposal does.
  std::int32_t saveSomewhere() {
    const int parent = 1 + static_cast<int>(dice_() % 2);
    form->cmdNew.click();
    pick(form->sltParent, parent, std::to_string(parent));
    form->txtTitle.paste("تازه");
    for (int attempt = 0; attempt < 100; ++attempt) {
      const std::int32_t saved = save();
      const std::string told = notices.taken();
      if (saved != -1 && told.empty()) return saved;
      EXPECT_NE(told.find("حسابي با كد مورد نظر"), std::string::npos) << told;
      ++refusals;
      form->cmdAutoCode.click();
    }
    ADD_FAILURE() << "a hundred codes were taken";
    return -1;
  }

  std::mt19937 dice_;
};

TEST(Crash, TwoProcessesSaveIntoOneFile) {
  if (onServer()) GTEST_SKIP() << "it is about a file and kills";
  const std::chrono::seconds time(amountOfWork("LEDGERTREE_SHARED_SECONDS", 2, 60));
  const TemporaryFolder folder;
  const std::filesystem::path file = folder.path() / "shared.db";
  {
    SQLite::Database database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db::openSchema(database);
    database.exec(
        "insert into tblAccount (Code, Title) values ('1', 'دارايي'), ('2', 'بدهي');"
        "insert into tblUser (ID, Name) values (1, 'حسابدار');"
        "insert into tblUserPermission (UserID, FormPermissionID) values (1, 30101), (1, 30102), (1, 30103);"
        // Wide enough for all that is saved.
        "insert into tblAccount (ParentID, Code, Title) values (1, '1000000', 'نخست'), (2, '2000000', "
        "'نخست')");
  }
  const auto accountant = [&](unsigned seed) {
    return [&file, time, seed](int pipe) {
      Accountant one(file, seed);
      const int left = one.workFor(time);
      tell(pipe, std::to_string(left) + "\n" + std::to_string(one.refusals) + "\n");
    };
  };
  Child first(accountant(1));
  Child second(accountant(2));
  int accounts = 4;
  for (Child* child : {&first, &second}) {
    accounts += std::stoi(child->hearLine());
    RecordProperty("refusals", child->hearLine());
    EXPECT_EQ(child->end(), 0);
  }
  SQLite::Database database(file.string(), SQLite::OPEN_READWRITE);
  EXPECT_EQ(database.execAndGet("select count(*) from tblAccount").getInt(), accounts);
  EXPECT_EQ(database.execAndGet("select count(distinct Code) from tblAccount").getInt(), accounts);
  expectSound(database);
}

}  // namespace
}  // namespace ledgertree::testing
