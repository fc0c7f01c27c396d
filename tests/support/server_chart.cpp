#include "support/server_chart.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "data/characters.h"
#include "data/connection_text.h"
#include "data/odbc/odbc_engine.h"
#include "db/server_schema.h"

namespace ledgertree::testing {
namespace {

/// In an order in which nothing is left that another row refers to.
constexpr std::array kTables = {
    "tblAccountDocument",       "tblAccount",       "tblAccountPeriod",       "tblAccountGroup",
    "tblAccountBranch",         "tblAccCostCenter", "tblAccountClass",        "tblEntityPerson",
    "tblEntityProject",         "tblEntityBank",    "tblUserPermission",      "tblUser",
    "tblTarvoSystemParameters", "tblTarvoBasePath", "tblAccountPeriodAccount"};

/// One statement of SQLite as SQL Server says it: other names of functions, another sign that joins texts.
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
  for (const std::string table : {"tblAccount", "tblAccountDocumentDetail", "tblAccCostCenter"}) {
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
    if (sign == ';' && !quoted) {
      statements.emplace_back();
    } else {
      statements.back() += sign;
    }
  }
  return statements;
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

ServerChart::ServerChart() {
  if (data::ConnectionText(testServer()).require("Initial Catalog").find("test") == std::string::npos) {
    throw std::runtime_error("the stories empty the tables: take a database whose name holds \"test\"");
  }
  const auto file = std::filesystem::temp_directory_path() / "ledgertree-test-server.lock";
  lock_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (lock_ < 0 || ::flock(lock_, LOCK_EX) != 0) throw std::runtime_error("the server can't be locked");
  data::odbc::registerOdbc(providers_);
  connection_ = providers_.open(testServer());
  const data::Rows found = *connection_->run("select object_id(N'dbo.spAccountDeleteAccount') as ID");
  if (found.isNull(0, 0)) db::installServerSchema(*connection_, [](std::string_view) {});
  empty();
}

ServerChart::~ServerChart() { ::close(lock_); }

void ServerChart::empty() {
  // A key that was given once makes sure which one comes next.
  std::string batch =
      "insert into tblAccount (Code) values (null); update tblAccount set ParentID = null;"
      "truncate table tblAccountDocumentDetail;";
  for (const std::string table : kTables) batch += "delete " + table + ";";
  connection_->run("exec (N'" + batch + "'); dbcc checkident ('tblAccount', reseed, 1)");
}

void ServerChart::execute(const std::string& statements) {
  for (const std::string& statement : statementsOf(statements)) {
    if (statement.find_first_not_of(" \n") != std::string::npos) connection_->run(translated(statement));
  }
}

data::Rows ServerChart::query(const std::string& query) { return *connection_->run(translated(query)); }

void ServerChart::fillWithDemoChart() {
  db::installServerDemo(*connection_, [](std::string_view) {});
}

}  // namespace ledgertree::testing
