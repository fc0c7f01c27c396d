#include "db/server_schema.h"

#include <exception>
#include <string>
#include <vector>

#include "data/data_error.h"
#include "db/scripts.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

void runScript(data::Connection& connection, std::string_view path) {
  for (const Batch& batch : batchesOf(embeddedText(path))) {
    try {
      connection.run(batch.text);
    } catch (const data::DataError& failure) {
      throw data::DataError(
          failure.reason(), failure.number(),
          std::string(path) + ", the batch at line " + std::to_string(batch.line) + ": " + failure.what(),
          failure.statement());
    }
  }
}

/// One installation at a time: another one that began waits here.
constexpr const char* kBegin = R"(
  begin transaction;
  declare @Got int;
  exec @Got = sp_getapplock @Resource = N'LedgerTree schema', @LockMode = 'Exclusive', @LockOwner = 'Transaction';
  if @Got < 0 throw 51006, N'Another installation of the schema is at work. Wait for its end.', 1;)";

void runScripts(data::Connection& connection, const std::vector<std::string_view>& paths,
                const ScriptReport& report) {
  try {
    connection.run(kBegin);
    for (const std::string_view path : paths) {
      report(path);
      runScript(connection, path);
    }
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

}  // namespace

void installServerSchema(data::Connection& connection, const ScriptReport& report) {
  runScripts(connection, scriptsIn("db/sqlserver/"), report);
}

void installServerDemo(data::Connection& connection, const ScriptReport& report) {
  runScripts(connection, demoScripts("db/demo/sqlserver/"), report);
}

}  // namespace ledgertree::db
