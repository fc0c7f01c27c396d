#pragma once

#include <string_view>

#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// The commands that lead from one mode to another and out of the screen, the pop-ups, the entries of the
/// menu that have no screen of their own, and the keys.
class Commands {
 public:
  Commands(MainScreen& screen, shell::Shell& shell, AccountRecord& record, AccountTree& tree);

  /// Shows what the host offers of the commands that are hidden otherwise, and hides the rest.
  void showOffers();
  /// Whether the screen may be left: asked where something is being typed.
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
  void cancel();
  void exit();
  /// Whether what is being typed may go: asked where something is.
  [[nodiscard]] bool mayGiveUp(const Question& ofNew, const Question& ofEdit);
  void popUp(const ui::PushButton& button, ui::MenuEntry& menu);
  void hideDetails();
  void showCodes(bool complete);

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountRecord& record_;
  AccountTree& tree_;
};

}  // namespace ledgertree::mainform
