#include "history/history.h"

#include "data/data_error.h"

namespace ledgertree::history {
namespace {

using data::OperationKind;
using data::Permission;

/// The rows of a statement of the memory.
data::Rows ask(data::DtEn& data, const std::string& statement) {
  return data.cnMainData.run(statement).value_or(data::Rows());
}

/// The same, or nothing where there is no such table.
std::optional<data::Rows> askWhereThere(data::DtEn& data, const std::string& statement) {
  try {
    return ask(data, statement);
  } catch (const data::DataError& failure) {
    if (failure.reason() != data::DataError::Reason::Statement) throw;
    return std::nullopt;
  }
}

data::Value at(const data::Rows& rows, std::size_t row, std::string_view column) {
  return rows.value(row, rows.column(column).value());
}

std::optional<std::int32_t> numberAt(const data::Rows& rows, std::size_t row, std::string_view column) {
  const data::Value value = at(rows, row, column);
  return value.isNull() ? std::nullopt : std::optional(value.toInt32());
}

Standing standingIn(data::DtEn& data, const data::Rows& rows, std::size_t row) {
  Standing standing{.why = static_cast<data::Obstacle>(at(rows, row, "Reason").toInt32())};
  standing.accountID = numberAt(rows, row, "AccountID").value_or(0);
  const data::Value operation = at(rows, row, "OperationID");
  if (operation.isNull()) return standing;
  standing.operation = operation.toInt64();
  const data::Rows who = ask(data, "select Moment, UserID from tblAccountOperation where ID = " +
                                       std::to_string(standing.operation));
  if (who.count() == 0) return standing;
  standing.userID = numberAt(who, 0, "UserID");
  standing.moment = at(who, 0, "Moment").toDateTime();
  return standing;
}

}  // namespace

std::optional<data::DateTime> since(data::DtEn& data) {
  const auto rows = askWhereThere(data, "select Since from tblAccountMemory");
  return !rows || rows->count() == 0 ? std::nullopt : std::optional(rows->value(0, 0).toDateTime());
}

bool isKept(data::DtEn& data) {
  return askWhereThere(data, "select OperationID from tblAccountOperationNow").has_value();
}

Then accountAt(data::DtEn& data, std::int32_t accountID, const data::DateTime& moment) {
  const std::string id = std::to_string(accountID);
  const data::Rows now = ask(data, "select Code, Title, ParentID from tblAccount where ID = " + id);
  Then then;
  if (now.count() != 0)
    then = {true, at(now, 0, "Code").toText(), at(now, 0, "Title").toText(), numberAt(now, 0, "ParentID")};
  // From today back to the first change behind the moment.
  const data::Rows changes = ask(data,
                                 "select c.Event, c.OldCode, c.OldTitle, c.OldParentID, c.NewParentID from "
                                 "tblAccountChange c inner join "
                                 "tblAccountOperation o on o.ID = c.OperationID where c.AccountID = " +
                                     id + " and o.Moment >= '" + moment.toIso() + "' order by c.ID desc");
  for (std::size_t row = 0; row < changes.count(); ++row) {
    const auto event = static_cast<Event>(at(changes, row, "Event").toInt32());
    if (event == Event::Came) {
      then = {};
      continue;
    }
    then.existed = true;
    then.code = at(changes, row, "OldCode").toText();
    then.title = at(changes, row, "OldTitle").toText();
    const auto before = numberAt(changes, row, "OldParentID");
    // Two nulls: the change left the parent alone.
    if (event == Event::Went || before || numberAt(changes, row, "NewParentID")) then.parentID = before;
  }
  return then;
}

std::int64_t lastOperationOf(data::DtEn& data, std::int32_t userID, std::int64_t after) {
  const data::Rows rows = ask(
      data, "select max(o.ID) as ID from tblAccountOperation o where o.UserID = " + std::to_string(userID) +
                " and o.ID > " + std::to_string(after) +
                " and o.TakesBack is null and not exists (select t.ID from tblAccountOperation t "
                "where t.TakesBack = o.ID and not exists (select u.ID from tblAccountOperation u where "
                "u.TakesBack = t.ID))");
  const data::Value last = rows.value(0, 0);
  return last.isNull() ? 0 : last.toInt64();
}

OperationKind kindBehind(data::DtEn& data, std::int64_t operation) {
  while (true) {
    const data::Rows rows = ask(data,
                                "select Kind, isnull(TakesBack,0) as TakesBack from tblAccountOperation "
                                "where ID = " +
                                    std::to_string(operation));
    if (rows.count() == 0) return OperationKind::Other;
    const auto kind = static_cast<OperationKind>(at(rows, 0, "Kind").toInt32());
    const std::int64_t before = at(rows, 0, "TakesBack").toInt64();
    if (kind != OperationKind::TakeBack || before == 0 || before >= operation) return kind;
    operation = before;
  }
}

std::vector<Permission> neededToTakeBack(OperationKind kind) {
  using enum OperationKind;
  switch (kind) {
    case NewAccount:
    case DeleteAccount:
      return {Permission::NewAccount, Permission::DeleteAccount};
    case EditAccount:
      return {Permission::EditAccount};
    case Recode:
    case CopyToDescendants:
      return {Permission::RecodeAccounts};
    case DeleteInBatch:
      return {Permission::DeleteInBatch, Permission::NewAccount};
    case CopyPeriod:
    case HidePeriod:
      return {Permission::CopyPeriod, Permission::HidePeriod};
    case PeriodsOfAccount:
      return {Permission::PeriodsOfAccount};
    case ClassesOfAccount:
    case ObjectsOfAccount:
      // Free for everybody, as they were.
      return {Permission::ShowChart};
    case Other:
    case TakeBack:
      break;
  }
  // Whatever it was.
  return {Permission::NewAccount, Permission::EditAccount, Permission::DeleteAccount, Permission::CopyPeriod,
          Permission::HidePeriod};
}

TakenBack takeBack(data::DtEn& data, std::int32_t userID, std::int64_t operation) {
  TakenBack result;
  for (const Permission permission : neededToTakeBack(kindBehind(data, operation)))
    if (!data::isPermitted(data, userID, permission)) result.missing.push_back(permission);
  if (!result.missing.empty()) return result;
  const data::OperationBlock block(
      data.cnMainData, {.kind = OperationKind::TakeBack, .userID = userID, .takesBack = operation});
  const data::Rows rows = data.cnMainData.takeBack(operation);
  for (std::size_t row = 0; row < rows.count(); ++row) result.standing.push_back(standingIn(data, rows, row));
  if (rows.count() == 0) result.operation = block.number();
  return result;
}

}  // namespace ledgertree::history
