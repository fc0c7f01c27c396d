#include "accounts/save_validation.h"

#include <string>

#include "data/ahead.h"

namespace ledgertree::accounts {

namespace {

constexpr std::string_view kNoCode = "کد وارد نشده است!";
constexpr std::string_view kNoTitle = "عنوان وارد نشده است!";
constexpr std::string_view kNoDate = "تاريخ وارد نشده است!";
constexpr std::string_view kCodeStaysTitle = "عدم امکان تغيير کد";
constexpr std::string_view kCodeStays =
    "به دليل اينکه سرفصل حساب گردش داشته است، امکان تغيير کد آن وجود ندارد.";
constexpr std::string_view kOwnParent = "شما نميتوانيد خود حساب را به عنوان حساب مادر خودش انتخاب نماييد";
constexpr std::string_view kParentIsBelow =
    "از آنجايي كه مادر انتخاب شده خود زير شاخه حساب فوق ميباشد امكان ثبت وحود ندارد";
constexpr std::string_view kParentHasDocuments =
    "از  انجايي كه حسابي را كه براي مادر حساب فوق در نظر گرفتهايد سند دارد نمي تواند به عنوان حساب مادر در "
    "نظر گرفته شود";

}  // namespace

std::optional<FieldFault> missingField(const TypedAccount& typed) {
  struct Required {
    const std::string& text;
    data::AccountMember member;
    std::string_view message;
  };
  const data::Account& account = typed.account;
  const Required fields[] = {{typed.ownCode, &data::Account::code, kNoCode},
                             {account.title, &data::Account::title, kNoTitle},
                             {account.farsiCreateDate, &data::Account::createDate, kNoDate}};
  for (const auto& [text, member, message] : fields)
    if (text.empty()) return FieldFault{.member = member, .message = std::string(message)};
  return std::nullopt;
}

bool SaveValidation::mayHaveThisCode(const data::Account& account) {
  std::string stored;
  {
    const data::OpenRows row(
        gateway_.rssqlBufferQuery,
        "Select isnull(Code,'') as Code from tblAccount Where ID = " + std::to_string(account.id));
    if (!row->Eof()) stored = row->Fields("Code").toText();
  }
  if (account.code == stored || !shell_.hasAccountMovement(account.id)) return true;
  shell_.showErrorNotice(kCodeStaysTitle, kCodeStays);
  return false;
}

SaveWay SaveValidation::checkParent(const data::Account& account, std::int32_t lastNewParent) {
  if (account.id == account.parentID) return refuseParent(kOwnParent);
  if (account.parentID == lastNewParent) return SaveWay::PlainEdit;
  const std::string parent = std::to_string(account.parentID);
  const std::string below =
      "Select * From tblAccountParent where ID=" + std::to_string(account.id) + " And ChildID=" + parent;
  const std::string documents = "Select * From tblAccountDocumentDetail where accountID=" + parent;
  const data::Ahead ahead(gateway_.cnMainData, {{.statement = below}, {.statement = documents}});
  below_.emplace(gateway_.rssqlChkChillds, below);
  documents_.emplace(gateway_.rssqlChkTrans, documents);
  if (!(*below_)->Eof()) return refuseParent(kParentIsBelow);
  if (!(*documents_)->Eof()) return refuseParent(kParentHasDocuments);
  return SaveWay::GuardedEdit;
}

SaveWay SaveValidation::refuseParent(std::string_view message) {
  shell_.showErrorNotice(shell::kTitleSaveError, message);
  return SaveWay::RefusedParent;
}

}  // namespace ledgertree::accounts
