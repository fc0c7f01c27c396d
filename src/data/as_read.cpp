#include "data/as_read.h"

#include <algorithm>
#include <utility>

#include "data/data_error.h"

namespace ledgertree::data {
namespace {

// SQL Server's procedures use the same texts.
constexpr const char* kTellAccount =
    "اين حساب را پس از آن که خوانده شد کاربر ديگري تغيير داده است و اين تغيير ثبت نشد. حساب را دوباره "
    "بخوانيد.";
constexpr const char* kTellMoved =
    "حساب مادر را پس از آن که خوانده شد کاربر ديگري جابجا کرده است و چيزي ثبت نشد. حساب مادر را دوباره "
    "انتخاب نماييد.";
constexpr const char* kTellCode =
    "کد حساب مادر را پس از آن که خوانده شد کاربر ديگري تغيير داده است و چيزي ثبت نشد. حساب مادر را دوباره "
    "انتخاب نماييد.";

[[noreturn]] void refuse(int number, const char* message) {
  throw DataError(DataError::Reason::Constraint, number, message);
}

bool sameParent(std::int32_t one, std::int32_t other) { return one == other || (one < 1 && other < 1); }

bool sameAccount(const Account& one, const Account& other) {
  return one.relation == other.relation &&
         std::all_of(std::begin(kAccountFields), std::end(kAccountFields), [&](const AccountField& field) {
           return !isEdited(field) || sameIn(field.member, one, other);
         });
}

}  // namespace

bool sameIn(const AccountMember& member, const Account& one, const Account& other) {
  return std::visit([&](auto held) { return one.*held == other.*held; }, member);
}

Account asStored(Account account) {
  for (const AccountField& field : kAccountFields) {
    const auto* const number = std::get_if<std::int32_t Account::*>(&field.member);
    if (field.noneIsNull && account.**number < 1) account.** number = -1;
  }
  if (account.relation && account.relation->classID < 1) account.relation->classID = -1;
  return account;
}

void requireAsRead(const AsRead& read, const std::function<Rows(const std::string& statement)>& rowsOf) {
  if (read.parentID > 0) {
    const Rows parent =
        rowsOf("Select isnull(Code,'') as Code, isnull(ParentID,-1) as ParentID from tblAccount Where ID = " +
               std::to_string(read.parentID));
    const bool there = parent.count() == 1;
    if (there && read.parentsParent && !sameParent(parent.value(0, 1).toInt32(), *read.parentsParent))
      refuse(kParentChanged, kTellMoved);
    if (there && parent.value(0, 0).toText() != read.parentCode) refuse(kParentChanged, kTellCode);
  }
  if (!read.account) return;
  const std::string id = std::to_string(read.account->id);
  const Rows row = rowsOf("Select * From tblAccount where ID=" + id);
  if (row.count() == 0) return;
  Account now = accountIn(row);
  const Rows related = rowsOf("Select * from tblAccountRelatedObjects where AccountID =" + id);
  if (related.count() != 0) now.relation = relationIn(related);
  if (!sameAccount(now, *read.account)) refuse(kAccountChanged, kTellAccount);
}

}  // namespace ledgertree::data
