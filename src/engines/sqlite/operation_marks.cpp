#include "engines/sqlite/operation_marks.h"

#include <sqlite3.h>

#include "engines/sqlite/errors.h"

namespace ledgertree::engines::sqlite {
namespace {

constexpr const char* kTable = "tblAccountOperationNow";

void bindKey(SQLite::Statement& statement, int place, std::int64_t key) {
  if (key > 0)
    statement.bind(place, key);
  else
    statement.bind(place);
}

}  // namespace

bool OperationMarks::areKept() const {
  return sqlite3_table_column_metadata(database_.getHandle(), "main", kTable, "Kind", nullptr, nullptr,
                                       nullptr, nullptr, nullptr) == SQLITE_OK;
}

void OperationMarks::set(const data::Operation& operation) {
  try {
    if (!put_) {
      // A pruned operation starts again under a new number.
      put_.emplace(database_,
                   "insert into tblAccountOperationNow (OperationID, UserID, Kind, TakesBack) "
                   "values ((select ID from tblAccountOperation where ID = ?1), ?2, ?3, ?4)");
      take_.emplace(database_, "delete from tblAccountOperationNow returning OperationID");
    }
    put_->reset();
    bindKey(*put_, 1, operation.number);
    put_->bind(2, operation.userID);
    put_->bind(3, static_cast<std::int32_t>(operation.kind));
    bindKey(*put_, 4, operation.takesBack);
    put_->exec();
    put_->reset();
  } catch (const SQLite::Exception& failure) {
    throw engineError(failure, kTable);
  }
}

std::int64_t OperationMarks::clear() {
  try {
    take_->reset();
    std::int64_t number = 0;
    while (take_->executeStep()) number = take_->getColumn(0).getInt64();
    take_->reset();
    return number;
  } catch (const SQLite::Exception& failure) {
    throw engineError(failure, kTable);
  }
}

}  // namespace ledgertree::engines::sqlite
