#include "support/server_chart.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "data/connection_text.h"
#include "data/data_error.h"
#include "data/quote_text.h"
#include "db/history.h"
#include "db/scripts.h"
#include "db/server_schema.h"
#include "engines/odbc/odbc_engine.h"
#include "ledgertree_scripts.h"

namespace ledgertree::testing {
namespace {

/// In deletion order: referring rows before the rows that they refer to.
constexpr std::array kTables = {
    "tblAccountDocument",       "tblAccount",       "tblAccountPeriod",       "tblAccountGroup",
    "tblAccountBranch",         "tblAccCostCenter", "tblAccountClass",        "tblEntityPerson",
    "tblEntityProject",         "tblEntityBank",    "tblUserPermission",      "tblUser",
    "tblTarvoSystemParameters", "tblTarvoBasePath", "tblAccountPeriodAccount"};

/// Translates one SQLite statement for SQL Server: other function names, another operator that joins texts.
std::string translated(std::string_view statement) {
  static constexpr std::pair<std::string_view, std::string_view> kWords[] = {
      {"||", "+"},
      {"length(", "len("},
      {"substr(", "substring("},
      {"ifnull(", "isnull("},
      {"insert or ignore", "insert"},
  };
  std::string text;
  bool quoted = false;
  for (std::size_t place = 0; place < statement.size();) {
    std::string_view sign = statement.substr(place, 1);
    std::string_view said = sign;
    if (sign == "'") quoted = !quoted;
    for (const auto& [here, there] : kWords) {
      if (quoted || !statement.substr(place).starts_with(here)) continue;
      sign = here;
      said = there;
    }
    text += said;
    place += sign.size();
  }
  const auto within = [&text](const std::string& before, const std::string& behind) {
    text = before + "; " + text + "; " + behind;
  };
  if (statement.find("insert or ignore") != std::string_view::npos)
    within("begin try", "end try begin catch end catch");
  for (const std::string table : {"tblAccount", "tblAccountDocumentDetail"}) {
    const std::string setting = "set identity_insert dbo." + table;
    if (text.find("into " + table + " (ID,") != std::string::npos) within(setting + " on", setting + " off");
  }
  return text;
}

std::vector<std::string> statementsOf(const std::string& text) {
  std::vector<std::string> statements(1);
  bool quoted = false;
  for (const char sign : text) {
    if (sign == '\'') quoted = !quoted;
    if (sign == ';' && !quoted)
      statements.emplace_back();
    else
      statements.back() += sign;
  }
  return statements;
}

/// A number that differs for different scripts.
std::size_t fingerprint() {
  std::string all;
  for (const std::string_view path : db::scriptsIn("db/sqlserver/")) all += db::embeddedText(path);
  return std::hash<std::string>()(all);
}

/// The second program's connection. All stories of a process share it: a server may take seconds for a
/// session's first statements.
data::Connection& connection() {
  static const std::unique_ptr<data::Connection> one = [] {
    data::Providers providers;
    engines::odbc::registerOdbc(providers, data::kCommandTimeOut, engines::odbc::Versions::Any);
    return providers.open(testServer());
  }();
  return *one;
}

}  // namespace

const std::string& testServer() {
  static const std::string text = [] {
    const char* const value = std::getenv("LEDGERTREE_TEST_CONNECTION");
    return std::string(value == nullptr ? "" : value);
  }();
  return text;
}

std::string testProvider() {
  return testServer().empty() ? "SQLite" : data::ConnectionText(testServer()).provider();
}

ServerChart::ServerChart() : connection_(connection()) {
  const auto file = std::filesystem::temp_directory_path() / "ledgertree-test-server.lock";
  lock_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (lock_ < 0 || ::flock(lock_, LOCK_EX) != 0) throw std::runtime_error("the server can't be locked");
  try {
    takeDatabase();
    dropWhatStoriesMade();
    installSchema();
    forgetHistory();
    empty();
  } catch (...) {
    ::close(lock_);
    throw;
  }
}

ServerChart::~ServerChart() {
  try {
    dropWhatStoriesMade();
  } catch (const data::DataError&) {
    // The next story tries again, and reports failures.
  }
  ::close(lock_);
}

void ServerChart::takeDatabase() {
  const auto exists = [this](const std::string& table) {
    return !query("select object_id(N'dbo." + table + "') as ID").isNull(0, 0);
  };
  if (exists("tblLedgerTreeStories")) return;
  const std::string name = query("select db_name() as Name").value(0, 0).toText();
  if (name.find("test") == std::string::npos) {
    for (const std::string table : kTables) {
      if (!exists(table) || query("select top 1 1 as Found from dbo." + table).count() == 0) continue;
      std::string refusal = "The stories empty the tables of the chart, and " + table;
      refusal.append(" of the database ")
          .append(name)
          .append(" has rows. Name an empty database, or one whose name");
      throw std::runtime_error(refusal.append(" holds \"test\"."));
    }
  }
  connection_.run(
      "create table dbo.tblLedgerTreeStories (Kind varchar(10) not null, Name nvarchar(128) not null)");
}

void ServerChart::installSchema() {
  const std::string scripts = std::to_string(fingerprint());
  if (query("select 1 as Found from tblLedgerTreeStories where Kind = 'schema' and Name = N'" + scripts + "'")
          .count() != 0)
    return;
  // Recreated, whatever version was there.
  connection_.run("delete tblLedgerTreeStories where Kind = 'schema'");
  dropSchema(connection_);
  db::installServerSchema(connection_, [](std::string_view) {});
  connection_.run("insert into tblLedgerTreeStories (Kind, Name) values ('schema', N'" + scripts + "')");
}

void ServerChart::dropSchema(data::Connection& connection) {
  // Referring objects are dropped first.
  const data::Rows made = *connection.run(
      "select case type when 'V' then 'view ' when 'P' then 'procedure ' else 'table ' end + name "
      "from sys.objects where type in ('V', 'P', 'U') and schema_name(schema_id) = 'dbo' "
      "and name like '[tvs][bwp]%' and name <> 'tblLedgerTreeStories' order by case name "
      "when 'vwAccount' then 0 when 'tblAccountDocument' then 2 when 'tblAccount' then 3 else 1 end, type "
      "desc");
  for (std::size_t row = 0; row < made.count(); ++row)
    connection.run("drop " + std::string(made.text(row, 0)));
}

void ServerChart::dropWhatStoriesMade() {
  // "view" sorts after "table", but must be dropped first.
  const data::Rows made =
      query("select Kind, Name from tblLedgerTreeStories where Kind in ('table', 'view') order by Kind desc");
  for (std::size_t row = 0; row < made.count(); ++row)
    connection_.run("drop " + made.value(row, 0).toText() + " if exists " + made.value(row, 1).toText());
  if (made.count() != 0) connection_.run("delete tblLedgerTreeStories where Kind in ('table', 'view')");
}

void ServerChart::forgetHistory() {
  if (query("select object_id(N'dbo.tblAccountMemory') as ID").isNull(0, 0)) return;
  db::switchHistory(connection_, false);
  for (const char* const made :
       {"table dbo.tblAccountMemory", "table dbo.tblAccountOperation", "table dbo.tblAccountChange",
        "table dbo.tblAccountLinkChange", "sequence dbo.sqAccountChange"})
    connection_.run(std::string("drop ") + made);
}

void ServerChart::empty() {
  std::string batch = "update tblAccount set ParentID = null; truncate table tblAccountDocumentDetail;";
  for (const std::string table : kTables) batch += "delete " + table + ";";
  // After one insert, the next identity value is certain.
  batch += "insert into tblAccount (Code) values (null); delete tblAccount";
  connection_.run("exec (N'" + batch + "'); dbcc checkident ('tblAccount', reseed, 1)");
}

void ServerChart::execute(const std::string& statements) {
  for (const std::string& statement : statementsOf(statements)) {
    const std::size_t begin = statement.find_first_not_of(" \n");
    if (begin == std::string::npos) continue;
    for (const std::string kind : {"table", "view"}) {
      const std::string words = "create " + kind + " ";
      if (statement.compare(begin, words.size(), words) != 0) continue;
      const std::string name = statement.substr(begin + words.size());
      connection_.run("insert into tblLedgerTreeStories (Kind, Name) values ('" + kind + "', N" +
                      data::quoteText(name.substr(0, name.find(name.front() == '[' ? "] " : " ") + 1)) + ")");
    }
    connection_.run(translated(statement));
  }
}

data::Rows ServerChart::query(const std::string& query) { return *connection_.run(translated(query)); }

void ServerChart::fillWithDemoChart() {
  db::installServerDemo(connection_, [](std::string_view) {});
}

}  // namespace ledgertree::testing
