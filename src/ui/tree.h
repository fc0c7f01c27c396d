#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ui/control.h"
#include "ui/key.h"

namespace ledgertree::ui {

/// A node of a tree: its index in the control's store, valid until the node is removed.
using NodeId = std::uint32_t;
inline constexpr NodeId kNoNode = 0xFFFFFFFF;

struct TreeChange {
  enum class Kind {
    Cleared,        ///< no nodes are left
    ChildrenAdded,  ///< `count` nodes under `node` (kNoNode: at the top), from index `first` on
    AboutToRemove,  ///< `node` and all below it are about to go
    Removed,        ///< the child of `node` with index `first` went, with all below it
    NodeChanged,    ///< text, image, tag or check of `node`
    Expanded,       ///< `node` is open
    Collapsed,      ///< `node` is closed
    EnsureVisible,  ///< scroll `node` into view
    Selected,       ///< `node` is now the selected one (kNoNode: none is)
    AboutToRenew,   ///< all nodes are about to go; what comes is reported only as Renewed
    Renewed,        ///< nodes, open branches and selection may differ; the visible rows stay
  };
  Kind kind;
  NodeId node = kNoNode;
  std::size_t first = 0;
  std::size_t count = 0;
};

/// A tree of nodes with keys. It keeps the order in which nodes are added, and sorts nothing.
class Tree : public Control {
 public:
  using Control::Control;

  // Nodes.
  /// Adds a node as the last child of `parent` (kNoNode: at the top). Throws std::invalid_argument for a key
  /// that the tree already has; an empty key counts as none.
  NodeId add(NodeId parent, std::string key, std::string text, int image = 0);
  /// Adds a node whose key the caller knows to be new. The key isn't checked, nor is it indexed for find()
  /// until a call needs it.
  NodeId addNew(NodeId parent, std::string key, std::string text, int image = 0);
  /// Removes a node and all below it.
  void remove(NodeId node);
  void clear();
  [[nodiscard]] std::size_t count() const { return count_; }
  /// The node with a key; kNoNode if there is none.
  [[nodiscard]] NodeId find(std::string_view key) const;
  /// The nodes at the top.
  [[nodiscard]] const std::vector<NodeId>& roots() const { return roots_; }

  [[nodiscard]] const std::string& key(NodeId node) const { return at(node).key; }
  [[nodiscard]] const std::string& text(NodeId node) const { return at(node).text; }
  [[nodiscard]] int image(NodeId node) const { return at(node).image; }
  void setImage(NodeId node, int image);
  /// The picture that a node shows. Each tree has its own list of pictures, of which image 1 is the first.
  /// Without a list, an image is the picture with the same number; an image that isn't in the list shows none
  /// (0).
  [[nodiscard]] int picture(NodeId node) const;
  void setPictures(std::vector<int> pictures) { pictures_ = std::move(pictures); }
  /// The separator before the title in a text. A user may also type the beginning of the title.
  void setTitleMark(std::string mark) { titleMark_ = std::move(mark); }
  [[nodiscard]] const std::string& tag(NodeId node) const { return at(node).tag; }
  void setTag(NodeId node, std::string tag);
  [[nodiscard]] NodeId parent(NodeId node) const { return at(node).parent; }
  [[nodiscard]] const std::vector<NodeId>& children(NodeId node) const { return at(node).children; }
  /// The index of a node among its siblings.
  [[nodiscard]] std::size_t indexOf(NodeId node) const { return at(node).index; }
  [[nodiscard]] bool expanded(NodeId node) const { return at(node).expanded; }
  /// Opens or closes a node from a program, without raising onExpand.
  void setExpanded(NodeId node, bool expanded);
  /// Opens the nodes above and scrolls the node into view.
  void ensureVisible(NodeId node);
  [[nodiscard]] bool checked(NodeId node) const { return at(node).checked; }
  void setChecked(NodeId node, bool checked);
  [[nodiscard]] NodeId selected() const { return selected_; }
  void select(NodeId node);
  /// Whether nodes have check boxes.
  [[nodiscard]] bool checkBoxes() const { return checkBoxes_; }
  void setCheckBoxes(bool checkBoxes) { checkBoxes_ = checkBoxes; }

  /// During its lifetime, added nodes are reported as one change per parent that was already there: a level
  /// of 100,000 children is one change, which includes whatever happens to them meanwhile.
  class Batch {
   public:
    explicit Batch(Tree& tree);
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch();

   private:
    Tree& tree_;
  };

  /// During its lifetime a cleared tree is rebuilt, and its observers hear only of the end. The tree must be
  /// neither shown nor read meanwhile.
  class Renewal {
   public:
    explicit Renewal(Tree& tree);
    Renewal(const Renewal&) = delete;
    Renewal& operator=(const Renewal&) = delete;
    ~Renewal();

   private:
    Tree& tree_;
  };

  // User actions.
  /// Opens a node that has children, then raises onExpand, whose handler may read them or close the node
  /// again.
  void expand(NodeId node);
  void collapse(NodeId node);
  /// Selects a node and raises onNodeClick.
  void click(NodeId node);
  /// Toggles the check box of a node and raises onNodeCheck.
  void tick(NodeId node);
  /// Moves the selection to a node without a click, and raises onNodeSelect.
  void choose(NodeId node);
  /// Up, Down, Home and End move; Right and Left close and open, as the tree grows to the left, or move;
  /// Enter clicks; Space toggles the check box if there are any, else clicks. Without a selection the keys
  /// start at the top, and Enter and Space do nothing.
  void press(Key key);
  /// Type-ahead: selects the next visible node, wrapping around at the end, whose text begins with the
  /// letters, before or after the separator of the title; letters compare as in a search (text::fold). With
  /// `goesOn` they are added to the previous ones, and a node that begins with all of them stays selected;
  /// repeating one letter cycles through the hits. `otherwise`: the letters of the same keys on another
  /// keyboard, which count where no text begins with the first ones. Raises onNodeSelect.
  void type(std::string_view letters, bool goesOn, std::string_view otherwise = {});
  /// Opens the context menu of a node, at a point in twips from the tree's corner. First clicks the node if
  /// it isn't selected. Does nothing if the form has no menu for it.
  void askMenu(NodeId node, Twips left, Twips top);
  /// The focus arrived by Tab: selects the first node if none is, unless a selection has a meaning of its
  /// own.
  void enterByKey();

  Event<NodeId> onExpand;
  Event<NodeId> onNodeClick;
  Event<NodeId> onNodeSelect;
  Event<NodeId> onNodeCheck;
  /// The user asks for the menu of the selected node.
  Event<Twips, Twips> onMenu;
  void accept(ControlVisitor& visitor) override;

 private:
  struct Node {
    std::string key;
    std::string text;
    std::string tag;
    NodeId parent = kNoNode;
    std::vector<NodeId> children;
    std::size_t index = 0;
    int image = 0;
    bool expanded = false;
    bool checked = false;
    bool used = false;
  };

  [[nodiscard]] const Node& at(NodeId node) const;
  [[nodiscard]] Node& at(NodeId node) { return const_cast<Node&>(std::as_const(*this).at(node)); }
  /// Nodes are stored in blocks that never move: the keys in keys_ are views of their texts.
  static constexpr std::size_t kBlock = 256;
  [[nodiscard]] Node& slot(NodeId node) const { return blocks_[node / kBlock][node % kBlock]; }
  [[nodiscard]] NodeId takeSlot();
  [[nodiscard]] bool has(NodeId node) const { return node < slots_ && slot(node).used; }
  [[nodiscard]] std::vector<NodeId>& siblings(NodeId parent) {
    return parent == kNoNode ? roots_ : at(parent).children;
  }
  [[nodiscard]] std::vector<NodeId> visibleNodes() const;
  [[nodiscard]] NodeId nextThatBegins(std::string_view folded, bool alsoSelected) const;
  /// Adds letters to the typed ones, and returns the node that type() goes to by them.
  NodeId nextTyped(std::string& typed, std::string_view letters, bool goesOn) const;
  void release(NodeId node);
  void enterKeys() const;
  /// Whether it was added in the current batch, and so isn't reported yet.
  [[nodiscard]] bool isUnreported(NodeId node) const {
    return node < addedInBatch_.size() && addedInBatch_[node];
  }
  void tell(TreeChange::Kind kind, NodeId node, std::size_t first = 0, std::size_t count = 0);
  void tellAdded(NodeId parent, std::size_t index);
  void endBatch();

  std::vector<std::unique_ptr<Node[]>> blocks_;
  std::size_t slots_ = 0;  ///< how many were ever used
  std::vector<NodeId> free_;
  std::vector<NodeId> roots_;
  mutable std::unordered_map<std::string_view, NodeId> keys_;
  mutable std::vector<NodeId> unentered_;  ///< the nodes whose keys aren't in keys_ yet
  std::size_t count_ = 0;
  NodeId selected_ = kNoNode;
  bool checkBoxes_ = false;
  std::vector<int> pictures_;
  std::string titleMark_;
  std::string typed_;           ///< folded
  std::string typedOtherwise_;  ///< the same on the other keyboard
  int batches_ = 0;
  bool renewing_ = false;
  struct Addition {
    NodeId parent;
    std::size_t first;
    std::size_t count;
  };
  std::vector<Addition> additions_;
  std::vector<bool> addedInBatch_;
};

}  // namespace ledgertree::ui
