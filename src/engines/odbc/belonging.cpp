#include "engines/odbc/belonging.h"

#include <utility>

namespace ledgertree::engines::odbc {
namespace {

constexpr const char* kNumber = "LedgerTreeOperation";
/// An operation whose changes were rolled back has no row, whatever the context says.
constexpr const char* kAsk =
    "(select ID from dbo.tblAccountOperation where ID = cast(session_context(N'LedgerTree.OperationID') as "
    "int)) as ";

}  // namespace

Belonging::Belonging(Session& session, std::shared_ptr<data::Operation> operation, bool writes)
    : session_(session),
      operation_(std::move(operation)),
      saysWhat_(writes && session.keepsHistory() && !session.knows(operation_)),
      asksNumber_(writes && session.keepsHistory() && operation_ && operation_->number == 0) {}

std::string Belonging::ahead() {
  if (!saysWhat_) return {};
  // Until the batch has run, what the context holds is unknown.
  session_.forgetOperation();
  std::string text;
  const auto say = [&text](const char* name, std::optional<std::int64_t> value) {
    text.append("exec sp_set_session_context N'LedgerTree.").append(name).append("', ");
    text.append(value ? std::to_string(*value) : "null").append("; ");
  };
  const auto key = [](std::int64_t number) { return number > 0 ? std::optional(number) : std::nullopt; };
  const data::Operation none;
  const data::Operation& operation = operation_ ? *operation_ : none;
  say("Kind", operation_ ? std::optional<std::int64_t>(static_cast<int>(operation.kind)) : std::nullopt);
  say("UserID", operation_ ? std::optional<std::int64_t>(operation.userID) : std::nullopt);
  say("TakesBack", key(operation.takesBack));
  say("OperationID", key(operation.number));
  return text;
}

std::string Belonging::numberColumn() const { return asksNumber_ ? std::string(kAsk) + kNumber : ""; }

std::string Belonging::behind() const { return asksNumber_ ? "; select " + numberColumn() : ""; }

bool Belonging::hears(const data::Rows& rows) {
  const auto column = rows.column(kNumber);
  if (!column) return false;
  if (rows.count() != 0 && !rows.isNull(0, *column)) operation_->number = rows.value(0, *column).toInt64();
  return true;
}

void Belonging::done() {
  if (saysWhat_) session_.knowOperation(operation_);
}

}  // namespace ledgertree::engines::odbc
