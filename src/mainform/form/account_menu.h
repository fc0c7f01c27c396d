#pragma once

#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// The context menu of an account in the tree, and the command that leads from the title's picker to the
/// tree. Its entries click the buttons, which check the rights; a disabled button disables its entry.
class AccountMenu {
 public:
  AccountMenu(MainScreen& screen, shell::Shell& shell, AccountTree& tree);

  /// Enables the menu if the host offers Offer::ContextMenu.
  void showOffer();

 private:
  void popUp(ui::Twips left, ui::Twips top);
  /// Starts a new account with the one on the record as its parent, as if the user had picked it.
  void startBelow();
  void showInTree();

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountTree& tree_;
};

}  // namespace ledgertree::mainform
