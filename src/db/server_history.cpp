#include <optional>

#include "data/data_error.h"
#include "data/quote_text.h"
#include "db/history.h"
#include "db/joined.h"
#include "db/scripts.h"
#include "db/server_history_triggers.h"
#include "db/server_schema.h"
#include "db/version.h"

namespace ledgertree::db {
namespace {

using data::DataError;

std::size_t countOf(data::Connection& connection, const std::string& batch) {
  const auto rows = connection.run(batch);
  return rows ? rows->count() : 0;
}

void drop(data::Connection& connection, std::string_view kind, const std::string& name) {
  std::string batch = "if object_id(N'dbo." + name + "') is not null drop ";
  connection.run(batch.append(kind).append(" dbo.").append(name));
}

void drop(data::Connection& connection, const std::vector<Trigger>& triggers) {
  for (const Trigger& trigger : triggers) drop(connection, "trigger", trigger.name);
}

void create(data::Connection& connection, const std::vector<Trigger>& triggers) {
  for (const Trigger& trigger : triggers) connection.run(trigger.text);
}

void makeTables(data::Connection& connection) {
  const std::string tables = historyScript("tables");
  for (const Batch& batch : batchesOf(tables)) connection.run(batch.text);
  const std::string names = each(rememberedColumns(), ", ", [](const RememberedColumn& column) {
    return "'" + std::string(column.name) + "'";
  });
  const auto changes = connection.run(historyScript("columns", {{"names", names}}));
  for (std::size_t row = 0; changes && row < changes->count(); ++row)
    connection.run("alter table dbo.tblAccountChange " + changes->value(row, 0).toText());
}

void dropProcedures(data::Connection& connection) {
  drop(connection, "procedure", "spAccountTakeBack");
  drop(connection, "procedure", "spAccountBeginOperation");
}

/// Another trigger may change an account that was written, which is then kept behind what was written: so
/// long as no other trigger of the table is to come first, that of the memory does.
constexpr const char* kComesFirst = R"(
  if exists (select 1 from sys.all_objects where name = N'sp_settriggerorder') exec (N'
    declare @Events table (Name nvarchar(20));
    insert into @Events values (N''INSERT''), (N''UPDATE''), (N''DELETE'');
    declare @Event nvarchar(20) = (select min(Name) from @Events);
    while @Event is not null
    begin
      if not exists (select 1 from sys.trigger_events e join sys.triggers t on t.object_id = e.object_id
                     where t.parent_id = object_id(N''dbo.tblAccount'') and e.type_desc = @Event and e.is_first = 1)
        exec sp_settriggerorder @triggername = N''dbo.trHistoryAccount'', @order = ''First'', @stmttype = @Event;
      set @Event = (select min(Name) from @Events where Name > @Event);
    end'))";

void requirePresentServer(data::Connection& connection) {
  const auto rows = connection.run(std::string(kFindServerVersion) + "select @Version as Version");
  const int version = rows && rows->count() != 0 ? rows->value(0, 0).toInt32() : 0;
  if (version == 0)
    throw DataError(DataError::Reason::Connection, 0,
                    "This database has no chart. Let ledgertree-schema --install-schema make it first.");
  requireSchemaVersion(version);
}

/// Changes the memory itself.
void unguarded(data::Connection& connection, const std::function<void()>& work) {
  drop(connection, serverGuardingTriggers());
  work();
  create(connection, serverGuardingTriggers());
}

}  // namespace

bool historyIsOn(data::Connection& connection) {
  return countOf(connection,
                 "if object_id(N'dbo.tblAccountMemory') is not null "
                 "exec (N'select 1 as Found from dbo.tblAccountMemory where IsOn = 1')") != 0;
}

void remakeHistory(data::Connection& connection) {
  drop(connection, serverRememberingTriggers());
  drop(connection, serverGuardingTriggers());
  dropProcedures(connection);
  makeTables(connection);
  connection.run(historyScript("operation"));
  connection.run(serverTakeBack());
  connection.run("grant execute on dbo.spAccountTakeBack to LedgerTreeUsers");
  create(connection, serverRememberingTriggers());
  create(connection, serverGuardingTriggers());
  connection.run(kComesFirst);
}

void switchHistory(data::Connection& connection, bool on) {
  inSchemaTransaction(connection, [&] {
    requirePresentServer(connection);
    const bool was = historyIsOn(connection);
    if (on) remakeHistory(connection);
    if (on && !was)
      unguarded(connection, [&connection] {
        connection.run("delete from dbo.tblAccountMemory");
        connection.run("insert into dbo.tblAccountMemory (ID, Since, IsOn) values (1, sysutcdatetime(), 1)");
      });
    if (on || !was) return;
    drop(connection, serverRememberingTriggers());
    dropProcedures(connection);
    unguarded(connection, [&connection] { connection.run("update dbo.tblAccountMemory set IsOn = 0"); });
  });
}

int pruneHistory(data::Connection& connection, const std::string& day) {
  requireDay(day);
  std::optional<data::Rows> gone;
  inSchemaTransaction(connection, [&] {
    requirePresentServer(connection);
    if (countOf(connection, "select 1 as Found where object_id(N'dbo.tblAccountMemory') is not null") == 0)
      throw DataError(DataError::Reason::Misuse, 0, "this chart has no memory");
    unguarded(connection, [&] { gone = connection.run(historyScript("prune", {{"day", day}})); });
  });
  return gone && gone->count() != 0 ? gone->value(0, 0).toInt32() : 0;
}

std::vector<std::string> historyFaults(data::Connection& connection) {
  std::vector<std::string> faults;
  if (!historyIsOn(connection)) return faults;
  for (const auto& triggers : {serverRememberingTriggers(), serverGuardingTriggers()}) {
    for (const Trigger& trigger : triggers) {
      const auto known = connection.run(
          "select cast(is_disabled as int) as IsOff, object_definition(object_id) as Text from sys.triggers "
          "where name = N'" +
          trigger.name + "'");
      const bool isThere = known && known->count() != 0 && known->value(0, 0).toInt32() == 0;
      // Who may not see the text of a trigger gets none.
      if (!isThere || (!known->isNull(0, 1) && known->value(0, 1).toText() != trigger.text))
        faults.push_back(trigger.name);
    }
  }
  return faults;
}

}  // namespace ledgertree::db
