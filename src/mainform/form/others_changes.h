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

/// Shows what others change while the screen is idle, if the host offers Offer::OthersChanges: every few
/// seconds it asks whether the chart has changed, and only then reads the open part of the tree and the
/// account on the record again, and reports the differences in lblOthers. Changes made by this screen are
/// already shown, so they aren't reported.
///
/// While an account is being edited nothing is read into the screen: lblOthers reports that somebody else has
/// changed the account, and the tree is read when editing ends. Failures are silent, and make the queries
/// less frequent.
class OthersChanges {
 public:
  OthersChanges(MainScreen& screen, shell::Shell& shell, AccountRecord& record, AccountTree& tree);

  /// To be called before the screen is first filled.
  void begin();
  /// Clears the report: the user has moved on.
  void clearReport();

 private:
  /// The visible text of each node, by its key.
  using Nodes = std::map<std::string, std::string>;

  void ticked();
  [[nodiscard]] bool mayLook() const;
  void look();
  void lookWhileTyping();
  [[nodiscard]] bool recordIsFromHere() const;
  [[nodiscard]] Nodes nodes() const;
  /// Each returns the text to report; empty if nothing is different.
  [[nodiscard]] std::string readTree();
  [[nodiscard]] std::string readRecord();
  void report(const std::string& text);

  MainScreen& screen_;
  shell::Shell& shell_;
  AccountRecord& record_;
  AccountTree& tree_;
  ui::Timer timer_;
  shell::ChartChanges changes_;
  bool offered_ = false;
  /// The tree is older than changes that came during editing.
  bool treeIsOld_ = false;
};

}  // namespace ledgertree::mainform
