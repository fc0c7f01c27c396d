#include "history/operations.h"

#include <string>

namespace ledgertree::history {
namespace {

data::Rows ask(data::DtEn& data, const std::string& statement) {
  return data.cnMainData.run(statement).value_or(data::Rows());
}

std::string tableOf(const char* name, std::int64_t operation) {
  return std::string(" from ") + name + " where OperationID = " + std::to_string(operation);
}

}  // namespace

std::optional<OperationKept> operationKept(data::DtEn& data, std::int64_t operation) {
  const data::Rows rows = ask(
      data, "select Kind, UserID, Moment from tblAccountOperation where ID = " + std::to_string(operation));
  if (rows.count() == 0) return std::nullopt;
  OperationKept kept{.kind = static_cast<data::OperationKind>(rows.value(0, 0).toInt32())};
  if (!rows.isNull(0, 1)) kept.userID = rows.value(0, 1).toInt32();
  kept.moment = rows.value(0, 2).toDateTime();
  const std::string own = tableOf("tblAccountChange", operation);
  const std::string links = tableOf("tblAccountLinkChange", operation);
  kept.accounts = static_cast<std::int64_t>(
      ask(data, "select AccountID" + own + " union select AccountID" + links).count());
  for (const std::string* const table : {&own, &links})
    kept.changes += ask(data, "select count(*) as HowMany" + *table).value(0, 0).toInt64();
  return kept;
}

std::int64_t newestOperation(data::DtEn& data) {
  if (!since(data)) return 0;
  const data::Rows rows = ask(data, "select max(ID) as ID from tblAccountOperation");
  return rows.isNull(0, 0) ? 0 : rows.value(0, 0).toInt64();
}

std::vector<std::int32_t> usersOfMemory(data::DtEn& data) {
  // A union has each of them once.
  const std::string all = "select UserID from tblAccountOperation where UserID is not null";
  const data::Rows rows = ask(data, all + " union " + all + " order by UserID");
  std::vector<std::int32_t> users;
  for (std::size_t row = 0; row < rows.count(); ++row) users.push_back(rows.value(row, 0).toInt32());
  return users;
}

std::vector<Touched> touchedBy(data::DtEn& data, std::int64_t operation) {
  const std::string where = " where OperationID = " + std::to_string(operation);
  std::vector<Touched> touched;
  const data::Rows accounts =
      ask(data, "select AccountID, Event from tblAccountChange" + where + " order by ID");
  for (std::size_t row = 0; row < accounts.count(); ++row)
    touched.push_back(
        {accounts.value(row, 0).toInt32(), static_cast<Event>(accounts.value(row, 1).toInt32())});
  const std::string relations = "select AccountID from tblAccountLinkChange" + where +
                                " and Link = " + std::to_string(static_cast<int>(Subject::Relation)) +
                                " and AccountID is not null";
  const data::Rows entities = ask(data, relations + " union " + relations);
  for (std::size_t row = 0; row < entities.count(); ++row)
    touched.push_back({entities.value(row, 0).toInt32(), Event::Changed});
  return touched;
}

}  // namespace ledgertree::history
