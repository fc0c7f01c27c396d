#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// What the key of a tree node says. -1 as the period stands for all periods, -1 as the account for none.
struct NodeKey {
  std::int32_t period = -1;
  std::int32_t account = -1;
  bool operator==(const NodeKey&) const = default;
};

/// "period:account".
[[nodiscard]] std::string makeNodeKey(std::int32_t period, std::int32_t account);
/// Splits at the first colon; nothing for a key without one. Each side counts by its leading number, a blank
/// one as -1. Throws std::range_error for a number past 32 bits.
[[nodiscard]] std::optional<NodeKey> parseNodeKey(std::string_view key);

/// The chart as a tree that is read one level at a time: tblAccount and tblAccountPeriod through the handles
/// rssqlAccCostCenter, rssqlAccountChilds and rssqlAccLevelCodeLength. Nothing is kept outside the tree
/// control: a level is read when its parent is first opened, and a refresh throws everything away. It writes
/// nothing.
///
/// Choosing a node by the keys is a click on it after a short rest, so that a key can be held down; whoever
/// must not come ahead of that click calls `settle`.
///
/// An account that is read and stands in the tree already, below another parent, was moved by somebody: the
/// old node goes. Where the node that is being opened is itself below it, the whole tree is read anew.
///
/// A query that fails in the middle of a fill goes to the caller as data::DataError; the children read so far
/// are taken away again and the placeholder is put back, so that the node can be opened once more, the
/// handles are closed, and the pointer is back to its default.
class AccountTree {
 public:
  AccountTree(MainScreen& screen, shell::Shell& shell);

  /// Whether the node of a key has children in its period. False for a key without a colon.
  [[nodiscard]] bool nodeHasChildren(std::string_view key);
  /// A code without as many leading characters as the code of the account's parent has; the characters aren't
  /// compared.
  [[nodiscard]] std::string stripParentCode(std::int32_t accountID, std::string_view code);
  /// Reads the children of a node. Nothing for a key without a colon.
  void fillNodeChildren(std::string_view key);
  /// Rebuilds the tree: its root and its first level.
  void refreshTree();
  /// What that will ask, as far as it is known beforehand, for who asks ahead (see data::Ahead).
  [[nodiscard]] std::vector<data::Command> questionsOfRefresh() const;

  /// Makes the click that waits for the end of the rest.
  void settle();
  /// Takes the highlight off the tree where it is on another account than this one (-1: on any). The root and
  /// a period may keep it as long as no account is shown.
  void keepHighlightFor(std::int32_t accountID);

  /// A click on an account, and on a node that is none.
  std::function<void(std::int32_t accountID)> onAccountClick;
  std::function<void()> onOtherClick;

 private:
  void expanded(ui::NodeId node);
  void clicked(ui::NodeId node);
  void readChildren(data::DtEn& gateway, const NodeKey& key, ui::NodeId node);
  void addPeriods(data::DtEn& gateway, ui::NodeId root);
  void addAccounts(data::DtEn& gateway, const NodeKey& key, ui::NodeId node);
  /// False where the node itself stands below one of them.
  [[nodiscard]] bool dropMoved(data::OpenRows& accounts, std::int32_t period, ui::NodeId node);
  [[nodiscard]] bool hasChildren(data::DtEn& gateway, const NodeKey& key);
  [[nodiscard]] std::string shortCode(data::DtEn& gateway, std::int32_t accountID, std::string_view code);
  void addPlaceholder(ui::NodeId node, const NodeKey& key);
  void takeBack(ui::NodeId node, const NodeKey& key, std::size_t childrenBefore);

  MainScreen& screen_;
  shell::Shell& shell_;
  ui::Timer rest_;
  /// Whether the selected node was chosen by the keys, and its click is still to come.
  bool clickWaits_ = false;
};

}  // namespace ledgertree::mainform
