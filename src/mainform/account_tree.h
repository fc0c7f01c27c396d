#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mainform/chart_level.h"
#include "mainform/main_screen.h"
#include "shell/shell.h"

namespace ledgertree::mainform {

/// The chart as a tree that is read one level at a time: tblAccount and tblAccountPeriod through the handles
/// rssqlAccCostCenter, rssqlAccountChilds and rssqlAccLevelCodeLength. Nothing is kept outside the tree
/// control: a level is read when its parent is first opened, and a refresh throws everything away, or, where
/// the host offers Offer::KeptPlace, reads again what is open. It writes nothing.
///
/// A level of any size takes two statements, and where codes are shortened a third one: its rows, which of
/// them have children, and the code of their parent.
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
  /// Rebuilds the tree: its root and its first level. Where the host offers Offer::KeptPlace, what is open
  /// stays open as by readAgain, and the account on the record is highlighted and in sight, with all above it
  /// open; by periods, in one that is open and has it, or not at all.
  void refreshTree();
  /// What that will ask with this account on the record, as far as it is known beforehand, for who asks ahead
  /// (see data::Ahead).
  [[nodiscard]] std::vector<data::Command> questionsOfRefresh(std::int32_t shown) const;
  /// Reads what is open again, offered or not, and leaves everything where it stands: what is open, the
  /// highlight with the click that may wait for its rest, and the rows in sight. What moved stands where it
  /// is now, open as it was; what is gone is gone, the highlight with it; what was closed is read when it is
  /// next opened. Nothing is clicked, and the record stays as it is.
  ///
  /// Two statements a level, whose codes may be short; on a server those of all levels go in packets. All of
  /// it is read ahead of the first node that changes: a query that fails throws data::DataError and leaves
  /// the tree as it was. Call it from an event procedure, in which nothing of the tree is being filled.
  void readAgain();
  /// Opens what is above an account, reads what is open again, highlights the account without a click and
  /// brings it into sight; by periods below one that is open, or else the first. False where it isn't in the
  /// tree. Throws data::DataError.
  bool showAccount(std::int32_t accountID);

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
  [[nodiscard]] std::string_view rootText() const;
  void readAnew();
  void readChildren(data::DtEn& gateway, const NodeKey& key, ui::NodeId node);
  /// Takes the nodes of these keys out of their old places. False where `node` itself stands below one of
  /// them.
  [[nodiscard]] bool dropMoved(const std::vector<std::string>& keys, ui::NodeId node);
  /// 0 where it has no parent.
  [[nodiscard]] std::size_t parentCodeLength(data::DtEn& gateway, std::int32_t accountID);
  void addPlaceholder(ui::NodeId node, const NodeKey& key);
  void takeBack(ui::NodeId node, const NodeKey& key, std::size_t childrenBefore);

  // What is open, read again.
  struct OpenNode;
  [[nodiscard]] std::vector<data::Command> questionsOfReading(std::int32_t accountID) const;
  bool readWithAccount(std::int32_t accountID, bool opensPeriod);
  [[nodiscard]] std::vector<NodeKey> openKeys() const;
  [[nodiscard]] std::optional<std::int32_t> periodOf(data::DtEn& gateway, std::int32_t accountID,
                                                     bool opensPeriod) const;
  [[nodiscard]] OpenNode readOpen(data::DtEn& gateway, const std::vector<NodeKey>& open) const;
  void putUp(const OpenNode& root);

  static constexpr std::string_view kRootKey = "-1:-1";

  MainScreen& screen_;
  shell::Shell& shell_;
  ui::Timer rest_;
  /// Whether the selected node was chosen by the keys, and its click is still to come.
  bool clickWaits_ = false;
};

}  // namespace ledgertree::mainform
