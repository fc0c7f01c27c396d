// What is left by a process that is killed during bulk work.

#include <random>

#include "batch/bulk_house.h"
#include "support/child_process.h"

namespace ledgertree::testing {
namespace {

constexpr int kAccounts = 300;

/// A chart whose account 1000 has many descendants, in chains of three.
class BulkWorker : public BulkHouse {
 public:
  /// Writes the name of the file, and a dot for each account done.
  explicit BulkWorker(int pipe) {
    database.execute(
        "pragma synchronous = full;"
        "insert into tblAccount (ID, Code, Title) values (1000, '5', 'x');"
        "with recursive n(i) as (select 1 union all select i + 1 from n where i < " +
        std::to_string(kAccounts) +
        ") insert into tblAccount (ID, ParentID, Code, Title) select 1000 + i, case i % 3 when 1 then 1000 "
        "else 999 + i end, '5' || printf('%04d', i), 'x' from n");
    tell(pipe, database.file().string() + "\n");
    begun_ = [this, pipe](const std::string& command) {
      const bool writes = command == "spAccountDeleteAccount" || command.starts_with("Update");
      if (writes && std::exchange(working_, true)) tell(pipe, ".");
    };
  }
  void recodeAll() {
    start();
    recode([&](coding::frmAutoCodding& screen) {
      pick(screen.klmMotherAcc, "5");
      screen.txtSimpleCode.type("90001");
      desktop.tick();
      faults.onCommand = begun_;
      answer(1);
      screen.cmdAutoCodding.click();
    });
  }
  void deleteAll() {
    start();
    deleteInBatch([&](batch::frmAccountBatch& screen) {
      pick(screen.sltParent, "5");
      faults.onCommand = begun_;
      answer(1);
      screen.cmdDelete.click();
    });
  }

 private:
  void TestBody() override {}
  std::function<void(const std::string&)> begun_;
  bool working_ = false;
};

TEST(BulkCrash, WhatWasDoneIsDoneAndTheRestUntouched) {
  if (onServer()) GTEST_SKIP() << "it is about a file and kills";
  std::mt19937 dice(11);
  for (int cut = 0; cut < 10; ++cut) {
    const bool deletes = cut % 2 == 0;
    SCOPED_TRACE("cut " + std::to_string(cut));
    Child child([deletes](int pipe) {
      BulkWorker worker(pipe);
      if (deletes)
        worker.deleteAll();
      else
        worker.recodeAll();
      ::pause();  // a worker that finishes before it is killed keeps its file for inspection
    });
    const LeftFolder folder{child.hearLine()};
    const int done = static_cast<int>(child.killBehind(1 + dice() % 90));
    SQLite::Database database(folder.file.string(), SQLite::OPEN_READWRITE);
    expectSound(database);
    const auto number = [&](const char* query) { return database.execAndGet(query).getInt(); };
    const int changed =
        deletes ? kAccounts - number("select count(*) from tblAccount where ID > 1000")
                : number("select count(*) from tblAccount where ParentID = 1000 and Code like '59%'");
    EXPECT_GE(changed, done);
    EXPECT_LE(changed, done + 1) << "the account at hand, and no other";
    if (deletes) {
      EXPECT_EQ(number("select count(*) from tblAccountParent where ID > 1000 or ID = 1000"),
                number("select count(*) from tblAccount a, tblAccount b where a.ID >= 1000 and b.ID > a.ID "
                       "and (a.ID = 1000 or (a.ID - 1001) / 3 = (b.ID - 1001) / 3)"));
    } else {
      // Accounts are recoded in the order of their old codes, none skipped.
      EXPECT_EQ(number("select count(*) from tblAccount where ParentID = 1000 and Code like '59%' and Code "
                       "<> '5' || (90001 + (ID - 1001) / 3)"),
                0);
      EXPECT_EQ(number("select count(*) from tblAccount where ParentID = 1000 and Code like '50%' and Code "
                       "<> '5' || printf('%04d', ID - 1000)"),
                0);
    }
  }
}

}  // namespace
}  // namespace ledgertree::testing
