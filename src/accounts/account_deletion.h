#pragma once

#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// The command cmdDelete: removes the account on the screen from tblAccount for good, in all periods at once,
/// through rssqlRetriveTree.
///
/// It doesn't look up what depends on the account. The database refuses to delete one with children or
/// documents, and whatever fails is told as a dependency; but an account that somebody else has changed since
/// it was shown stays, and is shown anew.
///
/// Where the host offers Offer::Preview, a second notice tells by kind and number what the database refused
/// for, and leads to the first child, or else copies the record number of the first document.
class AccountDeletion {
 public:
  AccountDeletion(mainform::MainScreen& screen, shell::Shell& shell, mainform::AccountRecord& record,
                  mainform::AccountTree& tree);

  /// What a click on cmdDelete does: asks for the right, then asks the person, then deletes. Throws
  /// data::DataError where the right can't be asked for; nothing has happened then.
  void deleteShownAccount();

 private:
  void showDependants(std::int32_t account);
  void showChanged(std::int32_t account);

  mainform::MainScreen& screen_;
  shell::Shell& shell_;
  mainform::AccountRecord& record_;
  mainform::AccountTree& tree_;
};

}  // namespace ledgertree::accounts
