// The search behind selectors and pickers, on lists that no demo chart has: long, without codes, without
// order.

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>
#include <thread>

#include "engines/sqlite/embedded_connection.h"
#include "support/failure.h"
#include "support/temporary_database.h"

namespace ledgertree::engines::sqlite {
namespace {

class ViewSearch : public ::testing::Test {
 protected:
  ViewSearch() {
    database.execute(
        "begin; insert into tblAccountBranch (ID, Code, Name) with recursive n(i) as (select 1 union all "
        "select i + 1 from n where i < 20000) select i, case when i > 900 then substr('aAbB', 1 + i % 4, 1) "
        "|| i / 40 end, case when i % 1000 = 7 then 'شعبه كرماني ' else 'دفتر ' end || i from n; commit;"
        "create view vwShares as select ID, ID / 3 * 0.5 as Code, Name from tblAccountBranch where ID < 40;"
        "create view vwPlain as select ID, Code || '' as Code, Name || '' as Name from tblAccountBranch");
  }

  /// Asks for page after page until the rows are at their end; every row may come once. Gives the number of
  /// pages.
  int readAll(data::SearchRequest request, std::set<std::int64_t>& ids) {
    int pages = 0;
    do {
      const data::SearchPage page = connection.search(request);
      EXPECT_LE(page.rows.count(), request.limit);
      for (std::size_t row = 0; row < page.rows.count(); ++row)
        EXPECT_TRUE(ids.insert(page.rows.value(row, 0).toInt64()).second);
      request.continuation = page.continuation;
      ++pages;
    } while (!request.continuation.empty() && pages < 5000);
    return pages;
  }

  static data::SearchRequest requestFor(const std::string& view, const std::string& text) {
    return {.view = view, .columns = {"Code", "Name"}, .text = text, .continuation = {}, .cancelled = {}};
  }

  testing::TemporaryDatabase database;
  EmbeddedConnection connection{database.file().string()};
};

TEST_F(ViewSearch, PagesAndSlicesGiveEveryRowOnce) {
  for (const char* const view : {"vwAccountBranchMajor", "Host.dbo.[vwPlain]"}) {
    std::set<std::int64_t> all;
    data::SearchRequest request = requestFor(view, "  ");
    request.limit = 470;
    EXPECT_EQ(readAll(request, all), 43);
    EXPECT_EQ(all.size(), 20000U);

    // One in a thousand, typed with other letters and digits than it was written with.
    std::set<std::int64_t> hits;
    request.text = " کرمانی";
    request.slice = std::chrono::milliseconds(1);
    // Whoever is asked for more patience takes longer than the slice, on a machine of any speed.
    int questions = 0;
    request.cancelled = [&questions] {
      if (++questions <= 8) std::this_thread::sleep_for(std::chrono::milliseconds(3));
      return false;
    };
    EXPECT_GT(readAll(request, hits), 2);
    EXPECT_EQ(hits.size(), 20U);
    request.cancelled = nullptr;
    request.text = "دفتر ۱۹۹۹";
    hits.clear();
    readAll(request, hits);
    EXPECT_EQ(hits, (std::set<std::int64_t>{1999, 19990, 19991, 19992, 19993, 19994, 19995, 19996, 19997,
                                            19998, 19999}));
  }
}

TEST_F(ViewSearch, TheOrderIsThatOfTheFirstColumn) {
  std::set<std::int64_t> shares;
  data::SearchRequest inPairs = requestFor("vwShares", "");
  inPairs.limit = 2;
  EXPECT_EQ(readAll(inPairs, shares), 20);
  EXPECT_EQ(shares.size(), 39U) << "numbers with fractions are told apart";
  inPairs.limit = 4;
  inPairs.continuation = connection.search(inPairs).continuation;
  database.execute("delete from tblAccountBranch where ID = 2");
  EXPECT_EQ(connection.search(inPairs).rows.value(0, 0).toInt64(), 5) << "a row that is behind may go";
  data::SearchRequest request = requestFor("vwAccountBranchMajor", "");
  request.columns = {"Name", "Code"};
  request.limit = 3;
  const data::SearchPage page = connection.search(request);
  EXPECT_EQ(page.rows.columns(), (std::vector<std::string>{"ID", "Name", "Code"}));
  EXPECT_EQ(page.rows.value(0, 1).toText(), "دفتر 1");
  EXPECT_TRUE(page.rows.isNull(1, 2));
  EXPECT_EQ(page.rows.value(2, 1).toText(), "دفتر 100");

  database.execute(
      "insert into tblAccountBranch (ID, Name) values (30001, 'یک'), (30002, 'علی'), (30003, 'علي'), (30004, "
      "'علی'), (30005, 'ك'), (30006, 'پ'); create view vwShort as select * from tblAccountBranch where ID > "
      "30000");
  request.view = "vwShort";
  request.limit = 1;
  for (const std::int64_t id : {30006, 30002, 30003, 30004, 30005, 30001}) {
    const data::SearchPage next = connection.search(request);
    EXPECT_EQ(next.rows.value(0, 0).toInt64(), id) << "as in a dictionary, equal names across pages too";
    request.continuation = next.continuation;
  }
}

TEST_F(ViewSearch, ALongListWithoutAnIndexIsNeverSorted) {
  database.execute("insert into tblAccountBranch (ID, Code, Name) values (20001, 'A', 'دفتر')");
  data::SearchRequest request = requestFor("vwAccountBranchMajor", "دفتر");
  request.limit = 999;
  const data::SearchPage page = connection.search(request);
  EXPECT_EQ(page.rows.value(0, 0).toInt64(), 1);
  EXPECT_EQ(page.rows.value(998, 0).toInt64(), 1000);
  request.continuation = page.continuation;
  EXPECT_EQ(connection.search(request).rows.value(0, 0).toInt64(), 1001);
  std::set<std::int64_t> ids;
  request.continuation.clear();
  readAll(request, ids);
  EXPECT_EQ(ids.size(), 19981U);

  database.execute("create index ixBranchName on tblAccountBranch (Name)");
  EmbeddedConnection later(database.file().string());
  request.columns = {"Name"};
  EXPECT_EQ(later.search(request).rows.value(0, 1).toText(), "دفتر");
}

TEST_F(ViewSearch, ANewerKeystrokeEndsItAndHostileNamesAreRefused) {
  data::SearchRequest request = requestFor("vwPlain", "nowhere");
  int questions = 0;
  request.cancelled = [&questions] { return ++questions > 2; };
  const auto reasonOf = [&] {
    return testing::failureOf([&] { return connection.search(request); }).reason();
  };
  EXPECT_EQ(reasonOf(), data::DataError::Reason::Cancelled);
  request.cancelled = [] { return false; };
  EXPECT_EQ(connection.search(request).rows.count(), 0U);

  for (const char* const name :
       {"", "tblAccount;", "tblAccount Where 1=1", "(select 1)", "[a", "a'b", "vwNone", "a.b.c"}) {
    request.view = name;
    EXPECT_EQ(reasonOf(), data::DataError::Reason::Statement);
  }
  request = requestFor("vwPlain", "nowhere");
  request.columns = {"Name\" from tblUser --"};
  EXPECT_EQ(reasonOf(), data::DataError::Reason::Statement);
  request.columns = {"Name"};
  for (const char* const continuation :
       {"x", "3", "3 1", "9 1 x", "1 1 x", "-1 1 ", "3 99999999999999999999 x"}) {
    request.continuation = continuation;
    EXPECT_EQ(reasonOf(), data::DataError::Reason::Misuse);
  }
}

}  // namespace
}  // namespace ledgertree::engines::sqlite
