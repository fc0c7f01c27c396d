#include "db/server_schema.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "data/data_error.h"
#include "db/history.h"
#include "db/scripts.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

constexpr std::string_view kScripts = "db/sqlserver/";
constexpr std::string_view kSteps = "db/sqlserver/steps/";

/// Reports the texts in the first column of a result.
void tell(const std::optional<data::Rows>& rows, const Report& report) {
  for (std::size_t row = 0; rows && row < rows->count(); ++row) report(rows->text(row, 0));
}

void runScript(data::Connection& connection, std::string_view path, const Report& report) {
  for (const Batch& batch : batchesOf(embeddedText(path))) {
    try {
      tell(connection.run(batch.text), report);
    } catch (const data::DataError& failure) {
      throw data::DataError(
          failure.reason(), failure.number(),
          std::string(path) + ", the batch at line " + std::to_string(batch.line) + ": " + failure.what(),
          failure.statement());
    }
  }
}

/// One installation at a time: another one waits here.
constexpr const char* kBegin = R"(
  begin transaction;
  declare @Got int;
  exec @Got = sp_getapplock @Resource = N'LedgerTree schema', @LockMode = 'Exclusive', @LockOwner = 'Transaction';
  if @Got < 0 throw 51006, N'Another installation of the schema is at work. Wait for its end.', 1;)";

void runScripts(data::Connection& connection, const std::vector<std::string_view>& paths,
                const Report& report) {
  for (const std::string_view path : paths) {
    report(path);
    runScript(connection, path, report);
  }
}

std::vector<std::string_view> scriptsBut(const LeftOut& leftOut) {
  std::vector<std::string_view> scripts = scriptsIn(kScripts);
  for (const std::string& name : leftOut) {
    if (std::erase(scripts, std::string(kScripts) + name) == 0)
      throw data::DataError(data::DataError::Reason::Misuse, 0, "There is no script " + name + ".");
  }
  return scripts;
}

}  // namespace

void inSchemaTransaction(data::Connection& connection, const std::function<void()>& work) {
  try {
    connection.run(kBegin);
    work();
    connection.run("commit transaction");
  } catch (...) {
    const std::exception_ptr failure = std::current_exception();
    try {
      connection.run("if @@trancount > 0 rollback transaction");
    } catch (const data::DataError&) {
      // The connection is lost, and with it the transaction: the failure that comes first says more.
    }
    std::rethrow_exception(failure);
  }
}

ServerPlan planServerSchema(data::Connection& connection, const LeftOut& leftOut) {
  const auto rows = connection.run(std::string(kFindServerVersion) + "select @Version as Version");
  if (!rows || rows->count() == 0)
    throw data::DataError(data::DataError::Reason::Statement, 0, "The database didn't report its version.");
  const int version = rows->value(0, 0).toInt32();
  if (version > schemaVersion()) requireSchemaVersion(version);
  ServerPlan plan{.version = version, .steps = {}, .scripts = scriptsBut(leftOut)};
  if (version > 0) plan.steps = stepsBehind(version, kSteps);
  return plan;
}

void reportStep(data::Connection& connection, const Step& step, const Report& report) {
  if (!step.report.empty()) tell(connection.run(embeddedText(step.report)), report);
}

void installServerSchema(data::Connection& connection, const Report& report, const LeftOut& leftOut) {
  inSchemaTransaction(connection, [&] {
    const ServerPlan plan = planServerSchema(connection, leftOut);
    for (const Step& step : plan.steps) {
      reportStep(connection, step, report);
      runScripts(connection, {step.script}, report);
      connection.run("insert into dbo.tblLedgerTreeVersion (Version) values (" +
                     std::to_string(step.version) + ")");
    }
    runScripts(connection, plan.scripts, report);
    if (historyIsOn(connection)) remakeHistory(connection);
  });
}

void installServerDemo(data::Connection& connection, const Report& report) {
  inSchemaTransaction(connection,
                      [&] { runScripts(connection, scriptsWithOwn("db/demo/", "sqlserver"), report); });
}

}  // namespace ledgertree::db
