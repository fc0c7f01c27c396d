#pragma once

#include <cstdint>

#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// The memory of the chart on the main screen, where the host offers it: the screen "سابقه" of the account on
/// the record, and the key that takes the person's last operation back.
class HistoryCommands {
 public:
  HistoryCommands(MainScreen& screen, shell::Shell& shell, AccountRecord& record, AccountTree& tree);

  /// From now on the host offers what it offers, and the session begins: what was done before isn't taken
  /// back by the key. Throws data::DataError.
  void begin();

 private:
  void showHistory();
  void takeLastBack();
  /// Whether the key is that of the screen: nothing is typed, in no field.
  [[nodiscard]] bool keyCounts() const;
  /// What is taken back is on the screen as it was.
  void readAnew();

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountRecord& record_;
  AccountTree& tree_;
  bool offersWayBack_ = false;
  std::int64_t sessionBegan_ = 0;  ///< the newest operation then
};

}  // namespace ledgertree::mainform
