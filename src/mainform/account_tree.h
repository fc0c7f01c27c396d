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
/// rssqlAccCostCenter, rssqlAccountChilds and rssqlAccLevelCodeLength. Nothing is stored outside the tree
/// control: a level is read when its parent is first opened, and a refresh discards everything or, if the
/// host offers Offer::KeptPlace, rereads what is open. It writes nothing.
///
/// A level of any size takes two statements, and if codes are shortened a third: its rows, which of them have
/// children, and the code of their parent.
///
/// A node selected by keyboard is clicked after a short delay, so that a key can be held down. Call `settle`
/// before anything that depends on that click.
///
/// If an account that is read is already in the tree under another parent, another user has moved it: the old
/// node is removed. If the node being opened is itself below it, the whole tree is reread.
///
/// If a query fails halfway, the caller gets data::DataError; the children read so far are removed and the
/// placeholder is restored, so that the node can be opened again, the handles are closed, and the cursor is
/// reset.
class AccountTree {
 public:
  AccountTree(MainScreen& screen, shell::Shell& shell);

  /// Whether the node with a key has children in its period. False for a key without a colon.
  [[nodiscard]] bool nodeHasChildren(std::string_view key);
  /// A code without as many leading characters as the code of the account's parent has; the characters
  /// themselves aren't compared.
  [[nodiscard]] std::string stripParentCode(std::int32_t accountID, std::string_view code);
  /// Reads the children of a node. Does nothing for a key without a colon.
  void fillNodeChildren(std::string_view key);
  /// Rebuilds the tree: its root and its first level. If the host offers Offer::KeptPlace, open nodes stay
  /// open as with readAgain, and the account on the record is highlighted and scrolled into view, with all
  /// nodes above it open; by periods, in one that is open and has it, or not at all.
  void refreshTree();
  /// The queries that this will make with the current account, as far as they are known beforehand, to be
  /// sent ahead (see data::Ahead).
  [[nodiscard]] std::vector<data::Command> questionsOfRefresh(std::int32_t shown) const;
  /// Rereads what is open, whether or not the host offers it, and keeps everything in place: what is open,
  /// the highlight with its pending click, and the visible rows. What moved is shown in its new place, open
  /// as before; what is gone is removed, its highlight too; what was closed is read when it is next opened.
  /// Nothing is clicked, and the record isn't touched.
  ///
  /// Two statements per level, three if codes are shortened; on a server those of all levels are sent in
  /// batches. Everything is read before the first node changes: if a query fails, data::DataError is thrown
  /// and the tree is unchanged. Call it from an event procedure, and not while the tree is being filled.
  void readAgain();
  /// Opens the nodes above an account, rereads what is open, highlights the account without clicking it and
  /// scrolls it into view; by periods, in one that is open, or else in the first. False if it isn't in the
  /// tree. Throws data::DataError.
  bool showAccount(std::int32_t accountID);

  /// Makes the pending click now.
  void settle();
  /// Removes the highlight if it is on an account other than this one (-1: on any). The root or a period may
  /// keep it while no account is shown.
  void keepHighlightFor(std::int32_t accountID);

  /// A click on an account, and one on any other node.
  std::function<void(std::int32_t accountID)> onAccountClick;
  std::function<void()> onOtherClick;

 private:
  void expanded(ui::NodeId node);
  void clicked(ui::NodeId node);
  [[nodiscard]] std::string_view rootText() const;
  void readAnew();
  void readChildren(data::DtEn& gateway, const NodeKey& key, ui::NodeId node);
  /// Removes the nodes with these keys from their old places. False if `node` itself is below one of them.
  [[nodiscard]] bool dropMoved(const std::vector<std::string>& keys, ui::NodeId node);
  /// 0 if it has no parent.
  [[nodiscard]] std::size_t parentCodeLength(data::DtEn& gateway, std::int32_t accountID);
  void addPlaceholder(ui::NodeId node, const NodeKey& key);
  void takeBack(ui::NodeId node, const NodeKey& key, std::size_t childrenBefore);

  // Rereading what is open.
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
  /// Whether the selected node was selected by keyboard, with its click still pending.
  bool clickWaits_ = false;
};

}  // namespace ledgertree::mainform
