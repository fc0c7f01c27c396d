#include "engines/odbc/session.h"

#include <algorithm>
#include <vector>

#include "db/version.h"
#include "text/utf8.h"

namespace ledgertree::engines::odbc {
namespace {

/// What the server is told and asked first. Writing to a table with an index on a computed column needs six
/// settings on and one off, whatever the defaults of the driver or the database. Long text is read whole
/// whatever the driver's configuration, and a wait for a lock ends with its own error before the command's
/// time-out. Servers that speak the protocol without being SQL Server may lose their foreign key checks if a
/// session's first table variable (the triggers declare one) comes after the first of these checks: so it
/// comes here.
constexpr std::string_view kPrepare =
    "declare @First table (ID int); set ansi_nulls, ansi_padding, ansi_warnings, arithabort, "
    "concat_null_yields_null, quoted_identifier on; set numeric_roundabort off; set textsize 2147483647; "
    "set lock_timeout ";
constexpr std::string_view kAskCodePage =
    "; select convert(int, collationproperty(convert(nvarchar(128), databasepropertyex(db_name(), "
    "'Collation')), 'CodePage')); ";
constexpr std::string_view kAskVersion =
    "select @Version; declare @Keeps int = 0; if object_id(N'dbo.tblAccountMemory') is not null "
    "select @Keeps = IsOn from dbo.tblAccountMemory; select @Keeps";
constexpr std::chrono::milliseconds kAheadOfTimeOut{1000};
/// An installer's commands may take hours, but while it waits for a lock, others wait for its locks.
constexpr std::chrono::milliseconds kLongestWait{30000};

constexpr SQLINTEGER kArabicPage = 1256;
constexpr SQLINTEGER kUtf8Page = 65001;

SQLPOINTER asPointer(std::size_t number) {
  return reinterpret_cast<SQLPOINTER>(number);  // NOLINT: an attribute's value travels in a pointer's place
}

std::string passwordOf(const data::ConnectionText& text) {
  for (const char* const key : {"Password", "PWD"}) {
    auto value = text.find(key);
    if (value && !value->empty()) return *std::move(value);
  }
  return {};
}

}  // namespace

Session::Session(const data::ConnectionText& text, std::chrono::milliseconds command, Versions versions)
    : connection_(SQL_HANDLE_DBC, environment_.get()), command_(command) {
  open(text);
  try {
    if (dialect_ != Dialect::Other) prepareServer(versions);
  } catch (...) {
    SQLDisconnect(connection_.get());
    throw;
  }
}

Session::~Session() { SQLDisconnect(connection_.get()); }

void Session::open(const data::ConnectionText& text) {
  const DriverText driver = driverText(text, environment_.drivers());
  dialect_ = driver.dialect;
  auto failure = connect(text, driver);
  if (failure && driver.hasPartner && servesElsewhere(failure->number()) &&
      !connect(text, driverText(text, environment_.drivers(), true)))
    return;
  if (failure) throw *failure;
}

std::optional<data::DataError> Session::connect(const data::ConnectionText& text, const DriverText& driver) {
  Secret<char16_t> wide;
  text::appendWide(driver.text.view(), wide);
  SQLSetConnectAttrW(connection_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                     asPointer(static_cast<std::size_t>(driver.loginSeconds)), 0);
  // The driver only reads the text; the type of the call is older than const.
  auto* const letters = reinterpret_cast<SQLWCHAR*>(const_cast<char16_t*>(wide.view().data()));  // NOLINT
  const SQLRETURN result =
      SQLDriverConnectW(connection_.get(), nullptr, letters, static_cast<SQLSMALLINT>(wide.view().size()),
                        nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  if (SQL_SUCCEEDED(result)) return std::nullopt;
  std::string password = passwordOf(text);
  data::DataError failure = openError(records(connection_), password, driver.encrypts);
  wipe(password);
  return failure;
}

void Session::prepareServer(Versions versions) {
  codePage_ = CodePage::Unknown;
  const Handle statement(SQL_HANDLE_STMT, connection_.get());
  const auto wait = std::min(std::max(command_ - kAheadOfTimeOut, command_ / 2), kLongestWait);
  std::u16string batch =
      text::wideText(std::string(kPrepare) + std::to_string(wait.count()) + std::string(kAskCodePage) +
                     std::string(db::kFindServerVersion) + std::string(kAskVersion));
  Watch::Command watched(watch_, statement, Watch::Clock::now() + command_);
  SQLRETURN result = SQLExecDirectW(statement.get(), reinterpret_cast<SQLWCHAR*>(batch.data()),
                                    static_cast<SQLINTEGER>(batch.size()));
  std::vector<SQLINTEGER> answers;
  for (; SQL_SUCCEEDED(result); result = SQLMoreResults(statement.get())) {
    SQLINTEGER answer = 0;
    SQLLEN length = SQL_NULL_DATA;
    SQLSMALLINT columns = 0;
    result = SQLNumResultCols(statement.get(), &columns);
    if (SQL_SUCCEEDED(result) && columns == 0) continue;
    if (SQL_SUCCEEDED(result)) result = SQLFetch(statement.get());
    if (SQL_SUCCEEDED(result))
      result = SQLGetData(statement.get(), 1, SQL_C_SLONG, &answer, sizeof answer, &length);
    if (!SQL_SUCCEEDED(result)) throw openError(records(statement), {});
    answers.push_back(length == SQL_NULL_DATA ? 0 : answer);
  }
  // A server that doesn't understand the question at all is accepted.
  if (result != SQL_NO_DATA && (!answers.empty() || dead())) throw openError(records(statement), {});
  if (answers.size() != 3) return;
  if (answers[0] == kArabicPage) codePage_ = CodePage::Arabic;
  if (answers[0] == kUtf8Page) codePage_ = CodePage::Unicode;
  keepsHistory_ = answers[2] != 0;
  // Without a chart, every statement reports what is missing.
  if (versions == Versions::Present && answers[1] != 0) db::requireSchemaVersion(answers[1]);
}

bool Session::dead() const {
  if (givenUp_) return true;
  SQLUINTEGER dead = SQL_CD_FALSE;
  const SQLRETURN result =
      SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, nullptr);
  return SQL_SUCCEEDED(result) && dead == SQL_CD_TRUE;
}

}  // namespace ledgertree::engines::odbc
