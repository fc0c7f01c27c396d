// What a server's driver does and SQLite's never: the ODBC calls pass through this file on their way to the
// driver.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <regex>
#include <set>
#include <thread>

#include "data/catalogue.h"
#include "db/version.h"
#include "engines/odbc/odbc_connection.h"
#include "engines/odbc/search_position.h"
#include "support/failure.h"
#include "support/temporary_database.h"
#include "support/text_table.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;
using testing::failureOf;

/// How the driver behaves from now on.
struct Driver {
  std::vector<Record> told;            ///< the records of the failure of every command; empty: none fails
  int failing = 0;                     ///< which call from now on fails
  std::string failed;                  ///< the name of the call that failed
  bool tellsNoRows = false;            ///< commands without rows say so
  std::set<SQLHSTMT> open;             ///< statements with unread rows
  std::u16string server;               ///< the file that acts as a server; empty: none
  std::deque<std::string> answers;     ///< replace those of the file; "+": one more for the same command
  std::string always;                  ///< after those, the answer to everything but the opening
  std::string last;                    ///< the last command
  std::vector<std::string> calls;      ///< calls that change the state of the driver, in order
  std::optional<SQLSMALLINT> type;     ///< the type of every column
  int deadlocks = 0;                   ///< before the next answer
  std::string holder;                  ///< the answer to the query for the holder of a lock; empty: none
  bool dead = false;                   ///< the connection is broken
  std::optional<std::string> silence;  ///< commands wait until interrupted, and end in this state
  bool waits = false;                  ///< commands and rows wait to see whether they are interrupted
  int lost = 0;                        ///< interruptions without effect
  std::optional<int> returns;          ///< what a procedure returns after its last result
  SQLINTEGER* result = nullptr;
  SQLLEN* resultLength = nullptr;

  /// Answers the queries of an opening: no history, and the schema's version or one `newer`.
  void opens(int codePage, int newer = 0) {
    answers = {"select " + std::to_string(codePage), "+select " + std::to_string(db::schemaVersion() + newer),
               "+select 0"};
  }
  /// The number of calls that contain `words`.
  [[nodiscard]] auto count(const char* words) const {
    return std::count_if(calls.begin(), calls.end(),
                         [words](auto& call) { return call.find(words) != call.npos; });
  }
} driver;
/// Whether a test of this file is running: other tests reach the real driver.
bool playing = false;

std::mutex interrupting;
std::condition_variable interrupted;
int interruptions = 0;

template <typename Call>
Call* real(const char* name) {
  return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name));
}

/// Whether this is the call that fails.
bool fails(const char* name) {
  if (--driver.failing != 0) return false;
  driver.failed = name;
  return true;
}

SQLRETURN failWith(std::string state, int number, std::string words) {
  driver.told = {{std::move(state), number, std::move(words)}};
  return SQL_ERROR;
}

/// Replaces the server's "top" by the file's "limit".
std::u16string forSqlite(const std::string& text) {
  static const std::regex kTop(R"(^select top \((\d+)\) (.*)$)");
  return text::wideText(std::regex_replace(text, kTop, "select $2 limit $1"));
}

class DriverCalls : public ::testing::Test {
 protected:
  DriverCalls() {
    driver = {};
    playing = true;
  }
  ~DriverCalls() override {
    driver = {};
    playing = false;
  }

  static data::SearchRequest inView(std::vector<std::string> columns, std::size_t limit) {
    data::SearchRequest request;
    request.view = "v";
    request.columns = std::move(columns);
    request.limit = limit;
    return request;
  }

  const testing::TemporaryFolder folder_;
  const std::string path_ = (folder_.path() / "calls.db").string();
  const data::ConnectionText text_{"ODBC Driver=SQLite3;Database=" + data::quoteConnectionValue(path_)};
  OdbcConnection connection_{text_};
};

TEST_F(DriverCalls, ACommandThatChangesNoRowIsNoFailure) {
  connection_.run("create table t(ID integer)");
  driver.tellsNoRows = true;
  EXPECT_EQ(connection_.run("delete from t"), std::nullopt);
}

TEST_F(DriverCalls, AConnectionCarriesOneStatementAtATime) {
  connection_.run("create table t(ID integer)");
  connection_.run("insert into t values (1), (2), (3), (4), (5)");
  std::string seen;
  connection_.walk("select ID from t order by ID", [&](const data::Rows& row) {
    seen += row.value(0, 0).toText();
    connection_.run("update t set ID = ID + 10 where ID = " + row.value(0, 0).toText());
    connection_.walk("select count(*) from t where ID > 10", [&](const data::Rows& inner) {
      seen += "(" + inner.value(0, 0).toText() + ")";
      return false;
    });
    return row.value(0, 0) != data::Value(4);
  });
  EXPECT_EQ(seen, "1(1)2(2)3(3)4(4)");
  EXPECT_EQ(connection_.run("select max(ID) from t")->value(0, 0).toText(), "14");
  // Time that the caller spends on a row doesn't count as the command's.
  OdbcConnection hasty(text_, std::chrono::milliseconds(500));
  interruptions = 0;
  hasty.walk("select ID from t", [&](const data::Rows&) {
    if (!std::exchange(driver.waits, true)) std::this_thread::sleep_for(std::chrono::milliseconds(1300));
    return (seen += "r").size() < 18;
  });
  EXPECT_EQ(interruptions, 0);
}

TEST_F(DriverCalls, WhatTheServerSaysIsToldInTheWordsOfAPerson) {
  const std::map<std::string, Reason> reasons{
      {"Constraint", Reason::Constraint}, {"Busy", Reason::Busy},       {"TooLong", Reason::TooLong},
      {"Storage", Reason::Storage},       {"TimeOut", Reason::TimeOut}, {"Connection", Reason::Connection},
      {"Statement", Reason::Statement},   {"Denied", Reason::Denied}};
  for (const auto& row : testing::tableOf("engines/odbc/driver_text.txt", "failures")) {
    SCOPED_TRACE(row[0]);
    driver.told.clear();
    connection_.run("select 1");
    const int number = std::stoi(row[0].substr(6));
    driver.told = {{"01000", 5701, "[Driver][Server]Changed database context."},
                   {row[0].substr(0, 5), number, "[Driver][Server] the words"},
                   {"42000", 3621, "[Driver][Server]The statement has been terminated."}};
    const auto told = driver.told;
    EXPECT_FALSE(failureOf([&] { connection_.run("select 2"); }).leavesOpen());
    driver.told.clear();
    connection_.run("select 1");
    driver.told = told;
    const data::DataError failure = failureOf([&] { connection_.run("update t set a = 2"); });
    EXPECT_EQ(failure.reason(), reasons.at(row[1]));
    EXPECT_EQ(failure.number(), number);
    EXPECT_EQ(failure.what(), row[2]);
    EXPECT_EQ(failure.statement(), "update t set a = 2");
  }
  for (const std::string& unreadable : {std::string("select 1\0", 9), std::string("select '\xD9'")})
    EXPECT_EQ(failureOf([&] { connection_.run(unreadable); }).reason(), Reason::Misuse);
}

TEST_F(DriverCalls, APasswordThatTheDriverRepeatsIsntShownAndAMissingDriverIsToldAsThat) {
  const auto told = [](const std::string& text) {
    OdbcConnection connection{data::ConnectionText("ODBC Driver=SQLite3;Database=x;" + text)};
    return std::string(failureOf([&] { connection.run("select 1"); }).what());
  };
  driver.told = {{"08001", 0, "Unable to connect"}, {"28000", 18456, "Login failed for sa with very-hidden"}};
  for (const char* const key : {"Password", "PWD"})
    EXPECT_EQ(told("UID=sa;" + std::string(key) + "=very-hidden"),
              "پايگاه داده نام کاربر يا رمز را نپذيرفت. متن اتصال را اصلاح نماييد. (18456, 28000)");
  failWith("08001", 0, "Unable to connect");
  driver.told.push_back({"01000", 20002, "connection failed"});
  EXPECT_TRUE(told("").starts_with("پايگاه داده در دسترس نيست."));
  EXPECT_TRUE(told("Encrypt=yes").starts_with("سرور پايگاه داده ارتباط رمزنگاري شده (TLS) را نپذيرفت."));
  for (const auto& [state, words] :
       {std::pair("IM002", "no"), {"IM003", "no"}, {"01000", "Can't open lib 'x'"}}) {
    failWith(state, 0, "[unixODBC][Driver Manager]" + std::string(words));
    EXPECT_TRUE(told("").starts_with("راه انداز ODBC باز نميشود.")) << state;
  }
}

TEST_F(DriverCalls, ASessionTellsTheDriverAllThisFromOpeningToClosing) {
  static constexpr data::Parameter kParameters[] = {
      {"@Title", data::ParameterType::Text, 20}, {"@Amount", data::ParameterType::Money},
      {"@Day", data::ParameterType::DateTime},   {"@Number", data::ParameterType::Int},
      {"@None", data::ParameterType::Int},       {"@Long", data::ParameterType::Text, 3}};
  const data::Value values[] = {
      "حساب", *data::Money::parse("12.3456"), data::DateTime{2024, 2, 29, 13, 14, 15}, -7, {}, "😀😀"};
  driver.server = text::wideText("Driver=SQLite3;Database=" + path_);
  driver.opens(65001);
  for (const char* more : {"select 5 as a", "+select 6", "select 7", "+select 8"})
    driver.answers.emplace_back(more);
  driver.returns = 77;
  {
    OdbcConnection server(data::ConnectionText("Data Source=srv;PWD=x;Connect Timeout=7"),
                          std::chrono::milliseconds(2500));
    EXPECT_EQ(server.run("select 'ی' as a")->value(0, 0).toText(), "5");
    EXPECT_EQ(server.call({"spAny", kParameters}, values), 77);
  }
  EXPECT_EQ(driver.calls, testing::linesOf("engines/odbc/driver_text.txt", "calls"));
}

TEST_F(DriverCalls, WhatComesBesideTheAnswerDoesntStandForIt) {
  driver.answers = {"select 1", "+select 2"};
  EXPECT_EQ(connection_.run("-- one\n/* a trigger selects */ UPDATE t set ID = 1"), std::nullopt);
  driver.answers = {"create table x(ID)", "+select 5"};
  int seen = 0;
  connection_.walk("exec x", [&](auto&) { return ++seen == 0; });
  EXPECT_EQ(seen, 1);
  for (const auto& read : {std::function([&] { connection_.run("select 1"); }),
                           {[&] { connection_.walk("select 1", [](auto&) { return true; }); }},
                           {[&] { connection_.search(inView({}, 9)); }}}) {
    driver.told.clear();
    driver.answers = {"select 1 as ID", "+fail", "+late"};
    EXPECT_EQ(failureOf(read).reason(), Reason::Constraint);
    EXPECT_TRUE(driver.answers.empty()) << "a batch runs to its end only where its results are read";
  }
  driver.told.clear();
  driver.answers = {"select 1"};
  EXPECT_EQ(failureOf([&] {
              connection_.call({"spAny", {}}, {});
            }).reason(),
            Reason::Statement)
      << "a procedure without a return value";
  failWith("42000", 208, "");
  driver.dead = true;
  driver.calls.clear();
  EXPECT_EQ(failureOf([&] { connection_.run("select 1"); }).reason(), Reason::Connection);
  driver.told.clear();
  connection_.run("select 1");
  EXPECT_EQ(driver.count("connect Driver"), 1);
}

TEST_F(DriverCalls, APacketIsOneBatchWithAMarkBehindEachOfItsCommands) {
  static constexpr data::Parameter kNumber[] = {{"@Number", data::ParameterType::Int}};
  static const data::Procedure asking{"spAny", kNumber};
  const std::vector<data::Command> commands{{.statement = "select 'ی', N'ی'"},
                                            {.procedure = &asking, .values = {-7}},
                                            {.statement = "update t set ID = 1"}};
  driver.server = text::wideText("Driver=SQLite3;Database=" + path_);
  OdbcConnection server(data::ConnectionText("Data Source=srv"));
  driver.opens(1256);
  server.run("select 1");
  const auto sent = [&](const std::vector<std::string>& answers) {
    driver.told.clear();
    driver.answers = {answers.begin(), answers.end()};
    return server.runTogether(commands);
  };
  const std::string mark = "+select 7 as LedgerTreeResult";
  data::Answers answers = sent({"select 5 as a", "+select 6 as a", mark, "+select 9 as b", mark, mark});
  EXPECT_EQ(
      driver.last,
      "declare @Result int begin try exec(N'select ''ي'', N''ی'''); select @Result as LedgerTreeResult "
      "exec @Result = spAny -7; select @Result as LedgerTreeResult exec(N'update t set ID = 1'); select "
      "@Result as LedgerTreeResult end try begin catch; throw; end catch");
  ASSERT_EQ(answers.ran.size(), 3U);
  EXPECT_EQ(testing::allRows(*answers.ran[0].rows), "5");
  EXPECT_TRUE(!answers.ran[1].rows && answers.ran[1].result == 7 && !answers.ran[2].rows);
  // A failure after the last mark is that of the last command, and so is an end without a mark.
  for (const auto& [told, ran] : {std::pair(std::vector<std::string>{"fail"}, 0U),
                                  {{"select 5 as a", mark, "+fail"}, 1U},
                                  {{"select 5 as a", mark, mark, mark, "+fail"}, 2U},
                                  {{"select 5 as a", mark, mark}, 2U}}) {
    answers = sent(told);
    ASSERT_EQ(answers.ran.size(), ran);
    const data::DataError failure = failureOf([&] { std::rethrow_exception(answers.failure); });
    EXPECT_EQ(failure.statement(), ran == 1 ? "spAny" : commands[ran].statement);
  }
}

TEST_F(DriverCalls, WhatLostAgainstAnotherProgramIsTriedAgainButNotInTheMiddleOfATransaction) {
  const auto tries = [&](OdbcConnection& connection, int deadlocks) {
    driver.calls.clear();
    driver.told.clear();
    driver.deadlocks = deadlocks;
    bool told = false;
    try {
      connection.run("select 1 as tries");
    } catch (const data::DataError& failure) {
      told = failure.reason() == Reason::Busy;
    }
    return std::pair(told, std::count(driver.calls.begin(), driver.calls.end(), "send select 1 as tries"));
  };
  EXPECT_EQ(tries(connection_, 3), std::pair(false, 4L));
  EXPECT_EQ(tries(connection_, 4), std::pair(true, 4L));
  OdbcConnection installer(text_, std::chrono::seconds(30), Versions::Any);
  EXPECT_EQ(tries(installer, 1), std::pair(true, 1L));
  OdbcConnection hasty(text_, std::chrono::milliseconds(500));
  driver.waits = true;
  EXPECT_EQ(tries(hasty, 1), std::pair(true, 1L)) << "there is no time for a second one as long";
}

TEST_F(DriverCalls, ARefusedLockIsToldWithWhoHoldsItWhereTheServerSaysSo) {
  driver.server = text::wideText("Driver=SQLite3;Database=" + path_);
  driver.always = "select 1";
  OdbcConnection server(data::ConnectionText("Data Source=srv"), std::chrono::milliseconds(20));
  server.run("select 1");
  for (const auto& row : testing::tableOf("engines/odbc/driver_text.txt", "holders")) {
    driver.told = {{"42000", std::stoi(row[0]), "the words"}};
    driver.holder = row[2];
    driver.calls.clear();
    const data::DataError failure = failureOf([&] { server.run("update t set a = 2"); });
    EXPECT_EQ(failure.what(), row[3]);
    EXPECT_EQ(failure.reason(), row[0] == "51005" ? Reason::Constraint : Reason::Busy);
    EXPECT_TRUE(failure.number() == std::stoi(row[0]) && !failure.leavesOpen());
    EXPECT_EQ(driver.count("sys.dm_tran_locks"), row[1] == "unasked" ? 0 : 1) << row[3];
    EXPECT_EQ(driver.count(row[1].c_str()), row[1] == "unasked" ? 0 : 1);
    driver.told.clear();
    EXPECT_TRUE(server.run("select 1"));
  }
  EXPECT_EQ(driver.count("connect Driver"), 0) << "it is the same connection";
}

TEST_F(DriverCalls, EveryTypeOfAColumnComesAsTheValueThatItIs) {
  for (const auto& row : testing::tableOf("engines/odbc/driver_text.txt", "types")) {
    driver.type = static_cast<SQLSMALLINT>(std::stoi(row[0]));
    const data::Value value = connection_.run("select " + row[1] + " as a")->value(0, 0);
    EXPECT_EQ(std::to_string(value.variant().index()) + " <" + value.toText() + ">", row[2])
        << row[0] << row[1];
  }
  std::string notes;
  for (int count = 0; count < 5000; ++count) notes += "abc ";
  const auto rows = connection_.run("select replace(hex(zeroblob(5000)), '00', 'abc ') as Notes");
  EXPECT_EQ(rows->columns(), std::vector<std::string>{"Notes"});
  EXPECT_EQ(rows->text(0, 0), notes);
}

TEST_F(DriverCalls, WhicheverCallFailsNothingIsLeftOpenAndTheNextCommandWorks) {
  static constexpr data::Parameter kParameters[] = {{"@Number", data::ParameterType::Int}};
  const std::function<void(OdbcConnection&)> commands[] = {
      [](auto& server) { server.run("select 'x' as a"); },
      [](auto& server) {
        server.walk("select 'x' as a", [&](auto&) { return server.run("select 1"), true; });
      },
      [](auto& server) { server.search(inView({"Code"}, 9)); },
      [](auto& server) {
        server.call({"spAny", kParameters}, {{data::Value(1)}});
      }};
  std::vector<std::string> record;
  for (const auto& command : commands) {
    for (int call = 1;; ++call) {
      driver = {};
      driver.server = text::wideText("Driver=SQLite3;Database=" + path_);
      driver.always = "select 1 as ID, 'x' as Code";
      driver.returns = 0;
      std::string told = "nothing";
      {
        OdbcConnection server(data::ConnectionText("Data Source=srv"));
        if (&command != commands) server.run("select 1");  // only the first command includes the opening
        driver.failing = call;
        try {
          command(server);
        } catch (const data::DataError& failure) {
          const std::string message = failure.what();
          told = std::to_string(static_cast<int>(failure.reason())) + " " +
                 message.substr(message.rfind('(') + 1);
        }
        if (driver.failed.empty()) break;
        const std::string failed = std::exchange(driver.failed, {});
        EXPECT_EQ(server.run("select 1")->value(0, 0), data::Value(1)) << failed;
        record.push_back(failed + ": " + told + ", " + std::to_string(driver.count("connect Driver")));
      }
      EXPECT_EQ(driver.count("open "), driver.count("close ")) << record.back();
    }
    record.emplace_back("all");
  }
  const std::vector<std::string> expected = testing::linesOf("engines/odbc/driver_text.txt", "failing calls");
  ASSERT_EQ(record.size(), expected.size());
  for (std::size_t line = 0; line < record.size(); ++line) EXPECT_EQ(record[line], expected[line]) << line;
}

TEST_F(DriverCalls, ASessionKeepsToTheCodePageAndTheVersionThatTheServerTells) {
  driver.server = text::wideText("Driver=SQLite3;Database=" + path_);
  const data::ConnectionText text("Data Source=srv;Initial Catalog=books;ODBC Driver=FreeTDS");
  for (const auto& [page, sent] :
       {std::pair(1256, "select 'ي' as a"), {1252, "select 'ي' as a"}, {65001, "select 'ی' as a"}}) {
    driver.opens(page);
    OdbcConnection connection(text);
    connection.run("select 'ی' as a");
    EXPECT_EQ(driver.last, sent) << page;
  }
  for (const int other : {-1, 1}) {
    driver.opens(1256, other);
    OdbcConnection connection(text);
    driver.calls.clear();
    EXPECT_EQ(failureOf([&] { connection.run("select 1"); }).reason(), Reason::Connection);
    EXPECT_EQ(driver.count("disconnect"), 1);
    driver.opens(1256, other);
    OdbcConnection installer(text, std::chrono::hours(2), Versions::Any);
    EXPECT_TRUE(installer.run("select 1"));
    EXPECT_EQ(driver.count("lock_timeout 30000;"), 1);
  }
  driver.answers = {"fail"};
  driver.dead = true;
  EXPECT_EQ(failureOf([&] { OdbcConnection(text).run("select 1"); }).reason(), Reason::Connection);
  EXPECT_EQ(driver.last.substr(0, 8), "declare ");
}

TEST_F(DriverCalls, ASearchGoesOnBehindEveryKindOfRow) {
  connection_.run("create table t(ID integer, Code varchar(20), Name varchar(20))");
  connection_.run(
      "insert into t values (1, '9', 'x'), (2, '91', 'x'), (3, '92', '9z'), (4, '5', '9x'), (5, '6', 'x9'), "
      "(6, null, '9'), (7, 'z', 'z')");
  // Replaces unreadable parts: the letters that folding drops, and the text before each column.
  static const std::pair<std::regex, const char*> kReadable[] = {
      {std::regex("\t[^\\]]*\uFEFF"), "*"},
      {std::regex("\x1F"), "^"},
      {std::regex(R"(concat\([^ ]+ [^ ]+ [^ ]+ [^ ]+ collate Latin1_General_BIN2)"), "TEXT"},
      {std::regex("replace\\(replace\\(TEXT, N' ', N''\\), N'\u200C', N''\\)"), "BARE"},
      {std::regex(" nvarchar.4000. = N"), "="}};
  std::vector<std::string> record;
  data::SearchRequest request = inView({"Code", "Na]me"}, 2);
  const auto page = [&](const std::vector<std::string>& batches) {
    for (const std::string& batch : batches) {
      const bool goesOn = batch.front() == '+';
      driver.answers.push_back((goesOn ? "+" : "") +
                               ("select * from t where ID in (" + batch.substr(goesOn)) + ") order by ID");
    }
    driver.calls.clear();
    const data::SearchPage found = connection_.search(request);
    for (std::string& call : driver.calls) {
      if (!call.starts_with("send ")) continue;
      for (const auto& [what, by] : kReadable) call = std::regex_replace(call, what, by);
      record.push_back(call);
    }
    std::string ids;
    for (std::size_t row = 0; row < found.rows.count(); ++row) ids += found.rows.value(row, 0).toText() + " ";
    record.push_back(ids + "found, to go on at " + found.continuation + ".");
    request.continuation = found.continuation;
  };
  request.order = data::SearchOrder::Code;
  request.text = " 9 ";
  request.early = [&record](const data::Rows& rows) {
    record.push_back("early " + std::to_string(rows.count()) + " of " + driver.answers.front());
  };
  for (const auto& batches : {std::vector<std::string>{"1", "+2"}, {"2,3", "+4,5"}, {"4,5", "+5,6", "6"}})
    page(batches);
  request.slice = std::chrono::milliseconds(1);
  driver.waits = true;
  page({"1", "+7"});
  request.text = "حیک";
  request.continuation.clear();
  page({"1", "+7"});
  driver.waits = false;
  for (const auto& [type, id] : {std::pair(SQL_VARCHAR, "2"),
                                 {SQL_WVARCHAR, "3"},
                                 {SQL_INTEGER, "4"},
                                 {SQL_WVARCHAR, "6"},
                                 {0, "5"}}) {
    driver.type = static_cast<SQLSMALLINT>(type);
    request = inView({"Code", "Name"}, 1);
    request.order = type == 0 ? data::SearchOrder::Key : data::SearchOrder::Name;
    page({id});
    page({std::string(id) + ",6"});
  }
  request = inView({"Code", "Name"}, 1);
  request.order = data::SearchOrder::Name;
  request.text = "9";
  page({"3"});
  EXPECT_EQ(record, testing::linesOf("engines/odbc/driver_text.txt", "search"));
  for (const auto& [text, pattern] : {std::pair(std::string("9-"), "%_["), {std::string(9000, 'x'), ""}}) {
    request.text = text;
    static_cast<void>(failureOf([&] { connection_.search(request); }));
    EXPECT_NE(driver.last.find(pattern), std::string::npos) << "a hyphen makes no range of letters";
    EXPECT_LT(driver.last.size(), 9000U) << "a server takes no more of it";
    const bool whole = text.size() < 40;
    EXPECT_EQ(driver.last.find("and not (") != std::string::npos, whole) << "half a word excludes no row";
  }
  request.continuation = Position(Pass::Whole).toContinuation();
  EXPECT_EQ(failureOf([&] { connection_.search(request); }).reason(), Reason::Misuse)
      << "of a search by code";
}

TEST_F(DriverCalls, ASearchThatIsGivenUpEndsAloneAndItsConnectionWhereTheServerIsSilent) {
  data::SearchRequest unwanted = inView({}, 1);
  unwanted.cancelled = [] { return true; };
  EXPECT_EQ(failureOf([&] { connection_.search(unwanted); }).reason(), Reason::Cancelled);
  EXPECT_EQ(driver.last, "") << "nothing is asked for nobody";
  for (const auto& [state, lost, reason] : {std::tuple("HY008", 0, Reason::Cancelled),
                                            {"HY000", 1, Reason::Cancelled},
                                            {"HY008", 0, Reason::Misuse}}) {
    bool begun = false;
    interruptions = 0;
    driver.silence = state;
    driver.lost = lost;
    data::SearchRequest request = inView({}, 1);
    request.cancelled = [&, reason = reason] {
      if (begun && reason == Reason::Misuse) throw data::DataError(reason, 0, "");
      return std::exchange(begun, true);
    };
    EXPECT_EQ(failureOf([&] { connection_.search(request); }).reason(), reason);
    driver = {};
    driver.waits = true;
    interruptions = 0;
    EXPECT_EQ(connection_.run("select 1")->count(), 1U);
    EXPECT_EQ(interruptions, 0);
    EXPECT_EQ(driver.count("connect Driver"), lost) << state;
  }
  for (const auto& [state, open] : {std::pair("HY008", false), {"HY000", true}}) {
    driver = {};
    driver.silence = state;
    interruptions = 0;
    OdbcConnection hasty(text_, std::chrono::milliseconds(1));
    const data::DataError late = failureOf([&] { hasty.run("update t set ID = 1"); });
    EXPECT_EQ(late.reason(), Reason::TimeOut);
    EXPECT_EQ(late.leavesOpen(), open) << state;
    driver.silence.reset();
    driver.told.clear();
    hasty.run("select 1");
    EXPECT_EQ(driver.count("connect Driver"), 2) << "nobody knows what runs on the first";
  }
}

}  // namespace
}  // namespace ledgertree::engines::odbc

using ledgertree::engines::odbc::driver;
using ledgertree::engines::odbc::fails;
using ledgertree::engines::odbc::failWith;
using ledgertree::engines::odbc::playing;
using ledgertree::engines::odbc::real;

static void note(const std::string& call) { driver.calls.push_back(call); }

static bool isInterrupted() { return ledgertree::engines::odbc::interruptions > driver.lost; }

static std::string narrow(const SQLWCHAR* text, SQLINTEGER length) {
  return ledgertree::text::utf8Text(
      std::u16string(reinterpret_cast<const char16_t*>(text), static_cast<std::size_t>(length)));
}

extern "C" {

SQLRETURN SQLDriverConnectW(SQLHDBC connection, SQLHWND window, SQLWCHAR* in, SQLSMALLINT length,
                            SQLWCHAR* out, SQLSMALLINT room, SQLSMALLINT* needed, SQLUSMALLINT completion) {
  if (fails("connect")) return SQL_ERROR;
  note("connect " + narrow(in, length) + " " + std::to_string(completion));
  if (!driver.told.empty()) return SQL_ERROR;
  if (!driver.server.empty()) {
    in = reinterpret_cast<SQLWCHAR*>(driver.server.data());
    length = static_cast<SQLSMALLINT>(driver.server.size());
  }
  return real<decltype(SQLDriverConnectW)>("SQLDriverConnectW")(connection, window, in, length, out, room,
                                                                needed, completion);
}

static SQLRETURN answer(SQLHSTMT statement, std::string words) {
  if (driver.answers.empty() && !driver.always.empty()) {
    if (words.starts_with("declare @First"))
      driver.opens(65001);
    else
      words = driver.always;
  }
  if (!driver.answers.empty()) {
    words = driver.answers.front().substr(driver.answers.front().starts_with('+') ? 1 : 0);
    driver.answers.pop_front();
  }
  if (words == "fail") return failWith("23000", 2627, "there already");
  if (words == "late") return failWith("HYT00", 0, "");
  std::u16string wide = ledgertree::engines::odbc::forSqlite(words);
  return real<decltype(SQLExecDirectW)>("SQLExecDirectW")(statement, reinterpret_cast<SQLWCHAR*>(wide.data()),
                                                          static_cast<SQLINTEGER>(wide.size()));
}

SQLRETURN SQLExecDirectW(SQLHSTMT statement, SQLWCHAR* text, SQLINTEGER length) {
  using namespace ledgertree::engines::odbc;
  driver.last = narrow(text, length);
  note("send " + driver.last);
  std::unique_lock lock(interrupting);
  if (driver.waits) interrupted.wait_for(lock, std::chrono::milliseconds(300), isInterrupted);
  if (!driver.holder.empty() && driver.last.find("dm_tran_locks") != driver.last.npos) {
    driver.told.clear();
    driver.answers = {driver.holder};
  }
  if (driver.deadlocks >= 0 && driver.last.ends_with("tries")) driver.told.clear();
  if (driver.deadlocks-- > 0) return failWith("40001", 1205, "deadlock");
  if (!driver.told.empty() || fails("send")) return SQL_ERROR;
  if (!driver.open.empty())
    return failWith("HY000", 0, "Connection is busy with results for another command");
  if (driver.silence) {
    if (!interrupted.wait_for(lock, std::chrono::seconds(10), isInterrupted)) return failWith("08S01", 0, "");
    return failWith(*driver.silence, 0, "");
  }
  lock.unlock();
  const SQLRETURN result = answer(statement, driver.last);
  SQLSMALLINT columns = 0;
  if (SQL_SUCCEEDED(result)) real<decltype(SQLNumResultCols)>("SQLNumResultCols")(statement, &columns);
  if (columns != 0) driver.open.insert(statement);
  return driver.tellsNoRows && SQL_SUCCEEDED(result) && columns == 0 ? SQL_NO_DATA : result;
}

SQLRETURN SQLCancel(SQLHSTMT statement) {
  if (!driver.silence && !driver.waits) real<decltype(SQLCancel)>("SQLCancel")(statement);
  const std::lock_guard lock(ledgertree::engines::odbc::interrupting);
  ++ledgertree::engines::odbc::interruptions;
  ledgertree::engines::odbc::interrupted.notify_one();
  return SQL_SUCCESS;
}

SQLRETURN SQLDrivers(SQLHENV, SQLUSMALLINT direction, SQLCHAR* name, SQLSMALLINT, SQLSMALLINT*, SQLCHAR*,
                     SQLSMALLINT, SQLSMALLINT*) {
  static int place = 0;
  place = direction == SQL_FETCH_FIRST ? 0 : place + 1;
  std::strcpy(reinterpret_cast<char*>(name), place == 0 ? "SQLite3" : "FreeTDS");
  return place < 2 ? SQL_SUCCESS : SQL_NO_DATA;
}

SQLRETURN SQLAllocHandle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
  if (fails("open")) return SQL_ERROR;
  const SQLRETURN result = real<decltype(SQLAllocHandle)>("SQLAllocHandle")(type, parent, handle);
  if (SQL_SUCCEEDED(result)) note("open " + std::to_string(type));
  return result;
}

SQLRETURN SQLDisconnect(SQLHDBC connection) {
  note("disconnect");
  return real<decltype(SQLDisconnect)>("SQLDisconnect")(connection);
}

SQLRETURN SQLSetEnvAttr(SQLHENV environment, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER length) {
  if (fails("set")) return SQL_ERROR;
  note("set " + std::to_string(attribute) + " " + std::to_string(reinterpret_cast<std::size_t>(value)));
  return real<decltype(SQLSetEnvAttr)>("SQLSetEnvAttr")(environment, attribute, value, length);
}

SQLRETURN SQLSetConnectAttrW(SQLHDBC connection, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER length) {
  if (fails("set")) return SQL_ERROR;
  note("set " + std::to_string(attribute) + " " + std::to_string(reinterpret_cast<std::size_t>(value)));
  return real<decltype(SQLSetConnectAttrW)>("SQLSetConnectAttrW")(connection, attribute, value, length);
}

SQLRETURN SQLSetStmtAttrW(SQLHSTMT statement, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER length) {
  if (fails("set")) return SQL_ERROR;
  note("set " + std::to_string(attribute) + " " + std::to_string(reinterpret_cast<std::size_t>(value)));
  return real<decltype(SQLSetStmtAttrW)>("SQLSetStmtAttrW")(statement, attribute, value, length);
}

SQLRETURN SQLGetConnectAttrW(SQLHDBC connection, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER room,
                             SQLINTEGER* length) {
  if (attribute != SQL_ATTR_CONNECTION_DEAD || !playing)
    return real<decltype(SQLGetConnectAttrW)>("SQLGetConnectAttrW")(connection, attribute, value, room,
                                                                    length);
  *static_cast<SQLUINTEGER*>(value) = driver.dead ? SQL_CD_TRUE : SQL_CD_FALSE;
  return SQL_SUCCESS;
}

SQLRETURN SQLDescribeColW(SQLHSTMT statement, SQLUSMALLINT place, SQLWCHAR* name, SQLSMALLINT room,
                          SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* decimals,
                          SQLSMALLINT* nullable) {
  if (fails("describe")) return SQL_ERROR;
  const SQLRETURN result = real<decltype(SQLDescribeColW)>("SQLDescribeColW")(
      statement, place, name, room, length, type, size, decimals, nullable);
  if (*type != SQL_INTEGER) *type = driver.type.value_or(*type);
  return result;
}

SQLRETURN SQLNumResultCols(SQLHSTMT statement, SQLSMALLINT* count) {
  if (fails("count columns")) return SQL_ERROR;
  return real<decltype(SQLNumResultCols)>("SQLNumResultCols")(statement, count);
}

SQLRETURN SQLGetData(SQLHSTMT statement, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER value, SQLLEN room,
                     SQLLEN* length) {
  if (fails("get")) return SQL_ERROR;
  return real<decltype(SQLGetData)>("SQLGetData")(statement, column, type, value, room, length);
}

SQLRETURN SQLFetch(SQLHSTMT statement) {
  if (fails("fetch")) return SQL_ERROR;
  if (driver.waits) {
    std::unique_lock lock(ledgertree::engines::odbc::interrupting);
    ledgertree::engines::odbc::interrupted.wait_for(lock, std::chrono::milliseconds(300), isInterrupted);
  }
  return real<decltype(SQLFetch)>("SQLFetch")(statement);
}

SQLRETURN SQLMoreResults(SQLHSTMT statement) {
  driver.open.erase(statement);
  if (fails("more")) return SQL_ERROR;
  if (!driver.answers.empty() && driver.answers.front().starts_with('+')) {
    SQLFreeStmt(statement, SQL_CLOSE);
    return answer(statement, {});
  }
  if (driver.result != nullptr && driver.returns) {
    *driver.result = *driver.returns;
    *driver.resultLength = sizeof(SQLINTEGER);
  }
  return driver.told.empty() ? real<decltype(SQLMoreResults)>("SQLMoreResults")(statement) : SQL_NO_DATA;
}

SQLRETURN SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle) {
  driver.open.erase(handle);
  driver.result = nullptr;  // it points into the statement
  note("close " + std::to_string(type));
  return real<decltype(SQLFreeHandle)>("SQLFreeHandle")(type, handle);
}

SQLRETURN SQLGetDiagRecW(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT place, SQLWCHAR* state,
                         SQLINTEGER* number, SQLWCHAR* message, SQLSMALLINT room, SQLSMALLINT* length) {
  static const std::vector<ledgertree::engines::odbc::Record> kHurt{{"HY001", 0, "[Driver]no memory"}};
  const auto& told = driver.failed.empty() ? driver.told : kHurt;
  if (told.empty())
    return real<decltype(SQLGetDiagRecW)>("SQLGetDiagRecW")(type, handle, place, state, number, message, room,
                                                            length);
  if (static_cast<std::size_t>(place) > told.size()) return SQL_NO_DATA;
  const auto& record = told[static_cast<std::size_t>(place) - 1];
  const std::u16string words = ledgertree::text::wideText(record.message);
  std::copy_n(record.state.c_str(), record.state.size() + 1, state);
  std::copy_n(words.c_str(), words.size() + 1, message);
  *number = record.number;
  return SQL_SUCCESS;
}

SQLRETURN SQLBindParameter(SQLHSTMT statement, SQLUSMALLINT place, SQLSMALLINT use, SQLSMALLINT here,
                           SQLSMALLINT there, SQLULEN size, SQLSMALLINT decimals, SQLPOINTER data,
                           SQLLEN room, SQLLEN* length) {
  if (!playing)
    return real<decltype(SQLBindParameter)>("SQLBindParameter")(statement, place, use, here, there, size,
                                                                decimals, data, room, length);
  const auto told = [&](const char* type, const std::string& value) {
    note("bind " + std::to_string(place) + " " + type + "(" + std::to_string(size) + "," +
         std::to_string(decimals) + ") " + (*length == SQL_NULL_DATA ? "null" : value) + " " +
         std::to_string(room));
  };
  if (fails("bind")) return SQL_ERROR;
  if (use == SQL_PARAM_OUTPUT) {
    driver.result = static_cast<SQLINTEGER*>(data);
    driver.resultLength = length;
    told("RETURN", "");
    return SQL_SUCCESS;
  }
  const auto bytes = static_cast<std::size_t>(std::max<SQLLEN>(*length, 0));
  if (here == SQL_C_WCHAR && there == SQL_WVARCHAR)
    told("WVARCHAR",
         ledgertree::text::utf8Text(std::u16string(static_cast<const char16_t*>(data), bytes / 2)));
  if (here == SQL_C_CHAR && there == SQL_DECIMAL)
    told("DECIMAL", std::string(static_cast<const char*>(data), bytes));
  if (here == SQL_C_SLONG && there == SQL_INTEGER)
    told("INTEGER", std::to_string(*static_cast<const SQLINTEGER*>(data)));
  if (here == SQL_C_TYPE_TIMESTAMP && there == SQL_TYPE_TIMESTAMP) {
    const auto& time = *static_cast<const SQL_TIMESTAMP_STRUCT*>(data);
    const std::string day =
        std::to_string(time.year) + "-" + std::to_string(time.month) + "-" + std::to_string(time.day);
    told("TIMESTAMP", day + " " + std::to_string(time.hour) + ":" + std::to_string(time.minute) + ":" +
                          std::to_string(time.second));
  }
  return SQL_SUCCESS;
}

}  // extern "C"
