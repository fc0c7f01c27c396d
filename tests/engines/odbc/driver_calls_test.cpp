// What a server's driver does and SQLite's never: the calls of the layer pass through here on their way to
// the driver.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <regex>
#include <set>

#include "data/catalogue.h"
#include "db/version.h"
#include "engines/odbc/odbc_connection.h"
#include "support/failure.h"
#include "support/temporary_database.h"
#include "support/text_table.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;
using testing::failureOf;

/// How the driver answers from now on.
struct Driver {
  std::string state;  ///< of the failure of every command; empty for none
  int number = 0;
  std::string words;
  bool tellsNoRows = false;           ///< of commands that gave none
  std::set<SQLHSTMT> open;            ///< statements with rows that nobody has read
  std::vector<std::string> bound;     ///< values as the driver was told of them
  std::optional<SQLINTEGER*> result;  ///< where a procedure's answer is wanted
  std::u16string server;              ///< the file that stands for a server; empty for none
  std::vector<int> answers;           ///< of the server to what it is asked first
  std::string last;                   ///< the command that came last
  std::optional<SQLSMALLINT> type;    ///< of every column
  int connections = 0;                ///< that were asked for
  std::optional<int> rows;            ///< that come ahead of a deadlock
} driver;

template <typename Call>
Call* real(const char* name) {
  return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name));
}

SQLRETURN failWith(std::string state, int number, std::string words) {
  driver.state = std::move(state);
  driver.number = number;
  driver.words = std::move(words);
  return SQL_ERROR;
}

/// The server's "top" is the file's "limit".
std::u16string inWordsOfSqlite(const std::string& text) {
  static const std::regex kTop(R"(^select top \((\d+)\) (.*)$)");
  return text::wideText(std::regex_replace(text, kTop, "select $2 limit $1"));
}

class DriverCalls : public ::testing::Test {
 protected:
  DriverCalls() { driver = {}; }
  ~DriverCalls() override { driver = {}; }

  static data::SearchRequest inView(std::vector<std::string> columns, std::size_t limit) {
    data::SearchRequest request;
    request.view = "v";
    request.columns = std::move(columns);
    request.limit = limit;
    return request;
  }

  const testing::TemporaryFolder folder_;
  const std::string path_ = (folder_.path() / "calls.db").string();
  OdbcConnection connection_{
      data::ConnectionText("ODBC Driver=SQLite3;Database=" + data::quoteConnectionValue(path_))};
};

TEST_F(DriverCalls, ACommandThatChangesNoRowIsNoFailure) {
  connection_.run("create table t(ID integer)");
  driver.tellsNoRows = true;
  EXPECT_EQ(connection_.run("delete from t"), std::nullopt);
}

TEST_F(DriverCalls, AConnectionCarriesOneStatementAtATime) {
  connection_.run("create table t(ID integer)");
  connection_.run("insert into t values (1), (2), (3)");
  std::string seen;
  connection_.walk("select ID from t order by ID", [&](const data::Rows& row) {
    seen += row.value(0, 0).toText() + connection_.run("select count(*) from t")->value(0, 0).toText() + " ";
    return true;
  });
  EXPECT_EQ(seen, "13 23 33 ");
  driver.rows = 2;
  EXPECT_EQ(failureOf([&] { connection_.run("select ID from t"); }).reason(), Reason::Busy);
}

TEST_F(DriverCalls, WhatTheServerSaysIsToldInTheWordsOfAPerson) {
  const std::map<std::string, Reason> reasons{
      {"Constraint", Reason::Constraint}, {"Busy", Reason::Busy},       {"TooLong", Reason::TooLong},
      {"Storage", Reason::Storage},       {"TimeOut", Reason::TimeOut}, {"Connection", Reason::Connection}};
  for (const auto& row : testing::tableOf("engines/odbc/driver_text.txt", "failures")) {
    SCOPED_TRACE(row[0]);
    driver.state.clear();
    connection_.run("select 1");
    const int number = std::stoi(row[0].substr(6));
    failWith(row[0].substr(0, 5), number, "[Driver][Server] the words");
    const data::DataError failure = failureOf([&] { connection_.run("select 2"); });
    EXPECT_EQ(failure.reason(), reasons.at(row[1]));
    EXPECT_EQ(failure.number(), number);
    EXPECT_TRUE(std::string_view(failure.what()).starts_with(row[2])) << failure.what();
    EXPECT_EQ(failure.statement(), "select 2");
  }
}

TEST_F(DriverCalls, APasswordThatTheDriverRepeatsIsntShownAndAMissingDriverIsToldAsThat) {
  const auto told = [](const std::string& text) {
    OdbcConnection connection{data::ConnectionText("ODBC Driver=SQLite3;Database=x;" + text)};
    return std::string(failureOf([&] { connection.run("select 1"); }).what());
  };
  failWith("28000", 18456, "Login failed for sa with very-hidden");
  for (const char* const key : {"Password", "PWD"})
    EXPECT_EQ(told("UID=sa;" + std::string(key) + "=very-hidden"),
              "پايگاه داده نام کاربر يا رمز را نپذيرفت. متن اتصال را اصلاح نماييد. (18456, 28000)");
  for (const auto& [state, words] :
       {std::pair("IM002", "no"), {"IM003", "no"}, {"01000", "Can't open lib 'x'"}}) {
    failWith(state, 0, "[unixODBC][Driver Manager]" + std::string(words));
    EXPECT_TRUE(told("").starts_with("راه انداز ODBC باز نميشود.")) << state;
  }
}

TEST_F(DriverCalls, AProcedureGetsItsValuesWhole) {
  static constexpr data::Parameter kParameters[] = {
      {"@Title", data::ParameterType::Text, 20}, {"@Amount", data::ParameterType::Money},
      {"@Day", data::ParameterType::DateTime},   {"@Number", data::ParameterType::Int},
      {"@None", data::ParameterType::Int},       {"@Long", data::ParameterType::Text, 3}};
  const data::Value values[] = {
      "حساب", *data::Money::parse("12.3456"), data::DateTime{2024, 2, 29, 13, 14, 15}, -7, {}, "😀😀"};
  EXPECT_EQ(connection_.call({"spAny", kParameters}, values), 77);
  EXPECT_EQ(driver.bound, (std::vector<std::string>{"WVARCHAR(20) حساب", "DECIMAL(19,4) 12.3456",
                                                    "TIMESTAMP(23,3) 2024-2-29 13:14:15", "INTEGER(10) -7",
                                                    "INTEGER(10) null", "WVARCHAR(4) 😀😀"}));
}

TEST_F(DriverCalls, ADecimalNumberComesWholeWithoutItsZeroToo) {
  driver.type = SQL_DECIMAL;
  for (const auto& [sent, amount] : {std::pair{".5", "0.5"}, {"-.5", "-0.5"}, {"-12.3456", "-12.3456"}}) {
    const auto rows = connection_.run("select '" + std::string(sent) + "' as Amount");
    EXPECT_EQ(rows->value(0, 0), data::Value(*data::Money::parse(amount)));
  }
}

TEST_F(DriverCalls, ASessionKeepsToTheCodePageAndTheVersionThatTheServerTells) {
  driver.server = text::wideText("Driver=SQLite3;Database=" + path_);
  const data::ConnectionText text("Data Source=srv;Initial Catalog=books;ODBC Driver=FreeTDS");
  for (const auto& [page, sent] :
       {std::pair(1256, "select 'ي' as a"), {1252, "select 'ي' as a"}, {65001, "select 'ی' as a"}}) {
    driver.answers = {db::schemaVersion(), page};
    OdbcConnection connection(text);
    connection.run("select 'ی' as a");
    EXPECT_EQ(driver.last, sent) << page;
  }
  for (const int other : {-1, 1}) {
    driver.answers = {db::schemaVersion() + other, 1256};
    OdbcConnection connection(text);
    EXPECT_EQ(failureOf([&] { connection.run("select 1"); }).reason(), Reason::Connection);
    driver.answers = {db::schemaVersion() + other, 1256};
    OdbcConnection installer(text, std::chrono::seconds(30), Versions::Any);
    EXPECT_TRUE(installer.run("select 1"));
  }
}

TEST_F(DriverCalls, ASearchGoesOnBehindRowsWithoutAName) {
  connection_.run("create table v(ID integer, Name varchar(20))");
  connection_.run("insert into v values (4, null), (2, null), (9, null), (3, 'a'), (1, 'b'), (5, 'b')");
  for (const std::size_t limit : {1U, 2U, 4U}) {
    std::string seen;
    data::SearchRequest request = inView({"Name"}, limit);
    request.order = data::SearchOrder::Name;
    do {
      const data::SearchPage page = connection_.search(request);
      for (std::size_t row = 0; row < page.rows.count(); ++row)
        seen += page.rows.value(row, 0).toText() + " ";
      request.continuation = page.continuation;
    } while (!request.continuation.empty() && seen.size() < 40);
    EXPECT_EQ(seen, "2 4 9 3 1 5 ") << limit;
  }
  data::SearchRequest typed = inView({"Code", "Name"}, 1);
  typed.text = "1";
  failureOf([&] { connection_.search(typed); });
  EXPECT_NE(driver.last.find("' or convert(nvarchar(max), [Name]) "), std::string::npos) << driver.last;
}

TEST_F(DriverCalls, ASearchThatIsGivenUpEndsAloneAndItsConnectionWhereTheServerIsSilent) {
  connection_.run(
      "create view v as with recursive n(ID) as (select 1 union all select ID + 1 from n limit 20000000) "
      "select ID from n");
  for (const auto& [state, lost] : {std::pair("HY008", 0), {"HY000", 1}}) {
    bool begun = false;
    data::SearchRequest request = inView({}, 1);
    request.cancelled = [&, state = state] {
      if (!std::exchange(begun, true)) return false;
      failWith(state, 0, "");
      return true;
    };
    EXPECT_EQ(failureOf([&] { connection_.search(request); }).reason(), Reason::Cancelled);
    driver.state.clear();
    driver.connections = 0;
    EXPECT_EQ(connection_.run("select count(*) from (select ID from v limit 5000000)")->count(), 1U);
    EXPECT_EQ(driver.connections, lost) << state;
  }
}

}  // namespace
}  // namespace ledgertree::engines::odbc

using ledgertree::engines::odbc::driver;
using ledgertree::engines::odbc::real;

extern "C" {

SQLRETURN SQLDriverConnectW(SQLHDBC connection, SQLHWND window, SQLWCHAR* in, SQLSMALLINT length,
                            SQLWCHAR* out, SQLSMALLINT room, SQLSMALLINT* needed, SQLUSMALLINT completion) {
  ++driver.connections;
  if (!driver.state.empty()) return SQL_ERROR;
  if (!driver.server.empty()) {
    in = reinterpret_cast<SQLWCHAR*>(driver.server.data());
    length = static_cast<SQLSMALLINT>(driver.server.size());
  }
  return real<decltype(SQLDriverConnectW)>("SQLDriverConnectW")(connection, window, in, length, out, room,
                                                                needed, completion);
}

static SQLRETURN answer(SQLHSTMT statement) {
  std::u16string words = ledgertree::text::wideText("select " + std::to_string(driver.answers.back()));
  driver.answers.pop_back();
  return real<decltype(SQLExecDirectW)>("SQLExecDirectW")(
      statement, reinterpret_cast<SQLWCHAR*>(words.data()), static_cast<SQLINTEGER>(words.size()));
}

SQLRETURN SQLExecDirectW(SQLHSTMT statement, SQLWCHAR* text, SQLINTEGER length) {
  using ledgertree::engines::odbc::failWith;
  if (!driver.state.empty()) return SQL_ERROR;
  if (!driver.open.empty())
    return failWith("HY000", 0, "Connection is busy with results for another command");
  const std::string narrow = ledgertree::text::utf8Text(
      std::u16string(reinterpret_cast<const char16_t*>(text), static_cast<std::size_t>(length)));
  if (narrow.starts_with("{? = CALL spAny(")) {
    EXPECT_EQ(narrow, "{? = CALL spAny( ?, ?, ?, ?, ?, ?) }");
    **driver.result = 77;
    return SQL_SUCCESS;
  }
  driver.last = narrow;
  const bool first = narrow.find("; set textsize 2147483647; set lock_timeout 29000; ") != std::string::npos;
  EXPECT_EQ(narrow.starts_with("declare @First"), first) << narrow;
  if (first) return answer(statement);
  std::u16string words = ledgertree::engines::odbc::inWordsOfSqlite(narrow);
  const SQLRETURN result = real<decltype(SQLExecDirectW)>("SQLExecDirectW")(
      statement, reinterpret_cast<SQLWCHAR*>(words.data()), static_cast<SQLINTEGER>(words.size()));
  SQLSMALLINT columns = 0;
  if (SQL_SUCCEEDED(result)) SQLNumResultCols(statement, &columns);
  if (columns != 0) driver.open.insert(statement);
  return driver.tellsNoRows && SQL_SUCCEEDED(result) && columns == 0 ? SQL_NO_DATA : result;
}

SQLRETURN SQLDescribeColW(SQLHSTMT statement, SQLUSMALLINT place, SQLWCHAR* name, SQLSMALLINT room,
                          SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* decimals,
                          SQLSMALLINT* nullable) {
  const SQLRETURN result = real<decltype(SQLDescribeColW)>("SQLDescribeColW")(
      statement, place, name, room, length, type, size, decimals, nullable);
  *type = driver.type.value_or(*type);
  return result;
}

SQLRETURN SQLFetch(SQLHSTMT statement) {
  if (driver.rows && (*driver.rows)-- == 0)
    return ledgertree::engines::odbc::failWith("40001", 1205, "deadlock");
  return real<decltype(SQLFetch)>("SQLFetch")(statement);
}

SQLRETURN SQLMoreResults(SQLHSTMT statement) {
  driver.open.erase(statement);
  if (!driver.answers.empty()) {
    SQLFreeStmt(statement, SQL_CLOSE);
    return answer(statement);
  }
  return driver.result ? SQL_NO_DATA : real<decltype(SQLMoreResults)>("SQLMoreResults")(statement);
}

SQLRETURN SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle) {
  driver.open.erase(handle);
  return real<decltype(SQLFreeHandle)>("SQLFreeHandle")(type, handle);
}

SQLRETURN SQLGetDiagRecW(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT place, SQLWCHAR* state,
                         SQLINTEGER* number, SQLWCHAR* message, SQLSMALLINT room, SQLSMALLINT* length) {
  if (driver.state.empty())
    return real<decltype(SQLGetDiagRecW)>("SQLGetDiagRecW")(type, handle, place, state, number, message, room,
                                                            length);
  if (place > 1) return SQL_NO_DATA;
  const std::u16string words = ledgertree::text::wideText(driver.words);
  std::copy_n(driver.state.c_str(), driver.state.size() + 1, state);
  std::copy_n(words.c_str(), words.size() + 1, message);
  *number = driver.number;
  return SQL_SUCCESS;
}

SQLRETURN SQLBindParameter(SQLHSTMT statement, SQLUSMALLINT place, SQLSMALLINT use, SQLSMALLINT here,
                           SQLSMALLINT there, SQLULEN size, SQLSMALLINT decimals, SQLPOINTER data,
                           SQLLEN room, SQLLEN* length) {
  if (use == SQL_PARAM_OUTPUT) {
    driver.result = static_cast<SQLINTEGER*>(data);
    *length = sizeof(SQLINTEGER);
    return real<decltype(SQLBindParameter)>("SQLBindParameter")(statement, place, use, here, there, size,
                                                                decimals, data, room, length);
  }
  const std::string digits = decimals == 0 ? "" : "," + std::to_string(decimals);
  const auto told = [&](const char* type, const std::string& value) {
    driver.bound.push_back(std::string(type) + "(" + std::to_string(size) + digits + ") " +
                           (*length == SQL_NULL_DATA ? "null" : value));
  };
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
