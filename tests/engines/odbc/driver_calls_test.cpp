// What a server's driver does and SQLite's never: the calls of the layer pass through here on their way to
// the driver.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <regex>
#include <set>

#include "data/catalogue.h"
#include "db/version.h"
#include "engines/odbc/odbc_connection.h"
#include "support/failure.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

using Reason = data::DataError::Reason;

/// How the driver answers from now on.
struct Driver {
  const char* state = nullptr;  ///< of the failure of every command
  int number = 0;
  std::string words;
  bool tellsNoRows = false;           ///< of commands that gave none
  std::set<SQLHSTMT> open;            ///< statements with rows that nobody has read
  std::vector<std::string> bound;     ///< values as the driver was told of them
  std::optional<SQLINTEGER*> result;  ///< where a procedure's answer is wanted
  std::u16string server;              ///< the file that stands for a server; empty for none
  std::vector<int> answers;           ///< of the server to what it is asked first
  std::string last;                   ///< the command that came last
} driver;

template <typename Call>
Call* real(const char* name) {
  return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name));
}

SQLRETURN failWith(const char* state, int number, std::string words) {
  driver.state = state;
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
  DriverCalls() {
    driver = {};
    std::filesystem::remove(path_);
  }
  ~DriverCalls() override {
    driver = {};
    std::filesystem::remove(path_);
  }

  std::string path_ = ::testing::TempDir() + "calls_" + std::to_string(getpid()) + ".db";
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
}

TEST_F(DriverCalls, WhatTheServerSaysIsToldInTheWordsOfAPerson) {
  const struct {
    const char* state;
    int number;
    Reason reason;
    const char* begin;
  } cases[] = {
      {"23000", 2627, Reason::Constraint, "چنين سطري قبلا ثبت شده است."},
      {"23000", 2601, Reason::Constraint, "چنين سطري قبلا ثبت شده است."},
      {"23000", 547, Reason::Constraint, "سطري که به آن اشاره ميشود وجود ندارد"},
      {"23000", 515, Reason::Constraint, "مقدار لازم وارد نشده است."},
      {"23000", 1, Reason::Constraint, "مقدار وارد شده پذيرفته نيست."},
      {"40001", 1205, Reason::Busy, "پايگاه داده در دست برنامه ديگري است."},
      {"HYT00", 1222, Reason::Busy, "پايگاه داده در دست برنامه ديگري است."},
      {"22001", 2628, Reason::TooLong, "متن از جاي خود در پايگاه داده بلندتر است."},
      {"22001", 8152, Reason::TooLong, "متن از جاي خود در پايگاه داده بلندتر است."},
      {"HY000", 9002, Reason::Storage, "فضاي پايگاه داده پر است."},
      {"HY000", 3906, Reason::Storage, "پايگاه داده فقط خواندني است."},
      {"HY000", 824, Reason::Storage, "پايگاه داده آسيب ديده است."},
      {"HYT00", 0, Reason::TimeOut, "پايگاه داده در زمان تعيين شده پاسخ نداد و عمليات متوقف شد."},
      {"08S01", 0, Reason::Connection, "ارتباط با پايگاه داده قطع شد و معلوم نيست"},
      {"42000", 50001, Reason::Constraint, "the words"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.number);
    driver.state = nullptr;
    connection_.run("select 1");
    failWith(one.state, one.number, "[Driver][Server] the words");
    const data::DataError failure = testing::failureOf([&] { connection_.run("select 2"); });
    EXPECT_EQ(failure.reason(), one.reason);
    EXPECT_EQ(failure.number(), one.number);
    EXPECT_TRUE(std::string_view(failure.what()).starts_with(one.begin)) << failure.what();
    EXPECT_EQ(failure.statement(), "select 2");
  }
}

TEST_F(DriverCalls, APasswordThatTheDriverRepeatsIsntShown) {
  failWith("28000", 18456, "Login failed for sa with very-hidden");
  for (const char* const key : {"Password", "PWD"}) {
    OdbcConnection refused{
        data::ConnectionText("ODBC Driver=SQLite3;UID=sa;" + std::string(key) + "=very-hidden;Database=x")};
    const data::DataError failure = testing::failureOf([&] { refused.run("select 1"); });
    EXPECT_EQ(std::string(failure.what()),
              "پايگاه داده نام کاربر يا رمز را نپذيرفت. متن اتصال را اصلاح نماييد. (18456, 28000)");
  }
}

TEST_F(DriverCalls, ADriverThatIsntThereIsToldAsThat) {
  for (const char* const state : {"IM002", "IM003", "01000"}) {
    failWith(state, 0,
             "[unixODBC][Driver Manager]" + std::string(*state == '0' ? "Can't open lib 'x'" : "no"));
    OdbcConnection connection{data::ConnectionText("ODBC Driver=SQLite3;Database=x")};
    EXPECT_TRUE(std::string_view(testing::failureOf([&] { connection.run("select 1"); }).what())
                    .starts_with("راه انداز ODBC باز نميشود."))
        << state;
  }
}

TEST_F(DriverCalls, AProcedureGetsItsValuesWhole) {
  static constexpr data::Parameter kParameters[] = {{"@Title", data::ParameterType::Text, 20},
                                                    {"@Amount", data::ParameterType::Money},
                                                    {"@Day", data::ParameterType::DateTime},
                                                    {"@Number", data::ParameterType::Int},
                                                    {"@None", data::ParameterType::Int}};
  const data::Value values[] = {
      "حساب", *data::Money::parse("12.3456"), data::DateTime{2024, 2, 29, 13, 14, 15}, -7, {}};
  EXPECT_EQ(connection_.call({"spAny", kParameters}, values), 77);
  EXPECT_EQ(driver.bound, (std::vector<std::string>{"WVARCHAR(20) حساب", "DECIMAL(19,4) 12.3456",
                                                    "TIMESTAMP(23,3) 2024-2-29 13:14:15", "INTEGER(10) -7",
                                                    "INTEGER(10) null"}));
}

TEST_F(DriverCalls, ASessionKeepsToTheCodePageAndTheVersionThatTheServerTells) {
  const struct {
    int page;
    const char* sent;
  } cases[] = {{1256, "select 'ي' as a"}, {1252, "select 'ي' as a"}, {65001, "select 'ی' as a"}};
  driver.server = text::wideText("Driver=SQLite3;Database=" + path_);
  const data::ConnectionText text("Data Source=srv;Initial Catalog=books;ODBC Driver=FreeTDS");
  for (const auto& one : cases) {
    driver.answers = {db::schemaVersion(), one.page};
    OdbcConnection connection(text);
    connection.run("select 'ی' as a");
    EXPECT_EQ(driver.last, one.sent) << one.page;
  }
  for (const int other : {-1, 1}) {
    driver.answers = {db::schemaVersion() + other, 1256};
    OdbcConnection connection(text);
    EXPECT_EQ(testing::failureOf([&] { connection.run("select 1"); }).reason(), Reason::Connection);
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
    std::string continuation;
    do {
      data::SearchRequest request;
      request.view = "v";
      request.columns = {"Name"};
      request.order = data::SearchOrder::Name;
      request.continuation = continuation;
      request.limit = limit;
      const data::SearchPage page = connection_.search(request);
      for (std::size_t row = 0; row < page.rows.count(); ++row)
        seen += page.rows.value(row, 0).toText() + " ";
      continuation = page.continuation;
    } while (!continuation.empty() && seen.size() < 40);
    EXPECT_EQ(seen, "2 4 9 3 1 5 ") << limit;
  }
}

}  // namespace
}  // namespace ledgertree::engines::odbc

using ledgertree::engines::odbc::driver;
using ledgertree::engines::odbc::real;

extern "C" {

SQLRETURN SQLDriverConnectW(SQLHDBC connection, SQLHWND window, SQLWCHAR* in, SQLSMALLINT length,
                            SQLWCHAR* out, SQLSMALLINT room, SQLSMALLINT* needed, SQLUSMALLINT completion) {
  if (driver.state != nullptr) return SQL_ERROR;
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
  if (driver.state != nullptr) return SQL_ERROR;
  if (!driver.open.empty())
    return failWith("HY000", 0, "Connection is busy with results for another command");
  const std::string narrow = ledgertree::text::utf8Text(
      std::u16string(reinterpret_cast<const char16_t*>(text), static_cast<std::size_t>(length)));
  if (narrow.starts_with("{? = CALL spAny(")) {
    EXPECT_EQ(narrow, "{? = CALL spAny( ?, ?, ?, ?, ?) }");
    **driver.result = 77;
    return SQL_SUCCESS;
  }
  driver.last = narrow;
  if (narrow.starts_with("declare @First")) return answer(statement);
  std::u16string words = ledgertree::engines::odbc::inWordsOfSqlite(narrow);
  const SQLRETURN result = real<decltype(SQLExecDirectW)>("SQLExecDirectW")(
      statement, reinterpret_cast<SQLWCHAR*>(words.data()), static_cast<SQLINTEGER>(words.size()));
  SQLSMALLINT columns = 0;
  if (SQL_SUCCEEDED(result)) SQLNumResultCols(statement, &columns);
  if (columns != 0) driver.open.insert(statement);
  return driver.tellsNoRows && SQL_SUCCEEDED(result) && columns == 0 ? SQL_NO_DATA : result;
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
  if (driver.state == nullptr)
    return real<decltype(SQLGetDiagRecW)>("SQLGetDiagRecW")(type, handle, place, state, number, message, room,
                                                            length);
  if (place > 1) return SQL_NO_DATA;
  const std::u16string words = ledgertree::text::wideText(driver.words);
  for (int letter = 0; letter < 6; ++letter) state[letter] = static_cast<SQLWCHAR>(driver.state[letter]);
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
