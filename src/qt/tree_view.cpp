#include "qt/tree_view.h"

#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "qt/keys.h"
#include "qt/text.h"

namespace ledgertree::qt {

using ui::kNoNode;
using ui::NodeId;

namespace {

constexpr int kPictureSide = 16;
/// After a longer pause the next letter starts a new search.
constexpr qint64 kTypingPause = 1000;

/// A tree view that grows from the right, and reports what the user wants instead of doing it.
class Branches : public QTreeView {
 public:
  using QTreeView::QTreeView;
  std::function<void(NodeId)> onClick;
  std::function<void(NodeId)> onToggle;
  std::function<void(NodeId)> onTick;
  std::function<void(NodeId)> onChoose;
  std::function<void(ui::Key)> onKey;
  /// The characters of a key in the layout and in the other one, and whether they continue the previous ones.
  std::function<void(const std::u32string&, const std::u32string&, bool)> onType;
  std::function<KeyboardLayout()> layout;
  /// The context menu of a node, at a point in the view's pixels.
  std::function<void(NodeId, QPoint)> onMenu;
  std::function<void()> onEnter;

  void fitColumn() { header()->setMinimumSectionSize(viewport()->width()); }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    event->accept();
    const QPoint place = event->position().toPoint();
    const QModelIndex index = indexAt(place);
    if (event->button() != Qt::LeftButton || !index.isValid()) return;
    const NodeId node = TreeModel::nodeOf(index);
    if (onBranch(index, place)) return onToggle(node);
    if (checkBoxOf(index).contains(place)) return onTick(node);
    onClick(node);
  }
  void mouseMoveEvent(QMouseEvent* event) override { event->accept(); }
  void mouseReleaseEvent(QMouseEvent* event) override { event->accept(); }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool elsewhere = !index.isValid() || event->button() != Qt::LeftButton ||
                           onBranch(index, event->position().toPoint()) ||
                           checkBoxOf(index).contains(event->position().toPoint());
    if (elsewhere) return mousePressEvent(event);
    event->accept();
    onToggle(TreeModel::nodeOf(index));
  }

  void keyPressEvent(QKeyEvent* event) override {
    const ui::Key key = keyOf(*event);
    switch (key) {
      case ui::Key::Up:
      case ui::Key::Down:
      case ui::Key::Left:
      case ui::Key::Right:
      case ui::Key::Home:
      case ui::Key::End:
      case ui::Key::Enter:
      case ui::Key::Space:
        event->accept();
        typing_.invalidate();
        return onKey(key);
      case ui::Key::PageUp:
      case ui::Key::PageDown: {
        event->accept();
        const QModelIndex target =
            moveCursor(key == ui::Key::PageUp ? MovePageUp : MovePageDown, Qt::NoModifier);
        if (target.isValid()) onChoose(TreeModel::nodeOf(target));
        return;
      }
      default:
        typeKey(*event);
    }
  }

  void contextMenuEvent(QContextMenuEvent* event) override {
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    const QModelIndex index = byMouse ? indexAt(event->pos()) : currentIndex();
    event->accept();
    if (!index.isValid()) return;
    if (!byMouse) scrollTo(index);
    const QRect row = visualRect(index).intersected(viewport()->rect());
    // The menu key opens it under the text.
    const QPoint below(std::max(row.right() - sizeHintForIndex(index).width(), row.left()), row.bottom());
    const QPoint inside = byMouse ? event->pos() : below;
    onMenu(TreeModel::nodeOf(index), viewport()->mapTo(this, inside));
  }

  /// Selects the first node when focus arrives by Tab.
  void focusInEvent(QFocusEvent* event) override {
    QTreeView::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) onEnter();
  }

  void resizeEvent(QResizeEvent* event) override {
    QTreeView::resizeEvent(event);
    fitColumn();
  }

 private:
  void typeKey(QKeyEvent& event) {
    const KeyboardLayout chosen = layout();
    const std::u32string typed = typedCharacters(event, chosen);
    event.setAccepted(!typed.empty());
    if (typed.empty()) return;
    const bool goesOn = typing_.isValid() && !typing_.hasExpired(kTypingPause);
    typing_.start();
    // Nothing on the screen tells which layout a tree has: titles are Persian, and a code may have Latin
    // letters.
    const auto other = chosen == KeyboardLayout::Own ? KeyboardLayout::Persian : KeyboardLayout::Own;
    onType(typed, typedCharacters(event, other), goesOn);
  }

  QElapsedTimer typing_;  ///< since the last letter

  /// Whether a point is on the mark that opens and closes a node, on its outer side.
  [[nodiscard]] bool onBranch(const QModelIndex& index, const QPoint& place) const {
    if (!model()->hasChildren(index)) return false;
    const QRect item = visualRect(index);
    if (isRightToLeft()) return place.x() > item.right() && place.x() <= item.right() + indentation();
    return place.x() < item.left() && place.x() >= item.left() - indentation();
  }

  [[nodiscard]] QRect checkBoxOf(const QModelIndex& index) const {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    if (!index.data(Qt::CheckStateRole).isValid()) return {};
    option.features |= QStyleOptionViewItem::HasCheckIndicator;
    return style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this);
  }
};

}  // namespace

TreeView::TreeView(ui::Tree& control, QWidget& parent, std::function<KeyboardLayout()> layout)
    : ViewOf(control), model_(control) {
  auto* branches = new Branches(&parent);
  tree_ = branches;
  branches->setModel(&model_);
  branches->setHeaderHidden(true);
  branches->setUniformRowHeights(true);
  branches->setEditTriggers(QAbstractItemView::NoEditTriggers);
  branches->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  branches->setTextElideMode(Qt::ElideNone);
  // By default the view expands the parents of the selected node without the control's knowledge.
  branches->setAutoScroll(false);
  branches->header()->setStretchLastSection(false);
  branches->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  branches->onClick = [this](NodeId node) {
    if (attached()) this->control().click(node);
  };
  branches->onTick = [this](NodeId node) {
    if (attached()) this->control().tick(node);
  };
  branches->onToggle = [this](NodeId node) {
    if (!attached()) return;
    if (this->control().expanded(node)) {
      this->control().collapse(node);
    } else {
      this->control().expand(node);
    }
  };
  branches->onChoose = [this](NodeId node) {
    if (attached()) this->control().choose(node);
  };
  branches->onEnter = [this] {
    if (attached()) this->control().enterByKey();
  };
  branches->onKey = [this](ui::Key key) {
    if (attached()) this->control().press(key);
  };
  branches->layout = std::move(layout);
  branches->onType = [this](const std::u32string& typed, const std::u32string& other, bool goesOn) {
    const auto letters = [](const std::u32string& from) { return fromQt(QString::fromStdU32String(from)); };
    if (attached()) this->control().type(letters(typed), goesOn, letters(other));
  };
  branches->onMenu = [this](NodeId node, QPoint place) {
    if (attached()) this->control().askMenu(node, scale_.twips(place.x()), scale_.twips(place.y()));
  };
  // The whole width of the selected row is highlighted, but by default the view repaints only its text.
  QObject::connect(branches->selectionModel(), &QItemSelectionModel::selectionChanged, branches->viewport(),
                   qOverload<>(&QWidget::update));
  openAsTheTree(kNoNode, 0);
  showSelection();
}

void TreeView::rescaled(const Scale& scale) {
  scale_ = scale;
  const int line = tree_->fontMetrics().height();
  // The pictures are drawn on 16 pixels: integral multiples keep them sharp.
  const int side = std::max(line / kPictureSide, 1) * kPictureSide;
  tree_->setIconSize(QSize(side, side));
  tree_->setIndentation(line + line / 3);
}

void TreeView::openAsTheTree(NodeId parent, std::size_t first) {
  const ui::Tree& tree = control();
  std::vector<NodeId> waiting;
  const auto push = [&waiting](const std::vector<NodeId>& nodes, std::size_t from) {
    waiting.insert(waiting.end(), nodes.begin() + static_cast<std::ptrdiff_t>(from), nodes.end());
  };
  push(parent == kNoNode ? tree.roots() : tree.children(parent), first);
  while (!waiting.empty()) {
    const NodeId node = waiting.back();
    waiting.pop_back();
    if (tree.expanded(node)) tree_->setExpanded(model_.indexOf(node), true);
    push(tree.children(node), 0);
  }
}

bool TreeView::isInSight(NodeId node) const {
  for (NodeId above = control().parent(node); above != kNoNode; above = control().parent(above))
    if (!control().expanded(above)) return false;
  return true;
}

void TreeView::markSelection() {
  const QModelIndex index = model_.indexOf(control().selected());
  if (index.isValid()) {
    tree_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  } else {
    tree_->selectionModel()->clear();
  }
}

void TreeView::showSelection() {
  markSelection();
  const QModelIndex index = tree_->currentIndex();
  if (index.isValid() && isInSight(control().selected())) tree_->scrollTo(index);
}

void TreeView::keepPlace() {
  const QModelIndex top = tree_->indexAt({tree_->viewport()->width() / 2, 0});
  keptTop_ = top.isValid() ? control().key(TreeModel::nodeOf(top)) : std::string();
  keptAcross_ = tree_->horizontalScrollBar()->value();
}

void TreeView::takePlace() {
  openAsTheTree(kNoNode, 0);
  markSelection();
  const NodeId top = control().find(keptTop_);
  if (top != kNoNode && isInSight(top)) tree_->scrollTo(model_.indexOf(top), QTreeView::PositionAtTop);
  tree_->horizontalScrollBar()->setValue(keptAcross_);
}

void TreeView::follow(const ui::TreeChange& change) {
  const bool added = change.kind == ui::TreeChange::Kind::ChildrenAdded;
  const auto before = added ? static_cast<std::size_t>(model_.rowCount(model_.indexOf(change.node))) : 0;
  if (change.kind == ui::TreeChange::Kind::AboutToRenew) keepPlace();
  model_.follow(change);
  switch (change.kind) {
    case ui::TreeChange::Kind::ChildrenAdded:
      if (change.node == kNoNode || model_.indexOf(change.node).isValid()) openAsTheTree(change.node, before);
      break;
    case ui::TreeChange::Kind::Expanded:
    case ui::TreeChange::Kind::Collapsed:
      if (const QModelIndex index = model_.indexOf(change.node); index.isValid())
        tree_->setExpanded(index, change.kind == ui::TreeChange::Kind::Expanded);
      break;
    case ui::TreeChange::Kind::EnsureVisible:
      if (const QModelIndex index = model_.indexOf(change.node); index.isValid()) tree_->scrollTo(index);
      break;
    case ui::TreeChange::Kind::Removed:
      // When a selected node is removed, the view would select a neighbour.
      if (control().selected() == kNoNode) tree_->selectionModel()->clearSelection();
      break;
    case ui::TreeChange::Kind::Selected:
      showSelection();
      break;
    case ui::TreeChange::Kind::Renewed:
      takePlace();
      break;
    default:
      break;
  }
}

void TreeView::detach() {
  model_.detach();
  ControlView::detach();
}

}  // namespace ledgertree::qt
