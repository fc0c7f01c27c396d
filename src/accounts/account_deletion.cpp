#include "accounts/account_deletion.h"

#include <exception>
#include <string>

#include "data/data_error.h"
#include "shell/lookup/all_chosen.h"

namespace ledgertree::accounts {

namespace {

constexpr std::string_view kQuestionTitle = "حذف حساب ";
constexpr std::string_view kQuestion = "آيا از حذف حساب مورد نظر اطمينان داريد؟ ";
constexpr std::string_view kDependency =
    "به اين سرفصل حساب وابستگي وجود دارد. بنابراين امکان حذف آن وجود ندارد.";

}  // namespace

AccountDeletion::AccountDeletion(mainform::MainScreen& screen, shell::Shell& shell,
                                 mainform::AccountRecord& record, mainform::AccountTree& tree)
    : screen_(screen), shell_(shell), record_(record), tree_(tree) {
  screen_.cmdDelete.onClick = [this] { deleteShownAccount(); };
}

void AccountDeletion::deleteShownAccount() {
  const auto gateway = shell_.dtEn();
  // The account that the question is about, whatever the host puts on the screen while it is up.
  const std::int32_t account = screen_.accountID();
  if (!shell_.permits(data::Permission::DeleteAccount) || record_.refusedElsewhere()) return;
  if (!shell::allChosen(shell_, {&screen_.sltAccount})) return;
  if (shell_.askConfirmNotice(kQuestionTitle, kQuestion) != shell::Answer::Yes) return;
  try {
    gateway->rssqlRetriveTree.Open("Delete tblAccount Where ID=" + std::to_string(account));
    shell_.news.add(ChartEvent::Kind::Deleted, {account});
    record_.goIdle();
    tree_.refreshTree();
  } catch (const data::DataError& failure) {
    // Whatever the reason, the person is told of a dependency; but for what is known to be none.
    using Reason = data::DataError::Reason;
    if (failure.reason() == Reason::Denied || failure.reason() == Reason::Busy) throw;
    shell_.showErrorNotice(shell::kTitleError, kDependency);
  } catch (const std::exception&) {
    shell_.showErrorNotice(shell::kTitleError, kDependency);
  }
}

}  // namespace ledgertree::accounts
