#include "db/history.h"

#include <algorithm>

#include "data/account.h"
#include "data/data_error.h"
#include "data/value.h"
#include "db/history_triggers.h"
#include "db/schema.h"
#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

constexpr const char* kNow = "strftime('%Y-%m-%d %H:%M:%f', 'now')";

bool hasTable(SQLite::Database& database, const std::string& name) { return database.tableExists(name); }

void drop(SQLite::Database& database, const std::vector<Trigger>& triggers) {
  for (const Trigger& trigger : triggers) database.exec("drop trigger if exists " + trigger.name);
}

void create(SQLite::Database& database, const std::vector<Trigger>& triggers) {
  for (const Trigger& trigger : triggers) database.exec(trigger.text);
}

void addColumns(SQLite::Database& database, const std::string& table, const std::string& prefix) {
  for (const RememberedColumn& column : rememberedColumns()) {
    const std::string name = prefix + std::string(column.name);
    SQLite::Statement known(database, "select 1 from pragma_table_info(?1) where name = ?2");
    known.bind(1, table);
    known.bind(2, name);
    if (known.executeStep()) continue;
    std::string add = "alter table ";
    database.exec(add.append(table).append(" add column ").append(name).append(" ").append(column.type));
  }
}

/// What a new database gets, and what one lacks that knows fewer fields.
void makeTables(SQLite::Database& database) {
  database.exec(std::string(embeddedText("db/embedded/history/tables.sql")));
  database.exec(
      "create table if not exists tblAccountChange (ID integer primary key, OperationID int not null, "
      "Event int not null, AccountID int not null, Fields int not null);"
      "create index if not exists ixAccountChangeOperation on tblAccountChange (OperationID);"
      "create index if not exists ixAccountChangeAccount on tblAccountChange (AccountID);"
      "create table if not exists tblAccountReplaced (ID int)");
  addColumns(database, "tblAccountChange", "Old");
  addColumns(database, "tblAccountChange", "New");
  addColumns(database, "tblAccountReplaced", "");
}

/// Lifts what keeps the memory as it is, until the end of a block within a transaction.
class Unguarded {
 public:
  explicit Unguarded(SQLite::Database& database) : database_(database) { drop(database, guardingTriggers()); }
  void end() { create(database_, guardingTriggers()); }

 private:
  SQLite::Database& database_;
};

std::string_view declared(const data::AccountField& field) {
  switch (field.type()) {
    case data::ParameterType::Money:
      return "money";
    case data::ParameterType::DateTime:
      return "datetime";
    case data::ParameterType::Text:
      return "varchar";
    case data::ParameterType::Int:
      break;
  }
  return "int";
}

}  // namespace

const std::vector<LinkTable>& linkTables() {
  static const std::vector<LinkTable> tables = {
      {1, "tblAccountPeriodAccount", {"AccountID", "PeriodID"}, 2},
      {2,
       "tblAccountRelatedObjects",
       {"AccountID", "AccountGroupID", "RelatedClassID", "RelatedObjectID"},
       0,
       "RelationID"},
      {3, "tblAccountRelatedClasses", {"AccountID", "ClassID", "Sequence", "IncludeAllObjects"}, 3},
      {4, "tblAccountRelatedClassesDetail", {"AccountID", "ClassID", "ObjectID"}, 3},
  };
  return tables;
}

const std::vector<RememberedColumn>& rememberedColumns() {
  static const std::vector<RememberedColumn> columns = [] {
    static_assert(std::size(data::kAccountFields) < 60, "the bits of a number");
    std::vector<RememberedColumn> all;
    for (const data::AccountField& field : data::kAccountFields) {
      const bool known = std::any_of(all.begin(), all.end(), [&field](const RememberedColumn& column) {
        return column.name == field.column;
      });
      if (!known) all.push_back({field.column, declared(field), std::int64_t{1} << all.size()});
    }
    return all;
  }();
  return columns;
}

std::int64_t allRemembered() { return (std::int64_t{1} << rememberedColumns().size()) - 1; }

bool historyIsOn(SQLite::Database& database) { return hasTable(database, "tblAccountOperationNow"); }

void remakeHistory(SQLite::Database& database) {
  makeTables(database);
  for (const auto& triggers : {rememberingTriggers(), guardingTriggers()}) {
    drop(database, triggers);
    create(database, triggers);
  }
}

void switchHistory(SQLite::Database& database, bool on) {
  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
  requirePresentChart(database);
  const bool was = historyIsOn(database);
  if (on) remakeHistory(database);
  if (on && !was) {
    Unguarded memory(database);
    database.exec(std::string("insert or replace into tblAccountMemory (ID, Since) values (1, ") + kNow +
                  ")");
    memory.end();
  }
  if (!on && was) {
    drop(database, rememberingTriggers());
    database.exec(
        "drop table tblAccountOperationNow; drop table tblAccountReplaced; drop table "
        "tblAccountLinkReplaced");
  }
  transaction.commit();
}

void requireDay(const std::string& day) {
  constexpr std::size_t kDay = 10;  // yyyy-mm-dd
  if (day.size() == kDay && data::DateTime::parse(day)) return;
  throw data::DataError(data::DataError::Reason::Misuse, 0, "a day is yyyy-mm-dd, of UTC, and not " + day);
}

int pruneHistory(SQLite::Database& database, const std::string& day) {
  requireDay(day);
  SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
  requirePresentChart(database);
  if (!hasTable(database, "tblAccountMemory"))
    throw data::DataError(data::DataError::Reason::Misuse, 0, "this chart has no memory");
  Unguarded memory(database);
  const std::string from = "'" + day + "'";
  // What is left has to be all that happened from its first change on, so that the changes go in their order
  // and an operation that others came between may lose its beginning.
  const std::string first =
      "(select ifnull(min(ID), 9223372036854775807) from (select c.ID from tblAccountChange c join "
      "tblAccountOperation o on o.ID = c.OperationID where o.Moment >= " +
      from +
      " union all select c.ID from tblAccountLinkChange c join tblAccountOperation o on o.ID = "
      "c.OperationID where o.Moment >= " +
      from + "))";
  database.exec("create temp table Cut as select " + first + " as First");
  for (const std::string table : {"tblAccountChange", "tblAccountLinkChange"}) {
    std::string cut = "update tblAccountOperation set IsCut = 1 where ID in (select OperationID from ";
    cut.append(table).append(" where ID < (select First from temp.Cut)); delete from ").append(table);
    database.exec(cut.append(" where ID < (select First from temp.Cut)"));
  }
  // The number of the last one is never given again: somebody may be at it.
  const int gone = database.exec(
      "delete from tblAccountOperation where ID < (select max(ID) from tblAccountOperation) "
      "and ID not in (select OperationID from tblAccountChange) "
      "and ID not in (select OperationID from tblAccountLinkChange)");
  database.exec("drop table temp.Cut; update tblAccountMemory set Since = " + from + " where Since < " +
                from);
  memory.end();
  transaction.commit();
  return gone;
}

std::vector<std::string> historyFaults(SQLite::Database& database) {
  std::vector<std::string> faults;
  if (!historyIsOn(database)) return faults;
  SQLite::Statement known(database,
                          "select 1 from sqlite_schema where type = 'trigger' and sql = ?1 collate binary");
  for (const auto& triggers : {rememberingTriggers(), guardingTriggers()}) {
    for (const Trigger& trigger : triggers) {
      std::string stored = trigger.text;
      stored.replace(0, std::string_view("create trigger").size(), "CREATE TRIGGER");
      known.reset();
      known.bind(1, stored);
      if (!known.executeStep()) faults.push_back(trigger.name);
    }
  }
  return faults;
}

}  // namespace ledgertree::db
