#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "mainform/account_record.h"
#include "mainform/account_tree.h"
#include "mainform/main_screen.h"
#include "shell/chart_changes.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// Shows what others change while the screen rests, where the host offers Offer::OthersChanges: every few
/// seconds it asks whether the chart was changed, and only then reads again what is open in the tree and the
/// account on the record, and says in lblOthers what is different. What this screen wrote itself is on it
/// already, so that there is nothing to say.
///
/// While something is typed nothing is read into the screen: lblOthers tells that somebody else has changed
/// the account, and the tree follows when the typing is over. A failure is silent, and comes again more
/// rarely.
class OthersChanges {
 public:
  OthersChanges(MainScreen& screen, shell::Shell& shell, AccountRecord& record, AccountTree& tree);

  /// Ahead of the first reading of what is shown.
  void begin();
  /// The person has gone on: what was told is old.
  void forgetWord();

 private:
  /// What a person reads of each node, by its key.
  using Nodes = std::map<std::string, std::string>;

  void ticked();
  [[nodiscard]] bool mayLook() const;
  void look();
  void lookWhileTyping();
  [[nodiscard]] bool recordIsFromHere() const;
  [[nodiscard]] Nodes nodes() const;
  /// Each gives what there is to say; empty where nothing is different.
  [[nodiscard]] std::string readTree();
  [[nodiscard]] std::string readRecord();
  void say(const std::string& word);

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountRecord& record_;
  AccountTree& tree_;
  ui::Timer timer_;
  shell::ChartChanges changes_;
  bool offered_ = false;
  /// The tree is of a time before changes that came while something was typed.
  bool treeIsOld_ = false;
};

}  // namespace ledgertree::mainform
