#pragma once

#include <QTreeView>
#include <functional>
#include <string>

#include "qt/control_view.h"
#include "qt/tree_model.h"

namespace ledgertree::qt {

class TreeView : public ViewOf<ui::Tree> {
 public:
  /// `layout` returns the keyboard's current layout.
  TreeView(ui::Tree& control, QWidget& parent, std::function<KeyboardLayout()> layout);
  [[nodiscard]] QTreeView& widget() override { return *tree_; }
  [[nodiscard]] QWidget* focusWidget() override { return tree_; }
  void sync(ui::Change) override {}
  void rescaled(const Scale& scale) override;
  void follow(const ui::TreeChange& change);
  void detach() override;

 private:
  /// Expands in the view what is open in the tree, under nodes that the view has just learnt of.
  void openAsTheTree(ui::NodeId parent, std::size_t first);
  /// Whether all nodes above are open.
  [[nodiscard]] bool isInSight(ui::NodeId node) const;
  void markSelection();
  void showSelection();
  void keepPlace();
  void takePlace();

  QTreeView* tree_;
  Scale scale_;
  TreeModel model_;
  /// The first visible node, and the horizontal scroll position.
  std::string keptTop_;
  int keptAcross_ = 0;
};

}  // namespace ledgertree::qt
