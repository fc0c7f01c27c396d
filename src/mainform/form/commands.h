#pragma once

#include <string_view>

#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// The commands that change the mode or leave the screen, the pop-up menus, the menu entries that have no
/// screen of their own, and the keys.
class Commands {
 public:
  Commands(MainScreen& screen, shell::Shell& shell, AccountRecord& record, AccountTree& tree);

  /// Shows the optional commands that the host offers, and hides the others.
  void showOffers();
  /// Whether the screen may be left: asks the user if an account is being edited.
  [[nodiscard]] bool mayLeave();

 private:
  struct Question {
    std::string_view title;
    std::string_view text;
  };

  void wireBar();
  void wireMenu();
  void wireKeys();
  void startNew();
  void startEdit();
  /// Moves the focus to the tree, or from there back to where it was.
  void changeSides();
  void cancel();
  void exit();
  /// Whether unsaved input may be dropped: asks the user if there is any.
  [[nodiscard]] bool mayGiveUp(const Question& ofNew, const Question& ofEdit);
  void popUp(const ui::PushButton& button, ui::MenuEntry& menu);
  void hideDetails();
  void showCodes(bool complete);

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountRecord& record_;
  AccountTree& tree_;
  ui::Control* beforeTree_ = nullptr;
};

}  // namespace ledgertree::mainform
