#include "accounts/save_validation.h"

#include "accounts/typed_account.h"
#include "data/numbers.h"
#include "shell/lookup/all_chosen.h"
#include "text/characters.h"

namespace ledgertree::accounts {

using mainform::FormMode;

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

std::int16_t selected(const shell::Selector& selector, std::int16_t none) {
  return selector.IsEmpty() ? none : data::toInt16(selector.SelectedID());
}

}  // namespace

SaveWay SaveValidation::check() {
  if (!hasRequiredFields()) return SaveWay::Refused;
  if (!shell::allChosen(shell_, {&screen_.sltParent, &screen_.sltGroup, &screen_.sltBranch,
                                 &screen_.sltPosition, &screen_.sltEntityType, &screen_.sltEntity}))
    return SaveWay::Refused;
  const bool edit = screen_.formMode == FormMode::ModeEdit;
  if (edit && !screen_.settings.EditCodeAllowed && !mayHaveThisCode()) return SaveWay::Refused;
  copySelectors();
  if (edit) return checkParent();
  if (screen_.formMode != FormMode::ModeNew) return SaveWay::Refused;
  screen_.LastNewParentID = screen_.sltParent.AccountID();
  return SaveWay::NewAccount;
}

bool SaveValidation::refuse(std::string_view message, std::string_view title) {
  shell_.showErrorNotice(title, message);
  return false;
}

bool SaveValidation::hasRequiredFields() {
  struct Required {
    std::string text;
    std::string_view message;
    ui::Control& field;
  };
  const Required fields[] = {{screen_.txtCode.text(), kNoCode, screen_.txtCode},
                             {screen_.txtTitle.text(), kNoTitle, screen_.txtTitle},
                             {screen_.datCreate.farsidate(), kNoDate, screen_.datCreate}};
  for (const Required& required : fields) {
    if (!text::trimmed(required.text).empty()) continue;
    shell_.showErrorNotice(shell::kTitleProblem, required.message);
    required.field.focus();
    return false;
  }
  return true;
}

/// The code of an account stays as it is once there are documents under it.
bool SaveValidation::mayHaveThisCode() {
  const std::int32_t account = accountOnScreen(screen_);
  std::string stored;
  {
    const data::OpenRows row(
        gateway_.rssqlBufferQuery,
        "Select isnull(Code,'') as Code from tblAccount Where ID = " + std::to_string(account));
    if (!row->Eof()) stored = row->Fields("Code").toText();
  }
  if (wholeCode(screen_) == stored || !shell_.hasAccountMovement(account)) return true;
  return refuse(kCodeStays, kCodeStaysTitle);
}

void SaveValidation::copySelectors() {
  screen_.BranchValue = selected(screen_.sltBranch, 0);
  screen_.PositionValue = selected(screen_.sltPosition, 0);
  screen_.GroupValue = selected(screen_.sltGroup, -1);
  screen_.EntityTypeValue = selected(screen_.sltEntityType, -1);
}

SaveWay SaveValidation::checkParent() {
  const std::string account = std::to_string(accountOnScreen(screen_));
  const std::string parent = std::to_string(screen_.sltParent.AccountID());
  const auto refuseParent = [this](std::string_view message) {
    shell_.showErrorNotice(shell::kTitleSaveError, message);
    return SaveWay::RefusedParent;
  };
  if (account == parent) return refuseParent(kOwnParent);
  if (screen_.LastNewParentID == screen_.sltParent.AccountID()) return SaveWay::PlainEdit;
  below_.emplace(gateway_.rssqlChkChillds,
                 "Select * From tblAccountParent where ID=" + account + " And ChildID=" + parent);
  documents_.emplace(gateway_.rssqlChkTrans,
                     "Select * From tblAccountDocumentDetail where accountID=" + parent);
  if (!(*below_)->Eof()) return refuseParent(kParentIsBelow);
  if (!(*documents_)->Eof()) return refuseParent(kParentHasDocuments);
  return SaveWay::GuardedEdit;
}

}  // namespace ledgertree::accounts
