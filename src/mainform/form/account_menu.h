#pragma once

#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// The menu on an account of the tree, and the way from the title's picker to the tree. Its entries are
/// second roads to the buttons: what is out of reach there is so here, and the buttons ask the rights.
class AccountMenu {
 public:
  AccountMenu(MainScreen& screen, shell::Shell& shell, AccountTree& tree);

  /// Comes up from now on where the host offers Offer::ContextMenu.
  void showOffer();

 private:
  void popUp(ui::Twips left, ui::Twips top);
  /// A new account with the one on the record as its parent, as if a person had picked it.
  void startBelow();
  void showInTree();

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountTree& tree_;
};

}  // namespace ledgertree::mainform
