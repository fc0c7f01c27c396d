#include "db/history.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <random>
#include <thread>

#include "data/data_error.h"
#include "data/dten.h"
#include "data/operation.h"
#include "db/check.h"
#include "db/schema.h"
#include "db/server_schema.h"
#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
#include "history/history.h"
#include "support/amount_of_work.h"
#include "support/failure.h"
#include "support/temporary_database.h"

namespace ledgertree::db {
namespace {

using data::OperationKind;

/// What the memory keeps of a chart: the accounts by their ID, and how often each row that belongs to one is
/// there.
struct Chart {
  std::map<std::string, std::map<std::string, std::string>> accounts;
  std::map<std::string, int> links;
  bool operator==(const Chart&) const = default;

  void link(const std::string& row, int times) {
    if ((links[row] += times) == 0) links.erase(row);
  }
};

/// A database whose memory is on, a gateway that works on it, and a bare program beside it.
class History : public ::testing::Test {
 protected:
  void SetUp() override {
    engines::sqlite::registerEmbedded(providers);
    engines::odbc::registerOdbc(providers);
    begin();
  }
  void begin(const std::string& more = {}) {
    database.reset();
    database.emplace();
    database->execute(
        "insert into tblAccount (ID, ParentID, Code, Title) values (1, null, '1', 'a'), (2, 1, '11', 'b'), "
        "(3, 2, '111', 'c'); insert into tblAccountRelatedObjects values (2, 1, null, null); "
        "insert into tblAccountPeriodAccount values (1, 1), (2, 1);" +
        more);
    turn(true);
    // A session of a server takes its time, and knows of the memory from its opening on.
    if (!testing::onServer() || gateway.cnMainData.ConnectionString().empty())
      gateway.cnMainData.ConnectionString(database->connectionText());
  }
  void turn(bool on) {
    database->asDba([on](auto& chart) { switchHistory(chart, on); });
  }
  [[nodiscard]] std::vector<std::string> faults() {
    return database->asDba([](auto& chart) { return historyFaults(chart); });
  }
  /// A server has one trigger where a file has one for each kind of statement.
  [[nodiscard]] static std::string trigger(const std::string& name, const std::string& event) {
    return name + (testing::onServer() ? "" : event);
  }
  [[nodiscard]] bool tried(const std::string& statement) {
    try {
      database->execute(statement);
    } catch (const std::exception&) {
      return false;
    }
    return true;
  }

  [[nodiscard]] Chart chart() {
    Chart now;
    std::string names = "ID";
    for (const RememberedColumn& column : rememberedColumns()) names += ", " + std::string(column.name);
    const data::Rows rows = database->read("select " + names + " from tblAccount");
    for (std::size_t row = 0; row < rows.count(); ++row)
      for (const RememberedColumn& column : rememberedColumns())
        now.accounts[cell(rows, row, "ID")][std::string(column.name)] = cell(rows, row, column.name);
    for (const LinkTable& table : linkTables()) {
      const data::Rows links = database->read("select * from " + std::string(table.name));
      for (std::size_t row = 0; row < links.count(); ++row) {
        std::string text = std::to_string(table.link);
        for (const auto column : table.columns) text += "|" + cell(links, row, column);
        now.link(text, 1);
      }
    }
    return now;
  }

  /// A chart as it was ahead of all that is kept, or from there as it is behind it.
  [[nodiscard]] Chart rolled(Chart chart, bool forward) {
    const std::string side = forward ? "New" : "Old";
    const std::string order = std::string(" order by ID ") + (forward ? "asc" : "desc");
    const data::Rows all = database->read("select * from tblAccountChange" + order);
    for (std::size_t row = 0; row < all.count(); ++row) {
      const int event = std::stoi(cell(all, row, "Event"));
      const std::int64_t fields = std::stoll(cell(all, row, "Fields"));
      const std::string account =
          cell(all, row, event == 2 && !forward && (fields & 1) != 0 ? "NewID" : "AccountID");
      if (event == (forward ? 3 : 1)) {
        EXPECT_EQ(chart.accounts.erase(account), 1U) << account;
        continue;
      }
      EXPECT_EQ(chart.accounts.count(account), event == 2 ? 1U : 0U) << account;
      auto values = chart.accounts[account];
      chart.accounts.erase(account);
      for (const RememberedColumn& column : rememberedColumns()) {
        const std::string name(column.name);
        if ((fields & column.bit) != 0) values[name] = cell(all, row, side + name);
      }
      chart.accounts[values["ID"]] = values;
    }
    const data::Rows links = database->read("select * from tblAccountLinkChange");
    for (std::size_t row = 0; row < links.count(); ++row) {
      const LinkTable& table =
          linkTables()[static_cast<std::size_t>(std::stoi(cell(links, row, "Link"))) - 1];
      static const char* const names[] = {"AccountID", "First", "Second", "Third"};
      std::string text = std::to_string(table.link);
      for (std::size_t place = 0; place < table.columns.size(); ++place)
        text += "|" + cell(links, row, names[place]);
      chart.link(text, (cell(links, row, "IsNew") == "1") == forward ? 1 : -1);
    }
    return chart;
  }
  void expectKept(const Chart& start) {
    const Chart now = chart();
    EXPECT_TRUE(rolled(now, false) == start) << "back";
    EXPECT_TRUE(rolled(start, true) == now) << "forward";
  }

  [[nodiscard]] data::Rows takeBack(std::int64_t number) {
    const data::OperationBlock block(gateway.cnMainData, {OperationKind::TakeBack, 7, number});
    return gateway.cnMainData.takeBack(number);
  }
  /// A statement of another program, which is told from the one before by the millisecond.
  void other(const std::string& statement) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    database->execute(statement);
  }
  [[nodiscard]] static std::string cell(const data::Rows& rows, std::size_t row, std::string_view column) {
    return testing::cellText(rows.value(row, rows.column(column).value()));
  }

  std::optional<testing::TemporaryDatabase> database;
  data::Providers providers;
  data::DtEn gateway{providers};
};

/// What only SQLite understands, or does.
bool isOfFiles(const std::string& statement) {
  constexpr const char* kWords[] = {"or replace", "limit", "on conflict", "rowid", "set ID"};
  return std::any_of(std::begin(kWords), std::end(kWords),
                     [&](const char* words) { return statement.find(words) != std::string::npos; });
}

/// Statements of any program, of all kinds that change a row; "?" is a number at random.
constexpr const char* kStatements[] = {
    "insert into tblAccount (ParentID, Code, Title) values ((select ID from tblAccount order by random() "
    "limit 1), 'Z?', 'ت?')",
    "insert into tblAccount (ParentID, Code, MaxDebit) select ID, Code || '?', 5 from tblAccount where ID < "
    "4",
    "insert or replace into tblAccount (ID, Code, Title) values (?, 'r?', null)",
    "insert or ignore into tblAccount (ID, Code) values (?, 'i?')",
    "insert into tblAccount (ID, Code) values (?, 'u?') on conflict (ID) do update set Code = 'U?'",
    "update tblAccount set Code = upper(Code), Notes = 'n?' where ID % 4 = ? % 4",
    "update tblAccount set ParentID = ? where ID = ?",
    "update or replace tblAccount set ID = ? where ID = ?",
    "update tblAccount set ID = ID + 20 where ID = ?",
    "delete from tblAccount where ID = ?",
    "delete from tblAccount where ID not in (select ParentID from tblAccount where ParentID is not null) and "
    "ID > ?",
    "insert or replace into tblAccountPeriodAccount values (?, ?)",
    "insert or ignore into tblAccountPeriodAccount select ID, ? from tblAccount",
    "update or replace tblAccountPeriodAccount set PeriodID = ? where AccountID = ?",
    "delete from tblAccountPeriodAccount where PeriodID = ?",
    "insert into tblAccountRelatedObjects values (?, -1, ?, -1)",
    "insert or replace into tblAccountRelatedObjects (rowid, AccountID, AccountGroupID) values (?, ?, ?)",
    "update or replace tblAccountRelatedObjects set rowid = ?, RelatedClassID = ? where rowid = ?",
    "delete from tblAccountRelatedObjects where AccountID = ?",
    "insert or replace into tblAccountRelatedClasses values (?, ?, 1, ?)",
    "update tblAccountRelatedClasses set IncludeAllObjects = 1 - IncludeAllObjects, Sequence = ?",
    "insert or replace into tblAccountRelatedClassesDetail values (?, 1, ?)",
    "delete from tblAccountRelatedClassesDetail",
    "insert into tblAccountRelatedClasses values (?, ?, 1, ?), (?, ?, 2, 0)",
    "insert into tblAccountRelatedClassesDetail values (?, 1, ?), (?, 1, 9)",
    "begin transaction; update tblAccount set Code = 'x?'; delete from tblAccountPeriodAccount; rollback",
};

TEST_F(History, WhateverAnyProgramDoesTheMemoryRolledBackGivesTheStartAndForwardToday) {
  const Chart start = chart();
  std::mt19937 dice(3);
  int done = 0;
  const int steps = testing::onServer() ? 100 : 600;
  for (int step = 0; step < steps && !HasFailure(); ++step) {
    std::string statement = kStatements[dice() % std::size(kStatements)];
    if (testing::onServer() && isOfFiles(statement)) continue;
    // With a program that lets triggers run by triggers too, as well as with the others.
    if (!testing::onServer())
      database->execute("pragma recursive_triggers = " + std::to_string(step / 300) +
                        "; pragma foreign_keys = " + std::to_string(step / 150 % 2));
    for (std::size_t place = statement.find('?'); place != std::string::npos; place = statement.find('?'))
      statement.replace(place, 1, std::to_string(1 + dice() % 9));
    if (tried(statement)) ++done;
    if (step % 10 != 0) continue;
    SCOPED_TRACE(std::to_string(step) + ": " + statement);
    expectKept(start);
  }
  EXPECT_GT(done, testing::onServer() ? 30 : 400);
  expectKept(start);
  EXPECT_EQ(
      database->number("select count(*) from tblAccountOperation where Kind <> 0 or UserID is not null"), 0);
  EXPECT_TRUE(faults().empty());

  // What is left behind a day begins with another chart, and goes on from it.
  database->execute("drop trigger " + trigger("trKeptOperation", "Update") +
                    "; update tblAccountOperation set Moment = '2020-01-01' "
                    "where ID % 400 < 200 and ID <> (select max(ID) from tblAccountOperation)");
  turn(true);
  const std::int64_t kept =
      database->number("select min(ID) from tblAccountOperation where Moment >= '2021-01-01'");
  EXPECT_GT(database->asDba([](auto& chart) { return pruneHistory(chart, "2021-01-01"); }), 0);
  EXPECT_EQ(database->number("select min(ID) from tblAccountOperation"), kept);
  const Chart later = rolled(chart(), false);
  database->execute("update tblAccount set Notes = 'behind'");
  expectKept(later);
}

TEST_F(History, AnOperationHasOneNumberAndItsUserAndNobodyElseGetsThem) {
  data::Account account{.parentID = 1, .code = "12", .title = "d"};
  std::int64_t number = 0;
  {
    const data::OperationBlock save(gateway.cnMainData, {OperationKind::NewAccount, 7});
    account.id = gateway.spAccountInsertAccount(account);
    number = save.number();
    other("update tblAccount set Title = 'e' where ID = 1");
    // An inner block belongs to the outer one.
    const data::OperationBlock inner(gateway.cnMainData, {OperationKind::Recode, 8});
    gateway.cnMainData.Execute("update tblAccount set Notes = 'x' where ID = 1");
    // What fails, and what changes nothing, leaves nothing.
    EXPECT_THROW(gateway.cnMainData.Execute("update tblAccount set NoLevel = null, Notes = 'y' where ID = 1"),
                 data::DataError);
    EXPECT_EQ(gateway.spAccountInsertAccount(account), 0);
    gateway.cnMainData.Execute("update tblAccount set Notes = 'x' where ID = 1");
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(2));
  gateway.cnMainData.Execute("update tblAccount set Notes = 'z' where ID = 3");
  EXPECT_EQ(database->rows("select o.ID - " + std::to_string(number) +
                           ", UserID, Kind, AccountID, NewNotes, NewTitle from tblAccountOperation o "
                           "join tblAccountChange c on c.OperationID = o.ID order by c.ID"),
            "0|7|1|" + std::to_string(account.id) + "||d\n1|null|0|1|null|e\n0|7|1|1|x|e\n2|null|0|3|z|c");
  if (!testing::onServer()) {
    EXPECT_EQ(database->number("select count(*) from tblAccountOperationNow"), 0);
  }
}

TEST_F(History, NobodyChangesTheMemory) {
  database->execute("update tblAccount set Title = 't' where ID = 1; delete from tblAccountPeriodAccount");
  const std::string all =
      "select * from tblAccountOperation, tblAccountChange, tblAccountLinkChange, tblAccountMemory";
  const std::string before = database->rows(all);
  const std::pair<std::string, std::string> tables[] = {{"tblAccountOperation", "Kind"},
                                                        {"tblAccountChange", "Event"},
                                                        {"tblAccountLinkChange", "Link"},
                                                        {"tblAccountMemory", "Since"}};
  for (const auto& [table, column] : tables) {
    std::vector<std::string> statements = {"delete from " + table,
                                           "update " + table + " set " + column + " = " + column};
    if (!testing::onServer())
      for (const std::string& words : {"update or ignore " + table + " set ID = 1",
                                       "insert or replace into " + table + " select * from " + table,
                                       "insert or ignore into " + table + " select * from " + table})
        statements.push_back(words);
    for (const std::string& statement : statements)
      EXPECT_ANY_THROW(database->execute(statement)) << statement;
  }
  EXPECT_EQ(database->rows(all), before);
}

TEST_F(History, OffItKeepsWhatItHasAndOnAgainItBeginsAnew) {
  database->execute("update tblAccount set Title = 't' where ID = 1");
  const auto counted = [this] { return database->number("select count(*) from tblAccountChange"); };
  turn(false);
  {
    const data::OperationBlock save(gateway.cnMainData, {OperationKind::EditAccount, 7});
    gateway.cnMainData.Execute("update tblAccount set Title = 'u' where ID = 1");
    EXPECT_EQ(save.number(), 0);
    EXPECT_EQ(counted(), 1);
    EXPECT_THROW(static_cast<void>(gateway.cnMainData.takeBack(1)), data::DataError);
  }
  // A field that the memory didn't know yet gets its columns.
  database->execute("alter table tblAccountChange drop column NewNotes");
  turn(true);
  gateway.cnMainData.port().rest();
  EXPECT_EQ(gateway.spTarvoHasPermission(7, 301), 0);
  {
    const data::OperationBlock save(gateway.cnMainData, {OperationKind::EditAccount, 7});
    gateway.cnMainData.Execute("update tblAccount set Notes = 'v' where ID = 1");
    EXPECT_EQ(save.number(), 2);
  }
  EXPECT_EQ(database->text("select NewNotes from tblAccountChange where ID = 2"), "v");
  EXPECT_EQ(counted(), 2);

  // A chart that is taken up keeps its memory, and gets its triggers anew.
  const std::string dropped = trigger("trHistoryAccount", "Update");
  database->execute("drop trigger " + dropped);
  std::string found;
  const auto tell = [&found](std::string_view line) { found += line; };
  EXPECT_EQ(database->asDba([&](auto& chart) { return checkChart(chart, tell); }), 3U);
  EXPECT_NE(found.find("(" + dropped + ")"), std::string::npos) << found;
  if (testing::onServer())
    database->asDba([&](auto& chart) {
      if constexpr (std::is_same_v<decltype(chart), data::Connection&>) installServerSchema(chart, tell);
    });
  else
    static_cast<void>(openSchema(database->other(), {}, Mend::Everything));
  EXPECT_TRUE(faults().empty());
  EXPECT_THROW(
      static_cast<void>(database->asDba([](auto& chart) { return pruneHistory(chart, "1404/01/01"); })),
      data::DataError);
}

TEST_F(History, IsReadPageByPageAndTakenBackByWhoMay) {
  using history::Filter;
  EXPECT_TRUE(history::since(gateway).has_value());
  const data::DateTime start =
      data::DateTime::parse(database->text("select Since from tblAccountMemory")).value();
  {
    const data::OperationBlock save(gateway.cnMainData, {OperationKind::EditAccount, 7});
    gateway.cnMainData.Execute("update tblAccount set Code = '19', Notes = 'n' where ID = 2");
    gateway.cnMainData.Execute(
        "insert into tblAccountRelatedClasses (AccountID, ClassID, Sequence) values (2, 4, 1)");
  }
  other("delete from tblAccount where ID = 3");
  other("update tblAccount set Title = 'z', ParentID = null where ID = 2");
  const auto told = [this](const Filter& filter, std::int64_t before = 0, std::size_t limit = 100) {
    const history::Page page = history::page(gateway, filter, before, limit);
    std::string text;
    for (const history::Change& change : page.changes) {
      text += std::to_string(change.operation) + " " + std::to_string(change.userID.value_or(0)) + " " +
              std::to_string(static_cast<int>(change.subject)) + "/" +
              std::to_string(static_cast<int>(change.event)) + " " + std::to_string(change.accountID) + " " +
              change.code + " " + change.title + ":";
      for (const auto& [column, from, to] : change.fields)
        text += " " + column + " " + testing::cellText(from) + ">" + testing::cellText(to);
      text += "; ";
    }
    return text + std::to_string(page.next);
  };
  const std::string save =
      "1 7 3/1 2 19 b: ClassID null>4 Sequence null>1; 1 7 0/2 2 19 b: Code 11>19 Notes null>n; ";
  EXPECT_EQ(told({}, 0, 1), "3 0 0/2 2 19 z: ParentID 1>null Title b>z; 4");
  EXPECT_EQ(told({}, 3), save + "0");
  EXPECT_EQ(told({.from = start, .userID = 7}), save + "0");
  EXPECT_EQ(told({.until = start}), "0");
  EXPECT_EQ(told({.kind = OperationKind::EditAccount, .accountID = 3}), "0");
  EXPECT_EQ(told({.kind = OperationKind::Other, .accountID = 3}).substr(0, 20), "2 0 0/3 3 111 c: ID ");

  const history::Then then = history::accountAt(gateway, 2, start);
  EXPECT_EQ(then.code + then.title + std::to_string(then.parentID.value_or(0)), "11b1");
  EXPECT_TRUE(history::accountAt(gateway, 3, start).existed);
  EXPECT_FALSE(history::accountAt(gateway, 3, {.year = 2999}).existed);

  EXPECT_EQ(history::lastOperationOf(gateway, 7), 1);
  EXPECT_EQ(history::takeBack(gateway, 7, 1).missing, std::vector{data::Permission::EditAccount});
  EXPECT_EQ(chart().accounts.at("2").at("Code"), "19");
  database->execute(
      "insert into tblUser (ID, Name) values (7, 'g'); insert into tblUserPermission values (7, 30102);"
      "update tblAccount set Notes = null where ID = 2");
  const history::TakenBack refused = history::takeBack(gateway, 7, 1);
  ASSERT_EQ(refused.standing.size(), 1U);
  EXPECT_EQ(refused.standing[0].why, data::Obstacle::Changed);
  EXPECT_EQ(refused.standing[0].operation, 4);
  EXPECT_FALSE(refused.standing[0].userID.has_value());
  EXPECT_EQ(refused.operation, 0);
  other("update tblAccount set Notes = 'n' where ID = 2");
  EXPECT_EQ(history::takeBack(gateway, 7, 1).operation, 6);
  EXPECT_EQ(history::lastOperationOf(gateway, 7), 0);
  EXPECT_EQ(chart().accounts.at("2").at("Code"), "11");
  EXPECT_EQ(history::takeBack(gateway, 7, 6).operation, 7) << "by the right of what was taken back";
  EXPECT_EQ(history::lastOperationOf(gateway, 7), 1);
}

/// What stands in the way: the accounts, why, and by what.
struct Way {
  const char* operation;  ///< of a user
  const char* since;      ///< of another program
  const char* obstacles;  ///< none: the tables are as ahead of it
};

TEST_F(History, AnOperationIsTakenBackWholeOrNotAtAll) {
  using enum data::Obstacle;
  const Way ways[] = {
      {"update tblAccount set Code = 'n' + Code", "update tblAccount set Title = 'x' where ID = 2", ""},
      {"update tblAccount set Code = 'n' + Code", "update tblAccount set Code = 'x' where ID = 2", "2|1|2"},
      {"update tblAccount set Code = 'n' + Code", "update tblAccount set Code = '1' where ID = 5", "5|1|2"},
      {"update tblAccount set Code = 'n' + Code where ID < 4",
       "update tblAccount set Code = '111' where ID = 5", "3|5|null"},
      {"update tblAccount set Code = 'n' + Code", "delete from tblAccount where ID = 5", "5|2|2"},
      {"update tblAccount set ParentID = 5 where ID = 3", "", ""},
      {"update tblAccount set ParentID = 1 where ID = 3", "delete from tblAccount where ID = 2", "3|4|null"},
      {"update tblAccount set ParentID = null where ID = 3",
       "update tblAccount set ParentID = 3 where ID = 2", "3|12|null"},
      {"insert into tblAccount (ParentID, Code) values (3, '9')", "", ""},
      {"insert into tblAccount (ParentID, Code) values (3, '9')",
       "insert into tblAccount (ParentID, Code) values (6, '9')", "6|7|null"},
      {"insert into tblAccount (ParentID, Code) values (3, '9')",
       "insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, 6)", "6|6|null"},
      {"insert into tblAccount (ParentID, Code) values (3, '9')",
       "insert into tblAccountPeriodAccount values (6, 2)", "6|8|2"},
      {"insert into tblAccount (ParentID, Code) values (3, '9')",
       "update tblAccount set Notes = '' where ID = 6", "6|1|2"},
      {"delete from tblAccount where ID = 3", "", ""},
      {"delete from tblAccount where ID = 3", "insert into tblAccount (ID, Code) values (3, null)", "3|3|2"},
      {"delete from tblAccount where ID = 3", "delete from tblAccount where ID = 2", "3|4|null"},
      {"delete from tblAccount where ID = 3",
       "insert into tblAccountDocumentDetail (DocumentID, AccountID) values (1, 2)", "2|6|null"},
      {"delete from tblAccount where ID = 5", "insert into tblAccount (Code) values (' 5')", ""},
      {"delete from tblAccount where ID = 5", "insert into tblAccount (Code) values ('5 ')", "5|5|null"},
      {"update tblAccount set ID = 8 where ID = 5", "", "5|9|null\n5|2|null"},
      {"insert into tblAccountPeriodAccount (AccountID, PeriodID) select ID, 2 from tblAccount", "", ""},
      {"insert into tblAccountPeriodAccount (AccountID, PeriodID) select ID, 2 from tblAccount",
       "delete from tblAccountPeriodAccount where AccountID = 3", "3|1|2"},
      {"delete tblAccountPeriodAccount where PeriodID = 1",
       "insert into tblAccountPeriodAccount values (2, 1)", "2|1|2"},
      {"delete tblAccountPeriodAccount where PeriodID = 1", "delete from tblAccountRelatedObjects", ""},
      {"delete tblAccountRelatedObjects where AccountID = 5", "delete from tblAccount where ID = 5", "5|2|2"},
  };
  for (const auto& [operation, since, obstacles] : ways) {
    SCOPED_TRACE(std::string(operation) + "; " + since);
    if (testing::onServer() && isOfFiles(operation)) continue;
    begin(
        "insert into tblAccountDocument (ID, FarsiDocumentDate) values (1, '1404/01/01'); "
        "insert into tblAccount (ID, Code) values (5, '5'); insert into tblAccountRelatedObjects (AccountID) "
        "values (5)");
    const auto operations = [this] { return database->number("select count(*) from tblAccountOperation"); };
    const Chart ahead = chart();
    {
      const data::OperationBlock block(gateway.cnMainData, {OperationKind::EditAccount, 7});
      gateway.cnMainData.Execute(operation);
      ASSERT_EQ(block.number(), 1);
    }
    database->execute(since);
    const Chart before = chart();
    const std::int64_t kept = operations();
    EXPECT_EQ(testing::allRows(takeBack(1)), obstacles);
    if (*obstacles != '\0') {
      EXPECT_TRUE(chart() == before);
      EXPECT_EQ(operations(), kept);
      continue;
    }
    EXPECT_TRUE(*since != '\0' || chart() == ahead);
    EXPECT_FALSE(chart() == before);
    // Taking back is an operation too.
    const std::string own =
        "select ID from tblAccountOperation where Kind = 12 and UserID = 7 and TakesBack = 1";
    EXPECT_EQ(testing::allRows(takeBack(database->number(own))), "");
    EXPECT_TRUE(chart() == before);
  }
  EXPECT_EQ(testing::allRows(takeBack(99)), "null|11|null");
}

}  // namespace
}  // namespace ledgertree::db
