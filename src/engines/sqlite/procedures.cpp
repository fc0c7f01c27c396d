#include "engines/sqlite/procedures.h"

#include <sqlite3.h>

#include <string>
#include <variant>

#include "data/account.h"
#include "data/data_error.h"
#include "engines/sqlite/code_key.h"
#include "text/characters.h"

namespace ledgertree::engines::sqlite {
namespace {

// A statement's parameters ?1, ?2, … are its procedure's, in order.

constexpr const char* kPermission = R"(
  select 1 from tblUserPermission where UserID = ?1 and FormPermissionID = ?2)";

constexpr const char* kUserPeriod = "select PeriodID from tblUser where ID = ?1";

using data::AccountCall;

std::string parameter(int place) { return "?" + std::to_string(place); }

/// The expression by which a procedure stores a field that it takes as parameter number `place`.
std::string stored(const data::AccountField& field, int place) {
  std::string value = parameter(place);
  if (field.noneIsNull) return "case when " + value + " > 0 then " + value + " end";
  if (field.type() == data::ParameterType::DateTime)
    return "ifnull(" + value + ", datetime('now', 'localtime'))";
  return value;
}

// The check for an existing code is part of the writing
// statement, so that nothing can happen between the two.

/// If the code exists, the level is null, which its column refuses. An insert from a select wouldn't need
/// this detour, but SQLite materialises the rows of such a select, which adds half to the total cost.
std::string insertStatement() {
  std::string columns;
  std::string values;
  int place = 0;
  for (const data::AccountField& field : data::kAccountFields) {
    if (field.insert == data::kNotTaken) continue;
    columns.append(field.column).append(", ");
    values += stored(field, ++place) + ", ";
  }
  const std::string code = parameter(placeOf(AccountCall::Insert, &data::Account::code));
  const std::string parent = parameter(placeOf(AccountCall::Insert, &data::Account::parentID));
  return "insert into tblAccount (" + columns + "NoLevel) values (" + values +
         "case when not exists (select 1 from tblAccount a where " + keyOf("a.Code") + " = " + keyOf(code) +
         ") then 1 + ifnull((select p.NoLevel from tblAccount p where p.ID = " + parent + "), 0) end)";
}

/// Accounts that shared a code before that rule keep it, each in its own spelling, until one of them is given
/// another: otherwise they could no longer be edited at all.
std::string updateStatement() {
  std::string changes;
  int place = 0;
  for (const data::AccountField& field : data::kAccountFields) {
    if (field.update == data::kNotTaken || ++place == 1) continue;  // the first one is the ID
    changes.append(changes.empty() ? "" : ", ")
        .append(field.column)
        .append(" = ")
        .append(stored(field, place));
  }
  const std::string code = parameter(placeOf(AccountCall::Update, &data::Account::code));
  return "update tblAccount set " + changes +
         " where ID = ?1 and not exists (select 1 from tblAccount a where " + keyOf("a.Code") + " = " +
         keyOf(code) + " and a.ID <> ?1 and (rtrim(a.Code) = rtrim(" + code +
         ") or rtrim(tblAccount.Code) is not rtrim(" + code + ")))";
}
static_assert(placeOf(AccountCall::Update, &data::Account::id) == 1);

constexpr const char* kAccountExists = "select 1 from tblAccount where ID = ?1";

constexpr const char* kDeleteRelations = "delete from tblAccountRelatedObjects where AccountID = ?1";

constexpr const char* kInsertRelation = R"(
  insert into tblAccountRelatedObjects (AccountID, AccountGroupID, RelatedClassID, RelatedObjectID)
  values (?1, case when ?2 > 0 then ?2 end, case when ?3 > 0 then ?3 end, nullif(?4, -1)))";

constexpr const char* kDeleteAccount = "delete from tblAccount where ID = ?1";

constexpr const char* kBegin = "savepoint procedure";
constexpr const char* kEnd = "release procedure";
constexpr const char* kUndo = "rollback to procedure";

void bind(SQLite::Statement& statement, int place, const data::Value& value) {
  const data::Value::Variant& held = value.variant();
  if (const auto* number = std::get_if<std::int64_t>(&held)) {
    statement.bind(place, *number);
  } else if (const auto* amount = std::get_if<data::Money>(&held)) {
    statement.bind(place, amount->tenThousandths());
  } else if (const auto* text = std::get_if<std::string>(&held)) {
    statement.bindNoCopy(place, *text);
  } else if (const auto* time = std::get_if<data::DateTime>(&held)) {
    statement.bind(place, time->toIso());
  } else if (const auto* real = std::get_if<double>(&held)) {
    statement.bind(place, *real);
  } else {
    statement.bind(place);
  }
}

/// Resets a prepared statement for its next use, however the block is left.
class Use {
 public:
  Use(SQLite::Statement& statement, std::span<const data::Value> values) : statement_(statement) {
    for (std::size_t place = 0; place < values.size(); ++place) {
      bind(statement, static_cast<int>(place) + 1, values[place]);
    }
  }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;
  ~Use() {
    statement_.tryReset();
    statement_.clearBindings();
  }

 private:
  SQLite::Statement& statement_;
};

[[noreturn]] void refuseMissing(const char* message, const char* procedure) {
  throw data::DataError(data::DataError::Reason::Constraint, SQLITE_CONSTRAINT_FOREIGNKEY, message,
                        procedure);
}

constexpr const char* kParentIsGone =
    "حساب مادر ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. حساب مادر ديگري انتخاب نماييد.";

}  // namespace

std::int32_t ProcedureRunner::call(const data::Procedure& procedure, std::span<const data::Value> values) {
  struct Body {
    const data::Procedure& procedure;
    std::int32_t (ProcedureRunner::*run)(Values);
  };
  static const Body bodies[] = {
      {data::procedures::spTarvoHasPermission, &ProcedureRunner::hasPermission},
      {data::procedures::spAccountGetCurrentUserPeriod, &ProcedureRunner::currentUserPeriod},
      {data::procedures::spAccountInsertAccount, &ProcedureRunner::insertAccount},
      {data::procedures::spAccountUpdateAccounts, &ProcedureRunner::updateAccount},
      {data::procedures::spAccountInsertRelatedObject, &ProcedureRunner::insertRelatedObject},
      {data::procedures::spAccountDeleteAccount, &ProcedureRunner::deleteAccount},
  };
  for (const Body& body : bodies) {
    if (text::equalsIgnoringCase(body.procedure.name, procedure.name)) return (this->*body.run)(values);
  }
  throw data::DataError(data::DataError::Reason::Misuse, 0,
                        "There is no procedure " + std::string(procedure.name) + ".",
                        std::string(procedure.name));
}

std::int32_t ProcedureRunner::hasPermission(Values values) { return look(kPermission, values, 0); }

std::int32_t ProcedureRunner::currentUserPeriod(Values values) { return look(kUserPeriod, values, 0); }

std::int32_t ProcedureRunner::insertAccount(Values values) {
  static const std::string statement = insertStatement();
  try {
    change(statement.c_str(), values);
  } catch (const SQLite::Exception& failure) {
    if (failure.getExtendedErrorCode() == SQLITE_CONSTRAINT_NOTNULL) return 0;
    if (failure.getExtendedErrorCode() != SQLITE_CONSTRAINT_FOREIGNKEY) throw;
    refuseMissing(kParentIsGone, "spAccountInsertAccount");
  }
  return static_cast<std::int32_t>(database_.getLastInsertRowid());
}

std::int32_t ProcedureRunner::updateAccount(Values values) {
  static const std::string statement = updateStatement();
  try {
    if (change(statement.c_str(), values) != 0) return 1;
  } catch (const SQLite::Exception& failure) {
    if (failure.getExtendedErrorCode() != SQLITE_CONSTRAINT_FOREIGNKEY) throw;
    refuseMissing(kParentIsGone, "spAccountUpdateAccounts");
  }
  // An existing code is the only reason for a 0.
  if (look(kAccountExists, values.first(1), 0) == 0)
    refuseMissing(data::kAccountIsGone, "spAccountUpdateAccounts");
  return 0;
}

/// Several changes as one: rolls back unless completed, and leaves no transaction open.
class ProcedureRunner::Together {
 public:
  explicit Together(ProcedureRunner& runner)
      : runner_(runner), end_(runner.prepared(kEnd)), undo_(runner.prepared(kUndo)) {
    runner_.change(kBegin, {});
  }
  Together(const Together&) = delete;
  Together& operator=(const Together&) = delete;
  ~Together() {
    if (ended_) return;
    for (SQLite::Statement* statement : {&undo_, &end_}) {
      statement->tryExecuteStep();
      statement->tryReset();
    }
  }
  void end() {
    runner_.change(kEnd, {});
    ended_ = true;
  }

 private:
  ProcedureRunner& runner_;
  SQLite::Statement& end_;
  SQLite::Statement& undo_;
  bool ended_ = false;
};

std::int32_t ProcedureRunner::insertRelatedObject(Values values) {
  try {
    Together changes(*this);
    change(kDeleteRelations, values.first(1));
    change(kInsertRelation, values);
    changes.end();
  } catch (const SQLite::Exception& failure) {
    if (failure.getExtendedErrorCode() != SQLITE_CONSTRAINT_FOREIGNKEY) throw;
    refuseMissing(data::kAccountIsGone, "spAccountInsertRelatedObject");
  }
  return 1;
}

std::int32_t ProcedureRunner::deleteAccount(Values values) {
  try {
    change(kDeleteAccount, values);
  } catch (const SQLite::Exception& failure) {
    if (failure.getErrorCode() != SQLITE_CONSTRAINT) throw;
    return 0;
  }
  return 1;  // also for an account that another program deleted first
}

SQLite::Statement& ProcedureRunner::prepared(const char* statement) {
  const auto found = statements_.find(statement);
  if (found != statements_.end()) return found->second;
  return statements_.emplace(statement, SQLite::Statement(database_, statement)).first->second;
}

int ProcedureRunner::change(const char* statement, Values values) {
  SQLite::Statement& query = prepared(statement);
  const Use use(query, values);
  return query.exec();
}

std::int32_t ProcedureRunner::look(const char* statement, Values values, std::int32_t otherwise) {
  SQLite::Statement& query = prepared(statement);
  const Use use(query, values);
  if (!query.executeStep() || query.getColumn(0).isNull()) return otherwise;
  const std::int64_t number = query.getColumn(0).getInt64();
  if (number == static_cast<std::int32_t>(number)) return static_cast<std::int32_t>(number);
  throw data::DataError(
      data::DataError::Reason::Statement, 0,
      "عدد " + std::to_string(number) + " در محدوده مجاز نيست. آن را در پايگاه داده اصلاح نماييد.",
      statement);
}

}  // namespace ledgertree::engines::sqlite
