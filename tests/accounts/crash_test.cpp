#include <chrono>
#include <thread>

#include "accounts/random_work.h"
#include "support/amount_of_work.h"
#include "support/child_process.h"
#include "support/power_cut_storage.h"

namespace ledgertree::testing {
namespace {

/// Random work on a form, command by command.
class Worker : public RandomWork {
 public:
  /// First the file; then, before each command that writes and at the end, either the chart or a dot.
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

/// The same work without interruption: the chart before each command that writes, and at the end.
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

/// Every command that had returned is in the file, and none is half done. `begun` commands were started.
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
      // If the work ends before the kill, the file must still exist.
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

}  // namespace
}  // namespace ledgertree::testing
