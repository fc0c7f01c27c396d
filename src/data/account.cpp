#include "data/account.h"

#include <stdexcept>

#include "data/dten.h"
#include "data/numbers.h"

namespace ledgertree::data {
namespace {

/// Only texts have a width; what an update can change, an insert can set.
constexpr bool isComplete(const AccountField& field) {
  const bool isText = field.type() == ParameterType::Text;
  for (const int taken : {field.insert, field.update})
    if (taken != kNotTaken && (taken > 0) != isText) return false;
  const bool isKey = field.member == AccountMember(&Account::id);
  return isKey || field.update == kNotTaken || placeOf(AccountCall::Insert, field.member) != 0;
}

constexpr bool allAreComplete() {
  for (const AccountField& field : kAccountFields)
    if (!isComplete(field) || !field.parameter.starts_with('@')) return false;
  return true;
}
static_assert(allAreComplete());

template <typename Kind>
Value valueIn(const Kind& held) {
  return held;
}
template <typename Kind>
Value valueIn(const std::optional<Kind>& held) {
  return held ? Value(*held) : Value();
}

/// A reference as the screen's fields hold it: -1 for none.
std::int32_t referenceIn(const Value& stored) { return toNumber(stored.toText()).asInt32(); }

void read(Account& account, std::int32_t Account::*member, const Value& stored) {
  account.*member = referenceIn(stored);
}
void read(Account& account, std::int64_t Account::*member, const Value& stored) {
  account.*member = stored.isNull() ? -1 : stored.toInt64();
}
void read(Account& account, std::string Account::*member, const Value& stored) {
  account.*member = stored.toText();
}
void read(Account& account, std::optional<Money> Account::*member, const Value& stored) {
  if (stored.isNull()) return;
  std::string digits = stored.toText();
  account.*member = digitsToCurrency(digits);
}
void read(Account& account, std::optional<DateTime> Account::*member, const Value& stored) {
  try {
    if (!stored.isNull()) account.*member = stored.toDateTime();
  } catch (const std::invalid_argument&) {
    // A date in another format, as other programs leave it in a file, mustn't block the account: no field
    // shows it, and no edit writes it.
  }
}

template <typename FieldOf>
Account readAccount(const FieldOf& fieldOf) {
  Account account;
  for (const AccountField& field : kAccountFields) {
    const Value stored = fieldOf(field.column);
    std::visit([&](auto member) { read(account, member, stored); }, field.member);
  }
  return account;
}

Value firstIn(const Rows& rows, std::string_view column) {
  return rows.value(0, rows.column(column).value());
}

}  // namespace

Value valueOf(const Account& account, const AccountMember& member) {
  return std::visit([&account](auto held) { return valueIn(account.*held); }, member);
}

std::vector<Value> argumentsOf(const Account& account, AccountCall call) {
  std::vector<Value> values;
  values.reserve(std::size(kAccountFields));
  for (const AccountField& field : kAccountFields)
    if (field.by(call) != kNotTaken) values.push_back(valueOf(account, field.member));
  return values;
}

Account accountIn(const RecordHandle& row) {
  return readAccount([&row](std::string_view column) { return row.Fields(column); });
}

Account accountIn(const Rows& rows) {
  return readAccount([&rows](std::string_view column) { return firstIn(rows, column); });
}

AccountRelation relationIn(const RecordHandle& row) {
  return {.classID = referenceIn(row.Fields("RelatedClassID")),
          .objectID = referenceIn(row.Fields("RelatedObjectID"))};
}

AccountRelation relationIn(const Rows& rows) {
  return {.classID = referenceIn(firstIn(rows, "RelatedClassID")),
          .objectID = referenceIn(firstIn(rows, "RelatedObjectID"))};
}

}  // namespace ledgertree::data
