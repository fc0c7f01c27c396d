#pragma once

#include <cstdint>

#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// The chart's history on the main screen, if the host offers it: the screen "سابقه" for the account on the
/// record, and the key that takes back the user's last operation.
class HistoryCommands {
 public:
  HistoryCommands(MainScreen& screen, shell::Shell& shell, AccountRecord& record, AccountTree& tree);

  /// Applies the host's offers and starts the session: operations before it aren't taken back by the key.
  /// Throws data::DataError.
  void begin();

 private:
  void showHistory();
  void takeLastBack();
  /// Whether the key belongs to the screen: nothing is being edited, and no field is being typed in.
  [[nodiscard]] bool keyCounts() const;
  /// Reads the record and the tree again after something was taken back.
  void readAgain();

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountRecord& record_;
  AccountTree& tree_;
  bool offersWayBack_ = false;
  std::int64_t sessionBegan_ = 0;  ///< the newest operation at its start
};

}  // namespace ledgertree::mainform
