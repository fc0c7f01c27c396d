#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "data/catalogue.h"
#include "data/value.h"

namespace ledgertree::data {

class RecordHandle;
class Rows;

/// What the user is told when the account being worked on no longer exists.
inline constexpr const char* kAccountIsGone =
    "اين حساب ديگر وجود ندارد؛ شايد کاربر ديگري آن را حذف کرده باشد. درخت حسابها را دوباره بخوانيد.";

/// The entity class and the entity object of an account; -1 for none.
struct AccountRelation {
  std::int32_t classID = -1;
  std::int32_t objectID = -1;
  bool operator==(const AccountRelation&) const = default;
};

/// An account as one value: the record shows it, the screen is read into it, a save validates it, and the
/// procedures write it. A number below 1 means no parent, group, branch or position.
struct Account {
  std::int32_t id = -1;  ///< -1: not stored yet
  std::int32_t parentID = -1;
  std::string code = {};  ///< the whole code
  std::string title = {};
  std::int32_t groupID = -1;
  std::int32_t branchID = 0;
  std::int32_t positionID = 0;
  std::optional<DateTime> createDate = {};
  std::string farsiCreateDate = {};  ///< the same day, "yyyy/mm/dd"
  std::string notes = {};
  // The choices as stored: any other number, as -1 for null, means none.
  std::int64_t accountNatureID = 0;  ///< 0 debit, 1 credit, 2 both
  std::int64_t isPermanent = 0;      ///< 0 temporary, 1 permanent
  std::int64_t isClosed = 0;         ///< 0 open, 1 closed
  std::optional<Money> maxDebit = {};
  std::optional<Money> maxCredit = {};
  /// Nothing if the account has no relation. Written by a procedure of its own.
  std::optional<AccountRelation> relation = {};

  bool operator==(const Account&) const = default;
};

using AccountMember =
    std::variant<std::int32_t Account::*, std::int64_t Account::*, std::optional<Money> Account::*,
                 std::optional<DateTime> Account::*, std::string Account::*>;

/// The two procedures that write an account: spAccountInsertAccount and spAccountUpdateAccounts.
enum class AccountCall { Insert, Update };

inline constexpr int kNotTaken = -1;
inline constexpr int kTaken = 0;

/// The longest code, in characters.
inline constexpr int kCodeLength = 20;

/// A column of an account, and the procedure parameter that writes it.
struct AccountField {
  std::string_view column;     ///< of tblAccount and of vwAccount
  std::string_view parameter;  ///< "@Title"
  AccountMember member;
  // Per procedure: kNotTaken, kTaken, or the maximum length of a text in characters.
  int insert;
  int update;
  bool noneIsNull = false;  ///< a number below 1 is stored as null

  [[nodiscard]] constexpr int by(AccountCall call) const {
    return call == AccountCall::Insert ? insert : update;
  }
  [[nodiscard]] constexpr ParameterType type() const {
    using enum ParameterType;
    constexpr ParameterType kTypes[std::variant_size_v<AccountMember>] = {Int, Int, Money, DateTime, Text};
    return kTypes[member.index()];
  }
};

/// Everything stored of an account except its relation. Each procedure takes its parameters in this order;
/// the parent is listed twice, since its position differs between the two. The calls, the catalogue, the
/// embedded engine's statements and the reading of rows are derived from this table; the tests compare the
/// scripts of both databases with it.
///
/// Fields not listed here aren't stored. See "To add a field" in docs/architecture.md.
// clang-format off
inline constexpr AccountField kAccountFields[] = {
    // the column,      its parameter,      the member,                an insert, an update, none is null
    {"ID",              "@ID",              &Account::id,              kNotTaken, kTaken},
    {"CreateDate",      "@CreateDate",      &Account::createDate,      kTaken,    kNotTaken},
    {"FarsiCreateDate", "@FarsiCreateDate", &Account::farsiCreateDate, 10,        kNotTaken},
    {"ParentID",        "@ParentID",        &Account::parentID,        kNotTaken, kTaken,    true},
    {"GroupID",         "@AccountGroupID",  &Account::groupID,         kTaken,    kTaken,    true},
    {"IsPermanent",     "@IsPermanent",     &Account::isPermanent,     kTaken,    kTaken},
    {"AccountNatureID", "@AccountNatureID", &Account::accountNatureID, kTaken,    kTaken},
    {"ParentID",        "@ParentID",        &Account::parentID,        kTaken,    kNotTaken, true},
    {"Title",           "@Title",           &Account::title,           50,        100},
    {"Code",            "@Code",            &Account::code,            kCodeLength, kCodeLength},
    {"IsClosed",        "@IsClosed",        &Account::isClosed,        kTaken,    kTaken},
    {"BranchID",        "@ContractID",      &Account::branchID,        kTaken,    kTaken},
    {"PositionID",      "@PositionID",      &Account::positionID,      kTaken,    kTaken},
    {"Notes",           "@Notes",           &Account::notes,           250,       250},
    {"MaxDebit",        "@MaxDebit",        &Account::maxDebit,        kTaken,    kTaken},
    {"MaxCredit",       "@MaxCredit",       &Account::maxCredit,       kTaken,    kTaken},
};
// clang-format on

/// The 1-based index of the parameter through which a procedure takes a member; 0 if it doesn't.
[[nodiscard]] constexpr int placeOf(AccountCall call, const AccountMember& member) {
  int place = 0;
  for (const AccountField& field : kAccountFields) {
    if (field.by(call) == kNotTaken) continue;
    ++place;
    if (field.member == member) return place;
  }
  return 0;
}

/// The maximum length in characters of a text that a procedure takes.
[[nodiscard]] constexpr int widthOf(AccountCall call, const AccountMember& member) {
  for (const AccountField& field : kAccountFields)
    if (field.member == member && field.by(call) != kNotTaken) return field.by(call);
  return 0;
}

/// A member as a parameter value: null if it is empty.
[[nodiscard]] Value valueOf(const Account& account, const AccountMember& member);

/// The values of a call, in parameter order.
[[nodiscard]] std::vector<Value> argumentsOf(const Account& account, AccountCall call);

/// The account in the current row of a handle on vwAccount, without its relation: null becomes empty text, or
/// -1 as a number. Throws std::range_error for a reference past 32 bits and for an amount past those of
/// money, and std::invalid_argument for an invalid date.
[[nodiscard]] Account accountIn(const RecordHandle& row);
/// The same from the first row of a result, which must not be empty.
[[nodiscard]] Account accountIn(const Rows& rows);
/// The relation in the current row of a handle on tblAccountRelatedObjects. Throws as accountIn does.
[[nodiscard]] AccountRelation relationIn(const RecordHandle& row);
[[nodiscard]] AccountRelation relationIn(const Rows& rows);

}  // namespace ledgertree::data
