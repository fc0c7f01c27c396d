#include "qt/tree_model.h"

#include "qt/folder_icons.h"
#include "qt/text.h"

namespace ledgertree::qt {

using ui::kNoNode;
using ui::NodeId;

TreeModel::TreeModel(const ui::Tree& tree) : tree_(&tree) { tellRoots(); }

NodeId TreeModel::nodeOf(const QModelIndex& index) {
  return index.isValid() ? static_cast<NodeId>(index.internalId()) : kNoNode;
}

QModelIndex TreeModel::indexOf(NodeId node) const {
  if (tree_ == nullptr || node == kNoNode) return {};
  const std::size_t index = tree_->indexOf(node);
  if (index >= told(tree_->parent(node))) return {};
  return createIndex(static_cast<int>(index), 0, static_cast<quintptr>(node));
}

std::size_t& TreeModel::told(NodeId parent) {
  if (parent == kNoNode) return toldRoots_;
  if (told_.size() <= parent) told_.resize(std::size_t{parent} + 1 + told_.size() / 2);
  return told_[parent];
}

std::size_t TreeModel::told(NodeId parent) const {
  if (parent == kNoNode) return toldRoots_;
  return parent < told_.size() ? told_[parent] : 0;
}

const std::vector<NodeId>& TreeModel::childrenOf(NodeId parent) const {
  return parent == kNoNode ? tree_->roots() : tree_->children(parent);
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (tree_ == nullptr || row < 0 || column != 0) return {};
  const NodeId above = nodeOf(parent);
  if (static_cast<std::size_t>(row) >= told(above)) return {};
  return createIndex(row, 0, static_cast<quintptr>(childrenOf(above)[static_cast<std::size_t>(row)]));
}

QModelIndex TreeModel::parent(const QModelIndex& index) const {
  if (tree_ == nullptr || !index.isValid()) return {};
  return indexOf(tree_->parent(nodeOf(index)));
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  if (tree_ == nullptr) return 0;
  return static_cast<int>(told(nodeOf(parent)));
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  if (tree_ == nullptr || !index.isValid()) return {};
  const NodeId node = nodeOf(index);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole: {
      const QString text = toQt(tree_->text(node));
      return role == Qt::ToolTipRole ? literalTip(text) : text;
    }
    case Qt::DecorationRole:
      return folderIcon(tree_->picture(node));
    case Qt::CheckStateRole:
      if (!tree_->checkBoxes()) return {};
      return static_cast<int>(tree_->checked(node) ? Qt::Checked : Qt::Unchecked);
    default:
      return {};
  }
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
}

void TreeModel::tellRoots() {
  toldRoots_ = tree_->roots().size();
  for (const NodeId root : tree_->roots()) tellAll(root);
}

void TreeModel::tellAll(NodeId top) {
  std::vector<NodeId> waiting{top};
  while (!waiting.empty()) {
    const NodeId node = waiting.back();
    waiting.pop_back();
    const auto& children = tree_->children(node);
    told(node) = children.size();
    waiting.insert(waiting.end(), children.begin(), children.end());
  }
}

void TreeModel::forget(NodeId top) {
  std::vector<NodeId> waiting{top};
  while (!waiting.empty()) {
    const NodeId node = waiting.back();
    waiting.pop_back();
    const auto& children = tree_->children(node);
    if (node < told_.size()) told_[node] = 0;
    waiting.insert(waiting.end(), children.begin(), children.end());
  }
}

void TreeModel::childrenAdded(NodeId parent) {
  if (parent != kNoNode && !indexOf(parent).isValid()) return;
  // Children are only ever appended, so those already reported are always the first ones.
  const auto& children = childrenOf(parent);
  const std::size_t before = told(parent);
  if (children.size() <= before) return;
  beginInsertRows(indexOf(parent), static_cast<int>(before), static_cast<int>(children.size()) - 1);
  told(parent) = children.size();
  for (std::size_t index = before; index < children.size(); ++index) tellAll(children[index]);
  endInsertRows();
}

void TreeModel::aboutToRemove(NodeId node) {
  const QModelIndex index = indexOf(node);
  if (!index.isValid()) return;
  beginRemoveRows(parent(index), index.row(), index.row());
  forget(node);
  removing_ = true;
}

void TreeModel::removed(NodeId parent) {
  if (!removing_) return;
  removing_ = false;
  --told(parent);
  endRemoveRows();
}

void TreeModel::follow(const ui::TreeChange& change) {
  switch (change.kind) {
    case ui::TreeChange::Kind::Cleared:
      beginResetModel();
      toldRoots_ = 0;
      told_.clear();
      removing_ = false;
      endResetModel();
      break;
    case ui::TreeChange::Kind::ChildrenAdded:
      childrenAdded(change.node);
      break;
    case ui::TreeChange::Kind::AboutToRemove:
      aboutToRemove(change.node);
      break;
    case ui::TreeChange::Kind::Removed:
      removed(change.node);
      break;
    case ui::TreeChange::Kind::AboutToRenew:
      beginResetModel();
      toldRoots_ = 0;
      told_.clear();
      break;
    case ui::TreeChange::Kind::Renewed:
      tellRoots();
      endResetModel();
      break;
    case ui::TreeChange::Kind::NodeChanged:
      if (const QModelIndex index = indexOf(change.node); index.isValid()) emit dataChanged(index, index);
      break;
    default:
      break;
  }
}

void TreeModel::detach() {
  // Before anything else the tree goes out of reach: it may be gone already.
  tree_ = nullptr;
  toldRoots_ = 0;
  told_.clear();
  beginResetModel();
  endResetModel();
}

}  // namespace ledgertree::qt
