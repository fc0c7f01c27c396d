// The search of selectors and pickers, on lists unlike the demo chart: long, without codes, without an index.

#include <gtest/gtest.h>

#include <algorithm>
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
        "create view vwHalves as select ID * 0.5 as ID, Name from tblAccountBranch;"
        "create view vwPlain as select ID, Code || '' as Code, Name || '' as Name from tblAccountBranch");
  }

  /// Reads page after page to the end; every row may appear once. Returns the number of pages.
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

  /// A column of all pages; another search runs in between.
  std::string shown(data::SearchRequest request, std::size_t column) {
    std::string shown;
    int pages = 0;
    do {
      const data::SearchPage page = connection.search(request);
      for (std::size_t row = 0; row < page.rows.count(); ++row)
        shown += page.rows.value(row, column).toText() + "|";
      request.continuation = page.continuation;
      if (++pages == 2) static_cast<void>(connection.search(requestFor("vwPlain", "")));
    } while (!request.continuation.empty());
    return shown;
  }

  static data::SearchRequest requestFor(const std::string& view, const std::string& text) {
    return {.view = view,
            .columns = {"Code", "Name"},
            .order = data::SearchOrder::Code,
            .text = text,
            .continuation = {},
            .cancelled = {}};
  }

  testing::TemporaryDatabase database;
  EmbeddedConnection connection{database.file().string()};
};

TEST_F(ViewSearch, PagesAndSlicesGiveEveryRowOnce) {
  for (const auto order : {data::SearchOrder::Key, data::SearchOrder::Name, data::SearchOrder::Code}) {
    std::set<std::int64_t> all;
    data::SearchRequest request =
        requestFor(order == data::SearchOrder::Key ? "vwAccountBranchMajor" : "Host.dbo.[vwPlain]", "  ");
    request.order = order;
    request.limit = order == data::SearchOrder::Key ? 470 : 7000;
    EXPECT_EQ(readAll(request, all), 20000 / static_cast<int>(request.limit) + 1);
    EXPECT_EQ(all.size(), 20000U);

    // One row in a thousand, typed with other letters and digits than stored.
    std::set<std::int64_t> hits;
    request.text = " کرمانی";
    request.slice = std::chrono::milliseconds(1);
    // A caller that is slow to answer takes longer than the slice, on a machine of any speed.
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
    EXPECT_EQ(hits, (std::set<std::int64_t>{1999, 11999, 19990, 19991, 19992, 19993, 19994, 19995, 19996,
                                            19997, 19998, 19999}));
  }
}

TEST_F(ViewSearch, TheOrderIsThatOfTheFirstColumn) {
  std::set<std::int64_t> shares;
  data::SearchRequest inPairs = requestFor("vwShares", "");
  inPairs.limit = 2;
  EXPECT_EQ(readAll(inPairs, shares), 20);
  EXPECT_EQ(shares.size(), 39U) << "numbers with fractions are told apart";
  data::SearchRequest halves = requestFor("vwHalves", "");
  halves.columns = {"Name"};
  halves.order = data::SearchOrder::Key;
  halves.limit = 4;
  halves.continuation = connection.search(halves).continuation;
  database.execute("delete from tblAccountBranch where ID = 2");
  EXPECT_EQ(connection.search(halves).rows.value(0, 0).toText(), "2.5") << "a row that is behind may go";
  data::SearchRequest request = requestFor("vwAccountBranchMajor", "");
  request.columns = {"Name", "Code"};
  request.order = data::SearchOrder::Name;
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

TEST_F(ViewSearch, WhatBeginsWithTheTextComesFirst) {
  database.execute(
      "insert into tblAccountBranch (ID, Name) values (30001, 'گ كرماني'), (30002, 'پ کرماني'), (30003, "
      "'کرماني يزد'), (30004, 'كرمانی پارس'), (30005, 'بانک کرماني');"
      "insert into tblAccount (Code, Title) values ('۱۱', 'نقد'), ('110', 'بانك'), ('11', '11'), ('211', "
      "'تنخواه 11'), ('4', '11 بانک'), ('3', '١1'), ('حيك2', 'ح'), ('حیک ', 'خ'), ('6', 'خ حیک'), "
      "('5', 'حـيکها'), ('B_1', 'b'), ('ab_', 'c'), ('b_', 'd'), ('7', 'A b_'), ('b', 'b_'), (x'3131', 'e'), "
      "(null, '11 f')");
  data::SearchRequest names = requestFor("vwAccountBranchMajor", "کرمانی");
  names.order = data::SearchOrder::Name;
  names.columns = {"Name", "Code"};
  const std::pair<const char*, const char*> codes[] = {
      {"11", "11|۱۱|110||3|4|211|11|"},
      {" حیک", "حیک |حيك2|5|6|"},
      {"b_", "b_|B_1|b|7|ab_|"},
      {"بانک", "110|4|"},
  };
  for (const std::size_t limit : {2U, 100U}) {
    names.limit = 5 * limit;
    const std::string found = shown(names, 0);
    EXPECT_TRUE(found.starts_with("30004|30003|30005|30002|10007|")) << found;
    EXPECT_TRUE(found.ends_with("|9007|30001|")) << found;
    EXPECT_EQ(std::count(found.begin(), found.end(), '|'), 25);
    for (const auto& [text, expected] : codes) {
      data::SearchRequest accounts = requestFor("vwAccountMajor", text);
      accounts.limit = limit;
      EXPECT_EQ(shown(accounts, 1), expected) << text << " " << limit;
    }
  }
  // The remaining rows take longer than a slice.
  database.insertMany("tblAccount (Code, Title)", 1, 300, [](int) { return "'77', 'x'"; });
  data::SearchRequest many = requestFor("vwAccountMajor", "77");
  many.slice = std::chrono::milliseconds(1);
  many.cancelled = [] { return std::this_thread::sleep_for(std::chrono::milliseconds(3)), false; };
  std::set<std::int64_t> ids;
  readAll(many, ids);
  EXPECT_EQ(ids.size(), 300U);
}

TEST_F(ViewSearch, ANewerKeystrokeEndsItAndHostileNamesAreRefused) {
  data::SearchRequest request = requestFor("vwPlain", "nowhere");
  request.cancelled = [] { return true; };
  const auto reasonOf = [&] {
    return testing::failureOf([&] { return connection.search(request); }).reason();
  };
  EXPECT_EQ(reasonOf(), data::DataError::Reason::Cancelled);
  request.cancelled = [] { return false; };
  EXPECT_EQ(connection.search(request).rows.count(), 0U);
  request.cancelled = []() -> bool { throw data::DataError(data::DataError::Reason::TooLong, 0, ""); };
  EXPECT_EQ(reasonOf(), data::DataError::Reason::TooLong);
  // Cancelling a search doesn't cancel the walk around it.
  bool ended = false;
  int rows = 0;
  request.cancelled = [&ended] { return ended; };
  connection.walk("Select ID From tblAccountBranch", [&](auto&) {
    return ended = ended || connection.search(request).rows.count() == 0, ++rows < 20000;
  });
  EXPECT_EQ(rows, 20000);
  request.cancelled = nullptr;

  for (const char* const name :
       {"", "tblAccount;", "tblAccount Where 1=1", "(select 1)", "[a", "a'b", "vwNone", "a.b.c"}) {
    request.view = name;
    EXPECT_EQ(reasonOf(), data::DataError::Reason::Statement);
  }
  request = requestFor("vwPlain", "nowhere");
  request.columns = {"Name\" from tblUser --"};
  EXPECT_EQ(reasonOf(), data::DataError::Reason::Statement);
  request.columns = {"Name"};
  request.order = data::SearchOrder::Key;
  for (const char* const continuation : {"x", "k3", "k3 1", "k9 1 x", "k1 1 x", "k-1 1 ",
                                         "k3 99999999999999999999 x", "w3 1 x", "g", "g0 9 1 x", "g0 1 x"}) {
    request.continuation = continuation;
    EXPECT_EQ(reasonOf(), data::DataError::Reason::Misuse);
  }
}

}  // namespace
}  // namespace ledgertree::engines::sqlite
