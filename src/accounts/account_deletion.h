#pragma once

#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::accounts {

/// The command cmdDelete: deletes the account on the screen from tblAccount for good, in all periods at once,
/// through rssqlRetriveTree.
///
/// It doesn't look up what depends on the account. The database refuses to delete one with children or
/// documents, and any failure is reported as a dependency; but an account that another user has changed since
/// it was shown is kept, and shown again.
///
/// If the host offers Offer::Preview, a second notice says by kind and number what the database refused for,
/// and leads to the first child, or else copies the record number of the first document.
class AccountDeletion {
 public:
  AccountDeletion(mainform::MainScreen& screen, shell::Shell& shell, mainform::AccountRecord& record,
                  mainform::AccountTree& tree);

  /// Handles a click on cmdDelete: checks the permission, asks the user, then deletes. Throws data::DataError
  /// if the permission can't be read; nothing has been done then.
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
