#include "engines/sqlite/take_back.h"

#include <sqlite3.h>

#include <algorithm>

#include "db/history.h"
#include "engines/sqlite/code_key.h"

namespace ledgertree::engines::sqlite {
namespace {

using data::Obstacle;

enum Event { kInserted = 1, kUpdated = 2, kDeleted = 3 };

std::int64_t bitOf(std::string_view name) {
  for (const db::RememberedColumn& column : db::rememberedColumns())
    if (column.name == name) return column.bit;
  return 0;
}

/// "… and a.Code is c.NewCode" of the fields that a change touched.
std::string stillAsLeft(std::int64_t fields) {
  std::string text;
  for (const auto& [name, type, bit] : db::rememberedColumns())
    if ((fields & bit) != 0)
      text.append(" and tblAccount.").append(name).append(" collate binary is c.New").append(name);
  return text;
}

std::string updateOf(std::int64_t fields) {
  std::string changes;
  for (const auto& [name, type, bit] : db::rememberedColumns())
    if ((fields & bit) != 0)
      changes.append(changes.empty() ? "" : ", ").append(name).append(" = c.Old").append(name);
  return "update tblAccount set " + changes +
         " from tblAccountChange c where c.ID = ?1 and tblAccount.ID = c.AccountID" + stillAsLeft(fields);
}

std::string insertOf() {
  std::string columns;
  std::string values;
  for (const auto& [name, type, bit] : db::rememberedColumns()) {
    columns.append(columns.empty() ? "" : ", ").append(name);
    values.append(values.empty() ? "Old" : ", Old").append(name);
  }
  return "insert into tblAccount (" + columns + ") select " + values + " from tblAccountChange where ID = ?1";
}

/// The condition for a link table's row that a change recorded.
std::string asKept(const db::LinkTable& table) {
  static const char* const names[] = {"AccountID", "First", "Second", "Third"};
  std::string text;
  for (std::size_t place = 0; place < table.columns.size(); ++place)
    text.append(text.empty() ? "" : " and ")
        .append("t.")
        .append(table.columns[place])
        .append(" is c.")
        .append(names[place]);
  return text;
}

constexpr const char* kAccountExists = "select 1 from tblAccount where ID = ?1";

}  // namespace

data::Rows TakeBack::run() {
  for (const char* const column : {"AccountID", "Reason", "OperationID"}) obstacles_.addColumn(column);
  if (!isWhole()) return obstacles_;
  readLinks();
  undoLinks(true);
  std::vector<Change> changes;
  SQLite::Statement& all = prepared(
      "select ID, Event, AccountID, Fields, OldParentID from tblAccountChange where OperationID = ?1 "
      "order by ID desc");
  for (all.bind(1, operation_); all.executeStep();) {
    Change& change = changes.emplace_back();
    change.number = all.getColumn(0).getInt64();
    change.event = all.getColumn(1).getInt();
    change.account = all.getColumn(2).getInt64();
    change.fields = all.getColumn(3).getInt64();
    if (!all.getColumn(4).isNull()) change.oldParent = all.getColumn(4).getInt64();
  }
  all.reset();
  for (const Change& change : changes)
    if (obstacles_.count() < kMostTold) undo(change);
  undoLinks(false);
  // If a row differs from what was left, these checks would only report the same.
  if (obstacles_.count() != 0) return obstacles_;
  findCodesTaken();
  findDocumentsOfParents();
  return obstacles_;
}

bool TakeBack::isWhole() {
  SQLite::Statement& known = prepared("select IsCut from tblAccountOperation where ID = ?1");
  known.bind(1, operation_);
  const bool isThere = known.executeStep();
  const bool isCut = isThere && known.getColumn(0).getInt() != 0;
  known.reset();
  if (!isThere) stands(Obstacle::Unknown, std::nullopt);
  if (isCut) stands(Obstacle::IsCut, std::nullopt);
  return isThere && !isCut;
}

void TakeBack::readLinks() {
  SQLite::Statement& all = prepared(
      "select Link, min(ID), AccountID, sum(2 * IsNew - 1) as Times from tblAccountLinkChange "
      "where OperationID = ?1 group by Link, AccountID, First, Second, Third having Times <> 0 order by 2");
  for (all.bind(1, operation_); all.executeStep();) {
    for (const db::LinkTable& table : db::linkTables())
      if (table.link == all.getColumn(0).getInt())
        links_.push_back(
            {&table, all.getColumn(1).getInt64(), all.getColumn(2).getInt64(), all.getColumn(3).getInt64()});
  }
  all.reset();
}

void TakeBack::undoLinks(bool came) {
  for (const Link& link : links_) {
    if ((link.times > 0) != came || obstacles_.count() >= kMostTold) continue;
    const db::LinkTable& table = *link.table;
    const std::string name(table.name);
    const std::string kept = " from tblAccountLinkChange c where c.ID = ?1";
    std::string sql;
    if (came) {
      // A table without a key may hold duplicate rows: each time one of them is deleted.
      sql = "delete from " + name +
            (table.keys == 0
                 ? " where rowid = (select t.rowid from " + name + " t join tblAccountLinkChange c on " +
                       asKept(table) + " where c.ID = ?1 limit 1)"
                 : " as t where exists (select 1" + kept + " and " + asKept(table) + ")");
    } else {
      std::string columns;
      std::string values;
      static const char* const names[] = {"c.AccountID", "c.First", "c.Second", "c.Third"};
      for (std::size_t place = 0; place < table.columns.size(); ++place) {
        columns.append(columns.empty() ? "" : ", ").append(table.columns[place]);
        values.append(values.empty() ? "" : ", ").append(names[place]);
      }
      sql = "insert into ";
      sql.append(name).append(" (").append(columns).append(") select ").append(values).append(kept);
      if (!exists(kAccountExists, link.account)) {
        stands(Obstacle::Gone, link.account);
        continue;
      }
    }
    for (std::int64_t time = 0; time < std::abs(link.times); ++time) {
      Change change{link.change, 0, link.account, 0, {}};
      if (!ran(sql, change, Obstacle::Changed)) stands(Obstacle::Changed, link.account);
    }
  }
}

void TakeBack::undo(const Change& change) {
  if (change.event != kInserted && change.oldParent && (change.fields & bitOf("ParentID")) != 0 &&
      !exists(kAccountExists, *change.oldParent))
    return stands(Obstacle::ParentGone, change.account);
  if (change.event == kInserted) return undoInsert(change);
  if (change.event == kUpdated) return undoUpdate(change);
  undoDeletion(change);
}

void TakeBack::undoInsert(const Change& change) {
  if (!exists(kAccountExists, change.account)) return stands(Obstacle::Gone, change.account);
  if (exists("select 1 from tblAccount where ParentID = ?1", change.account))
    return stands(Obstacle::HasChildren, change.account);
  if (exists("select 1 from tblAccountDocumentDetail where AccountID = ?1", change.account))
    return stands(Obstacle::HasDocuments, change.account);
  for (const db::LinkTable& table : db::linkTables())
    if (exists("select 1 from " + std::string(table.name) + " where AccountID = ?1", change.account))
      return stands(Obstacle::HasRelations, change.account);
  static const std::string sql =
      "delete from tblAccount where ID = (select c.AccountID from tblAccountChange c where c.ID = ?1" +
      stillAsLeft(db::allRemembered()) + ")";
  if (!ran(sql, change)) stands(Obstacle::Changed, change.account);
}

void TakeBack::undoUpdate(const Change& change) {
  if ((change.fields & bitOf("ID")) != 0) return stands(Obstacle::Renumbered, change.account);
  if (ran(updateOf(change.fields), change)) return;
  stands(exists(kAccountExists, change.account) ? Obstacle::Changed : Obstacle::Gone, change.account);
}

void TakeBack::undoDeletion(const Change& change) {
  static const std::string sql = insertOf();
  if (exists(kAccountExists, change.account)) return stands(Obstacle::There, change.account);
  if (!ran(sql, change)) stands(Obstacle::Changed, change.account);
}

bool TakeBack::ran(const std::string& sql, const Change& change, Obstacle refused) {
  SQLite::Statement& statement = prepared(sql);
  statement.bind(1, change.number);
  try {
    const bool changed = statement.exec() == 1;
    statement.reset();
    return changed;
  } catch (const SQLite::Exception& failure) {
    if (failure.getErrorCode() != SQLITE_CONSTRAINT) throw;
    statement.tryReset();
    stands(refused, change.account);
    return true;
  }
}

/// Accounts may share a code from earlier times; what counts is who got it after the operation.
void TakeBack::findCodesTaken() {
  static const std::string sql =
      "select distinct c.AccountID from tblAccountChange c join tblAccount a on a.ID = c.AccountID "
      "join tblAccount b on " +
      keyOf("b.Code") + " = " + keyOf("a.Code") +
      " and b.ID <> a.ID "
      "where c.OperationID = ?1 and c.Event <> 1 and c.Fields & ?2 <> 0 and exists ("
      "select 1 from tblAccountChange d where d.AccountID = b.ID and d.ID > c.ID and d.Event <> 3 "
      "and d.Fields & ?2 <> 0 and d.OperationID <> ?1 "
      "and d.OperationID is not (select OperationID from tblAccountOperationNow)) limit 100";
  SQLite::Statement& taken = prepared(sql);
  taken.bind(1, operation_);
  taken.bind(2, bitOf("Code"));
  while (taken.executeStep()) stands(Obstacle::CodeTaken, taken.getColumn(0).getInt64());
  taken.reset();
}

/// An account with documents must not get its first children.
void TakeBack::findDocumentsOfParents() {
  SQLite::Statement& found = prepared(
      "with Back (ID) as (select AccountID from tblAccountChange where OperationID = ?1 and Event <> 1 "
      "and Fields & ?2 <> 0) "
      "select distinct a.ParentID from Back b join tblAccount a on a.ID = b.ID "
      "where exists (select 1 from tblAccountDocumentDetail d where d.AccountID = a.ParentID) "
      "and not exists (select 1 from tblAccount s where s.ParentID = a.ParentID and s.ID not in "
      "(select ID from Back)) limit 100");
  found.bind(1, operation_);
  found.bind(2, bitOf("ParentID"));
  while (found.executeStep()) stands(Obstacle::HasDocuments, found.getColumn(0).getInt64());
  found.reset();
}

bool TakeBack::exists(const std::string& query, std::int64_t value) {
  SQLite::Statement& statement = prepared(query);
  statement.bind(1, value);
  const bool found = statement.executeStep();
  statement.reset();
  return found;
}

void TakeBack::stands(Obstacle why, std::optional<std::int64_t> account) {
  if (!told_.emplace(account.value_or(0), why).second) return;
  const auto last = account ? lastChangeOf(*account) : std::nullopt;
  const auto add = [this](std::optional<std::int64_t> number) {
    if (number)
      obstacles_.addInteger(*number);
    else
      obstacles_.addNull();
  };
  add(account);
  obstacles_.addInteger(static_cast<std::int64_t>(why));
  add(last);
}

std::optional<std::int64_t> TakeBack::lastChangeOf(std::int64_t account) {
  SQLite::Statement& last = prepared(
      "select OperationID, max(ID) from (select OperationID, ID from tblAccountChange where AccountID = ?1 "
      "union all select OperationID, ID from tblAccountLinkChange where AccountID = ?1) "
      "where OperationID > ?2 and OperationID is not (select OperationID from tblAccountOperationNow)");
  last.bind(1, account);
  last.bind(2, operation_);
  std::optional<std::int64_t> found;
  if (last.executeStep() && !last.getColumn(0).isNull()) found = last.getColumn(0).getInt64();
  last.reset();
  return found;
}

SQLite::Statement& TakeBack::prepared(const std::string& sql) {
  const auto found = statements_.find(sql);
  if (found != statements_.end()) return found->second;
  return statements_.emplace(sql, SQLite::Statement(database_, sql)).first->second;
}

}  // namespace ledgertree::engines::sqlite
