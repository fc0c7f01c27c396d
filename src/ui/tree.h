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

/// A node of a tree: its place in the control's store. It stands until the node is removed.
using NodeId = std::uint32_t;
inline constexpr NodeId kNoNode = 0xFFFFFFFF;

struct TreeChange {
  enum class Kind {
    Cleared,        ///< there is no node any more
    ChildrenAdded,  ///< `count` nodes under `node` (kNoNode: at the top), from place `first` on
    AboutToRemove,  ///< `node` and all below it go next: told ahead
    Removed,        ///< a child of `node` that stood at place `first` went, with all below it
    NodeChanged,    ///< text, image, tag or check of `node`
    Expanded,       ///< `node` is open
    Collapsed,      ///< `node` is closed
    EnsureVisible,  ///< scroll `node` into view
    Selected,       ///< the selection went to `node` (kNoNode: to none)
    AboutToRenew,   ///< all nodes go next, and what comes is told as Renewed alone: told ahead as well
    Renewed,        ///< the nodes, what is open and the selection may be others: the rows in sight stay
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
  /// Adds a node as the last child of `parent` (kNoNode: at the top). A key that stands in the tree already
  /// throws std::invalid_argument; an empty key is no key.
  NodeId add(NodeId parent, std::string key, std::string text, int image = 0);
  /// Adds a node whose key the caller knows to be new: nothing looks whether it is, nor is the key entered
  /// for find() ahead of the next call that needs it.
  NodeId addNew(NodeId parent, std::string key, std::string text, int image = 0);
  /// Removes a node and all below it.
  void remove(NodeId node);
  void clear();
  [[nodiscard]] std::size_t count() const { return count_; }
  /// The node of a key; kNoNode where there is none.
  [[nodiscard]] NodeId find(std::string_view key) const;
  /// The nodes at the top.
  [[nodiscard]] const std::vector<NodeId>& roots() const { return roots_; }

  [[nodiscard]] const std::string& key(NodeId node) const { return at(node).key; }
  [[nodiscard]] const std::string& text(NodeId node) const { return at(node).text; }
  [[nodiscard]] int image(NodeId node) const { return at(node).image; }
  void setImage(NodeId node, int image);
  /// The picture that a node shows. Every tree has a list of pictures of its own: the first one is that of
  /// image 1. Without a list an image is the picture of the same number; an image that isn't in the list
  /// shows none (0).
  [[nodiscard]] int picture(NodeId node) const;
  void setPictures(std::vector<int> pictures) { pictures_ = std::move(pictures); }
  /// What stands in a text ahead of its title, which a person may type the beginning of as well.
  void setTitleMark(std::string mark) { titleMark_ = std::move(mark); }
  [[nodiscard]] const std::string& tag(NodeId node) const { return at(node).tag; }
  void setTag(NodeId node, std::string tag);
  [[nodiscard]] NodeId parent(NodeId node) const { return at(node).parent; }
  [[nodiscard]] const std::vector<NodeId>& children(NodeId node) const { return at(node).children; }
  /// The place of a node among its siblings.
  [[nodiscard]] std::size_t place(NodeId node) const { return at(node).place; }
  [[nodiscard]] bool expanded(NodeId node) const { return at(node).expanded; }
  /// A program opens or closes a node: raises no onExpand.
  void setExpanded(NodeId node, bool expanded);
  /// Opens the nodes above and scrolls the node into view.
  void ensureVisible(NodeId node);
  [[nodiscard]] bool checked(NodeId node) const { return at(node).checked; }
  void setChecked(NodeId node, bool checked);
  [[nodiscard]] NodeId selected() const { return selected_; }
  void select(NodeId node);
  /// Whether nodes carry check boxes.
  [[nodiscard]] bool checkBoxes() const { return checkBoxes_; }
  void setCheckBoxes(bool checkBoxes) { checkBoxes_ = checkBoxes; }

  /// While one stands, added nodes are told in as few changes as there are parents that were there before: a
  /// level of 100,000 children is one change, and what happens to them meanwhile is part of it.
  class Batch {
   public:
    explicit Batch(Tree& tree);
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch();

   private:
    Tree& tree_;
  };

  /// While one stands, an emptied tree is put together anew, and its observers are told of nothing but the
  /// end. Nothing may be shown or asked meanwhile.
  class Renewal {
   public:
    explicit Renewal(Tree& tree);
    Renewal(const Renewal&) = delete;
    Renewal& operator=(const Renewal&) = delete;
    ~Renewal();

   private:
    Tree& tree_;
  };

  // A person.
  /// Opens a node that has children, then raises onExpand, whose procedure may read them or close the node
  /// again.
  void expand(NodeId node);
  void collapse(NodeId node);
  /// Selects a node and raises onNodeClick.
  void click(NodeId node);
  /// Turns the check box of a node over and raises onNodeCheck.
  void tick(NodeId node);
  /// Moves the selection to a node without a click, and raises onNodeSelect.
  void choose(NodeId node);
  /// Up, Down, Home, End choose; Right and Left close and open, as the tree grows to the left, or choose;
  /// Enter clicks; Space ticks where there are check boxes, else clicks. Without a selection the keys begin
  /// at the top, and Enter and Space do nothing.
  void press(Key key);
  /// Types letters of what is looked for: the selection goes to the next node that one sees, from the top
  /// again behind the last, whose text begins so, or what stands in it behind the title's mark; letters
  /// compare as in a search (text::fold). Where the typing goes on, they belong to those before, and what
  /// begins with all of them stays selected; one letter again and again goes from hit to hit. Raises
  /// onNodeSelect.
  void type(std::string_view letters, bool goesOn);
  /// Asks for the menu of a node, at a place in twips from the tree's corner. Clicks it first where it isn't
  /// selected. Nothing where the form has no menu for it.
  void askMenu(NodeId node, Twips left, Twips top);
  /// The Tab key leads here. Where no node is selected the top one is, unless a selection has a meaning of
  /// its own.
  void enterByKey();

  Event<NodeId> onExpand;
  Event<NodeId> onNodeClick;
  Event<NodeId> onNodeSelect;
  Event<NodeId> onNodeCheck;
  /// The menu of the selected node is asked for.
  Event<Twips, Twips> onMenu;
  void accept(ControlVisitor& visitor) override;

 private:
  struct Node {
    std::string key;
    std::string text;
    std::string tag;
    NodeId parent = kNoNode;
    std::vector<NodeId> children;
    std::size_t place = 0;
    int image = 0;
    bool expanded = false;
    bool checked = false;
    bool used = false;
  };

  [[nodiscard]] const Node& at(NodeId node) const;
  [[nodiscard]] Node& at(NodeId node) { return const_cast<Node&>(std::as_const(*this).at(node)); }
  /// The places for nodes come in blocks, which stay where they are: the keys in keys_ are views of them.
  static constexpr std::size_t kBlock = 256;
  [[nodiscard]] Node& slot(NodeId node) const { return blocks_[node / kBlock][node % kBlock]; }
  [[nodiscard]] NodeId takeSlot();
  [[nodiscard]] bool has(NodeId node) const { return node < slots_ && slot(node).used; }
  [[nodiscard]] std::vector<NodeId>& siblings(NodeId parent) {
    return parent == kNoNode ? roots_ : at(parent).children;
  }
  [[nodiscard]] std::vector<NodeId> visibleNodes() const;
  [[nodiscard]] NodeId nextThatBegins(std::string_view folded, bool alsoSelected) const;
  void release(NodeId node);
  void enterKeys() const;
  /// Whether it was added in the batch that stands: nobody was told of it yet.
  [[nodiscard]] bool isUntold(NodeId node) const {
    return node < addedInBatch_.size() && addedInBatch_[node];
  }
  void tell(TreeChange::Kind kind, NodeId node, std::size_t first = 0, std::size_t count = 0);
  void tellAdded(NodeId parent, std::size_t place);
  void endBatch();

  std::vector<std::unique_ptr<Node[]>> blocks_;
  std::size_t slots_ = 0;  ///< those that were ever used
  std::vector<NodeId> free_;
  std::vector<NodeId> roots_;
  mutable std::unordered_map<std::string_view, NodeId> keys_;
  mutable std::vector<NodeId> unentered_;  ///< the nodes whose keys aren't in keys_ yet
  std::size_t count_ = 0;
  NodeId selected_ = kNoNode;
  bool checkBoxes_ = false;
  std::vector<int> pictures_;
  std::string titleMark_;
  std::string typed_;  ///< folded
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
