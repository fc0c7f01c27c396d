#pragma once

#include <QAbstractItemModel>
#include <vector>

#include "ui/tree.h"

namespace ledgertree::qt {

/// The nodes of a tree control, for a tree view. It stores no texts: an index carries the number of its node,
/// and the rest is read from the control when it is drawn.
///
/// It knows how many children of each node were reported to the view. In the middle of a change the control
/// may have more, but what was reported never disagrees with what the view reads.
class TreeModel : public QAbstractItemModel {
 public:
  explicit TreeModel(const ui::Tree& tree);

  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex&) const override { return 1; }
  [[nodiscard]] bool hasChildren(const QModelIndex& parent = {}) const override {
    return rowCount(parent) > 0;
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

  /// kNoNode for the invalid index.
  [[nodiscard]] static ui::NodeId nodeOf(const QModelIndex& index);
  /// The invalid index for kNoNode and for a node that hasn't been reported yet.
  [[nodiscard]] QModelIndex indexOf(ui::NodeId node) const;

  /// Passes on the tree's reports of added, removed and changed nodes.
  void follow(const ui::TreeChange& change);
  void detach();

 private:
  [[nodiscard]] std::size_t& told(ui::NodeId parent);
  [[nodiscard]] std::size_t told(ui::NodeId parent) const;
  [[nodiscard]] const std::vector<ui::NodeId>& childrenOf(ui::NodeId parent) const;
  void tellRoots();
  void tellAll(ui::NodeId top);
  void forget(ui::NodeId top);
  void childrenAdded(ui::NodeId parent);
  void aboutToRemove(ui::NodeId node);
  void removed(ui::NodeId parent);

  const ui::Tree* tree_;
  std::size_t toldRoots_ = 0;
  std::vector<std::size_t> told_;  ///< by the parent's number
  bool removing_ = false;
};

}  // namespace ledgertree::qt
