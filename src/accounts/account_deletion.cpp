#include "accounts/account_deletion.h"

#include <exception>
#include <optional>
#include <string>

#include "accounts/dependants.h"
#include "data/as_read.h"
#include "data/data_error.h"
#include "shell/lookup/all_chosen.h"

namespace ledgertree::accounts {

namespace {

constexpr std::string_view kQuestionTitle = "حذف حساب ";
constexpr std::string_view kQuestion = "آيا از حذف حساب مورد نظر اطمينان داريد؟ ";
constexpr std::string_view kDependency =
    "به اين سرفصل حساب وابستگي وجود دارد. بنابراين امکان حذف آن وجود ندارد.";
constexpr std::string_view kDependants = "وابستگيهاي حساب";
constexpr std::string_view kChanged =
    "پس از نمايش اين حساب، کاربر ديگري آن را تغيير داده است و حذف نشد. اکنون با تغييرات او نمايش داده ميشود؛ "
    "اگر باز هم ميخواهيد، آن را حذف کنيد.";

}  // namespace

AccountDeletion::AccountDeletion(mainform::MainScreen& screen, shell::Shell& shell,
                                 mainform::AccountRecord& record, mainform::AccountTree& tree)
    : screen_(screen), shell_(shell), record_(record), tree_(tree) {
  screen_.cmdDelete.onClick = [this] { deleteShownAccount(); };
}

void AccountDeletion::deleteShownAccount() {
  const auto gateway = shell_.dtEn();
  const std::optional<data::Account> read = screen_.AsRead;
  // The account that the question is about, whatever the host shows while it is up.
  const std::int32_t account = screen_.accountID();
  if (!shell_.permits(data::Permission::DeleteAccount) || record_.refusedElsewhere()) return;
  if (!shell::allChosen(shell_, {&screen_.sltAccount})) return;
  if (!shell_.confirms(kQuestionTitle, kQuestion)) return;
  const auto operation = shell_.operation(*gateway, data::OperationKind::DeleteAccount);
  try {
    if (read && read->id == account) gateway->cnMainData.handOver({.account = read});
    gateway->rssqlRetriveTree.Open("Delete tblAccount Where ID=" + std::to_string(account));
    shell_.news.add(ChartEvent::Kind::Deleted, {account});
    record_.goIdle();
    tree_.refreshTree();
  } catch (const data::DataError& failure) {
    // Whatever the reason, the user is told of a dependency, except where there is known to be none.
    using Reason = data::DataError::Reason;
    if (failure.number() == data::kAccountChanged) return showChanged(account);
    if (failure.reason() == Reason::Denied || failure.reason() == Reason::Busy) throw;
    shell_.showErrorNotice(shell::kTitleError, kDependency);
    if (shell_.isOffered(Offer::Preview) && failure.reason() == Reason::Constraint) showDependants(account);
  } catch (const std::exception&) {
    shell_.showErrorNotice(shell::kTitleError, kDependency);
  }
}

void AccountDeletion::showDependants(std::int32_t account) {
  const auto gateway = shell_.dtEn();
  const Dependants found = dependantsOf(*gateway, account);
  const std::string words = inWords(found);
  const auto wants = [&](std::string_view question) {
    return shell_.confirms(kDependants, words + "\n" + std::string(question));
  };
  if (found.firstChild > 0) {
    if (!wants("نخستين زيرشاخه نمايش داده شود؟")) return;
    record_.showAccount(found.firstChild);
    tree_.showAccount(found.firstChild);
  } else if (!found.firstDocument.empty()) {
    if (wants("شماره رکورد اين سند براي جستجو کپي شود؟")) shell_.desktop().copyText(found.firstDocument);
  } else {
    shell_.showErrorNotice(kDependants, words);
  }
}

/// The user agreed to delete what was shown, and the account has changed since.
void AccountDeletion::showChanged(std::int32_t account) {
  shell_.showErrorNotice(shell::kTitleError, kChanged);
  record_.showAccount(account);
}

}  // namespace ledgertree::accounts
