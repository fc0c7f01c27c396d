#include "db/history_triggers.h"

#include <string_view>

#include "db/history.h"
#include "db/joined.h"

namespace ledgertree::db {
namespace {

// No statement in a trigger has a conflict clause: that of the statement that fired it takes its place. Nor
// may one break a constraint, since "insert or ignore" would leave it out without a word.

/// Begins an operation: the one of this connection at its first change, or that of another program, whose
/// changes of one statement all have one moment.
constexpr std::string_view kBeginOperation = R"(
  insert into tblAccountOperation (Moment, UserID, Kind, TakesBack)
    select strftime('%Y-%m-%d %H:%M:%f', 'now'), n.UserID, ifnull(n.Kind, 0), n.TakesBack
    from (select 1) left join tblAccountOperationNow n
    where n.OperationID is null
      and (n.Kind is not null
           or not exists (select 1 from tblAccountOperation o
                          where o.ID = (select max(ID) from tblAccountOperation) and o.Kind = 0
                            and o.Moment = strftime('%Y-%m-%d %H:%M:%f', 'now')));)";

constexpr std::string_view kNumberAndOperation =
    "1 + max(ifnull((select max(ID) from tblAccountChange), 0), "
    "ifnull((select max(ID) from tblAccountLinkChange), 0)), "
    "ifnull((select OperationID from tblAccountOperationNow), (select max(ID) from tblAccountOperation))";

Trigger trigger(const std::string& name, const std::string& when, const std::string& body) {
  return {name, "create trigger " + name + " " + when + "\nbegin" + body + "\nend"};
}

/// A text that differs by its letter case alone is another one.
std::string differs(const std::string& column) {
  return "old." + column + " collate binary is not new." + column;
}

// Of tblAccount.

enum class Event { Inserted = 1, Updated = 2, Deleted = 3 };

std::string prefixed(std::string_view prefix) {
  return each(rememberedColumns(), ", ",
              [prefix](const RememberedColumn& column) { return std::string(prefix).append(column.name); });
}

/// The code and the title of an account are kept with each change, so that it can be told by them.
bool isAlwaysKept(const RememberedColumn& column) { return column.name == "Code" || column.name == "Title"; }

std::string accountChange(Event event, const std::string& account, const std::string& fields,
                          const std::string& old, const std::string& now, const std::string& from) {
  return "\n  insert into tblAccountChange (ID, OperationID, Event, AccountID, Fields, " + prefixed("Old") +
         ", " + prefixed("New") + ")\n    select " + std::string(kNumberAndOperation) + ", " +
         std::to_string(static_cast<int>(event)) + ", " + account + ", " + fields + ",\n    " + old +
         ",\n    " + now + from + ";";
}

std::string nulls() {
  return each(rememberedColumns(), ", ", [](const RememberedColumn&) { return std::string("null"); });
}

std::string accountWent(const std::string& row, const std::string& from) {
  return accountChange(Event::Deleted, row + "ID", std::to_string(allRemembered()), prefixed(row), nulls(),
                       from);
}

std::string updatedFields() {
  return each(rememberedColumns(), " + ", [](const RememberedColumn& column) {
    return "(" + differs(std::string(column.name)) + ") * " + std::to_string(column.bit);
  });
}

std::string updatedValues(const std::string& row) {
  return each(rememberedColumns(), ", ", [&row](const RememberedColumn& column) {
    const std::string name(column.name);
    return isAlwaysKept(column) ? row + name : "case when " + differs(name) + " then " + row + name + " end";
  });
}

/// Keeps the row that stands where one is to be put.
std::string keepReplacedAccount() {
  return "\n  delete from tblAccountReplaced;\n  insert into tblAccountReplaced (" + prefixed("") +
         ") select " + prefixed("") + " from tblAccount where ID = new.ID;";
}

void addAccountTriggers(std::vector<Trigger>& all) {
  const std::string all_ = std::to_string(allRemembered());
  const std::string replaced = accountWent("r.", " from tblAccountReplaced r where r.ID = new.ID") +
                               "\n  delete from tblAccountReplaced;";
  all.push_back(trigger("trHistoryAccountReplace",
                        "before insert on tblAccount when exists (select 1 from tblAccount where ID = new.ID)"
                        " or exists (select 1 from tblAccountReplaced)",
                        keepReplacedAccount()));
  all.push_back(trigger("trHistoryAccountInsert", "after insert on tblAccount",
                        std::string(kBeginOperation) + replaced +
                            accountChange(Event::Inserted, "new.ID", all_, nulls(), prefixed("new."), "")));
  all.push_back(trigger("trHistoryAccountRenumber", "before update of ID on tblAccount when old.ID <> new.ID",
                        keepReplacedAccount()));
  const std::string columns = prefixed("");
  const std::string any = each(rememberedColumns(), " or ", [](const RememberedColumn& column) {
    return differs(std::string(column.name));
  });
  all.push_back(
      trigger("trHistoryAccountUpdate", "after update of " + columns + " on tblAccount when " + any,
              std::string(kBeginOperation) +
                  accountWent("r.", " from tblAccountReplaced r where old.ID <> new.ID and r.ID = new.ID") +
                  accountChange(Event::Updated, "old.ID", updatedFields(), updatedValues("old."),
                                updatedValues("new."), "")));
  all.push_back(trigger(
      "trHistoryAccountDelete", "after delete on tblAccount",
      "\n  delete from tblAccountReplaced;" + std::string(kBeginOperation) + accountWent("old.", "")));
}

// Of the tables of what belongs to an account.

/// "AccountID, First, Second, Third", as far as the table has them.
std::string kept(const LinkTable& table, const std::string& prefix = {}) {
  static const char* const names[] = {"AccountID", "First", "Second", "Third"};
  std::vector<std::string> parts;
  for (std::size_t place = 0; place < table.columns.size(); ++place) parts.push_back(prefix + names[place]);
  return joined(parts, ", ");
}

std::string columnsOf(const LinkTable& table, const std::string& prefix) {
  return each(table.columns, ", ", [&](std::string_view column) { return prefix + std::string(column); });
}

std::vector<std::string> keyOf(const LinkTable& table) {
  if (table.keys == 0) return {"rowid"};
  return {table.columns.begin(), table.columns.begin() + static_cast<std::ptrdiff_t>(table.keys)};
}

std::string linkChange(const LinkTable& table, bool isNew, const std::string& values,
                       const std::string& from = {}) {
  return "\n  insert into tblAccountLinkChange (ID, OperationID, Link, IsNew, " + kept(table) +
         ")\n    select " + std::string(kNumberAndOperation) + ", " + std::to_string(table.link) + ", " +
         (isNew ? "1, " : "0, ") + values + from + ";";
}

std::string atNewKey(const LinkTable& table) {
  return each(keyOf(table), " and ", [](const std::string& column) { return column + " = new." + column; });
}

std::string keepReplacedLink(const LinkTable& table) {
  return "\n  delete from tblAccountLinkReplaced;\n  insert into tblAccountLinkReplaced (Link, Place, " +
         kept(table) + ") select " + std::to_string(table.link) + ", " +
         (table.keys == 0 ? "rowid" : "null") + ", " + columnsOf(table, "") + " from " +
         std::string(table.name) + " where " + atNewKey(table) + ";";
}

void addLinkTriggers(const LinkTable& table, std::vector<Trigger>& all) {
  const std::string name(table.name);
  const std::string prefix = "trHistory" + name.substr(std::string_view("tblAccount").size());
  const std::string begin(kBeginOperation);
  const std::string otherKey = each(
      keyOf(table), " or ", [](const std::string& column) { return "old." + column + " <> new." + column; });
  const std::string replaced = " from tblAccountLinkReplaced r where r.Link = " + std::to_string(table.link) +
                               (table.keys == 0 ? " and r.Place = new.rowid" : "");
  all.push_back(trigger(prefix + "Replace",
                        "before insert on " + name + " when exists (select 1 from " + name + " where " +
                            atNewKey(table) + ") or exists (select 1 from tblAccountLinkReplaced)",
                        keepReplacedLink(table)));
  all.push_back(trigger(prefix + "Insert", "after insert on " + name,
                        begin + linkChange(table, false, kept(table, "r."), replaced) +
                            linkChange(table, true, columnsOf(table, "new."))));
  all.push_back(trigger(prefix + "Renumber", "before update on " + name + " when " + otherKey,
                        keepReplacedLink(table)));
  const std::string any =
      each(table.columns, " or ", [](std::string_view column) { return differs(std::string(column)); });
  all.push_back(
      trigger(prefix + "Update", "after update on " + name + " when " + otherKey + " or " + any,
              begin + linkChange(table, false, kept(table, "r."), replaced + " and (" + otherKey + ")") +
                  linkChange(table, false, columnsOf(table, "old.")) +
                  linkChange(table, true, columnsOf(table, "new."))));
  all.push_back(trigger(prefix + "Delete", "after delete on " + name,
                        "\n  delete from tblAccountLinkReplaced;" + begin +
                            linkChange(table, false, columnsOf(table, "old."))));
}

}  // namespace

std::vector<Trigger> rememberingTriggers() {
  std::vector<Trigger> all;
  addAccountTriggers(all);
  for (const LinkTable& table : linkTables()) addLinkTriggers(table, all);
  all.push_back(
      trigger("trHistoryOperation", "after insert on tblAccountOperation",
              "\n  update tblAccountOperationNow set OperationID = new.ID where OperationID is null;"));
  return all;
}

std::vector<Trigger> guardingTriggers() {
  std::vector<Trigger> all;
  for (const std::string table :
       {"tblAccountMemory", "tblAccountOperation", "tblAccountChange", "tblAccountLinkChange"}) {
    const std::string name = "trKept" + table.substr(std::string_view("tblAccount").size());
    const std::string body = "\n  select raise(abort, '" + std::string(kNobodyChanges) + "');";
    all.push_back(trigger(name + "Update", "before update on " + table, body));
    all.push_back(trigger(name + "Delete", "before delete on " + table, body));
    // Where a row is replaced no trigger of a deletion runs.
    std::string when = "before insert on ";
    when.append(table).append(" when exists (select 1 from ").append(table).append(" where ID = new.ID)");
    all.push_back(trigger(name + "Insert", when, body));
  }
  return all;
}

}  // namespace ledgertree::db
