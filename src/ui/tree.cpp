#include "ui/tree.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "text/fold.h"
#include "ui/control_visitor.h"

namespace ledgertree::ui {

const Tree::Node& Tree::at(NodeId node) const {
  if (!has(node)) throw std::out_of_range("the tree " + name() + " has no such node");
  return slot(node);
}

void Tree::tell(TreeChange::Kind kind, NodeId node, std::size_t first, std::size_t count) {
  if (renewing_) return;
  form().notify(*this, TreeChange{.kind = kind, .node = node, .first = first, .count = count});
}

NodeId Tree::add(NodeId parent, std::string key, std::string text, int image) {
  if (!key.empty() && find(key) != kNoNode)
    throw std::invalid_argument("the tree " + name() + " already has a node " + key);
  return addNew(parent, std::move(key), std::move(text), image);
}

NodeId Tree::addNew(NodeId parent, std::string key, std::string text, int image) {
  if (parent != kNoNode && !has(parent))
    throw std::out_of_range("the tree " + name() + " has no such parent");
  const NodeId node = takeSlot();
  Node& made = slot(node);
  made.key = std::move(key);
  made.text = std::move(text);
  made.parent = parent;
  made.image = image;
  made.used = true;
  if (!made.key.empty()) unentered_.push_back(node);
  auto& all = siblings(parent);
  made.index = all.size();
  all.push_back(node);
  ++count_;
  tellAdded(parent, made.index);
  return node;
}

NodeId Tree::takeSlot() {
  if (free_.empty()) {
    if (slots_ % kBlock == 0) blocks_.push_back(std::make_unique<Node[]>(kBlock));
    return static_cast<NodeId>(slots_++);
  }
  const NodeId node = free_.back();
  free_.pop_back();
  return node;
}

void Tree::enterKeys() const {
  if (unentered_.empty()) return;
  keys_.reserve(keys_.size() + unentered_.size());
  for (const NodeId node : unentered_) keys_.try_emplace(slot(node).key, node);
  unentered_.clear();
}

void Tree::tellAdded(NodeId parent, std::size_t index) {
  if (batches_ == 0) {
    tell(TreeChange::Kind::ChildrenAdded, parent, index, 1);
    return;
  }
  const NodeId node = siblings(parent)[index];
  if (addedInBatch_.size() <= node) addedInBatch_.resize(node + std::size_t{1});
  addedInBatch_[node] = true;
  // Children of a node that hasn't been reported yet come along with it.
  if (isUnreported(parent)) return;
  if (!additions_.empty() && additions_.back().parent == parent) {
    ++additions_.back().count;
  } else {
    additions_.push_back({parent, index, 1});
  }
}

void Tree::endBatch() {
  if (--batches_ > 0) return;
  const auto additions = std::move(additions_);
  additions_.clear();
  addedInBatch_.clear();
  for (const Addition& addition : additions) {
    // A parent that was removed again has nothing to report.
    if (addition.parent == kNoNode || has(addition.parent))
      tell(TreeChange::Kind::ChildrenAdded, addition.parent, addition.first, addition.count);
  }
}

Tree::Batch::Batch(Tree& tree) : tree_(tree) { ++tree_.batches_; }
Tree::Batch::~Batch() { tree_.endBatch(); }

Tree::Renewal::Renewal(Tree& tree) : tree_(tree) {
  tree_.tell(TreeChange::Kind::AboutToRenew, kNoNode);
  tree_.renewing_ = true;
  tree_.clear();
}

Tree::Renewal::~Renewal() {
  tree_.renewing_ = false;
  tree_.tell(TreeChange::Kind::Renewed, kNoNode);
}

void Tree::remove(NodeId node) {
  const NodeId parent = at(node).parent;
  const std::size_t index = at(node).index;
  tell(TreeChange::Kind::AboutToRemove, node);
  auto& all = siblings(parent);
  all.erase(all.begin() + static_cast<std::ptrdiff_t>(index));
  for (std::size_t i = index; i < all.size(); ++i) slot(all[i]).index = i;
  release(node);
  tell(TreeChange::Kind::Removed, parent, index, 1);
}

void Tree::release(NodeId top) {
  enterKeys();
  std::vector<NodeId> waiting{top};
  while (!waiting.empty()) {
    const NodeId node = waiting.back();
    waiting.pop_back();
    Node& gone = slot(node);
    waiting.insert(waiting.end(), gone.children.begin(), gone.children.end());
    if (!gone.key.empty()) keys_.erase(gone.key);
    if (selected_ == node) selected_ = kNoNode;
    gone = Node{};
    free_.push_back(node);
    --count_;
  }
}

void Tree::clear() {
  keys_.clear();
  unentered_.clear();
  blocks_.clear();
  slots_ = 0;
  free_.clear();
  roots_.clear();
  count_ = 0;
  selected_ = kNoNode;
  additions_.clear();
  addedInBatch_.clear();
  tell(TreeChange::Kind::Cleared, kNoNode);
}

NodeId Tree::find(std::string_view key) const {
  enterKeys();
  const auto found = keys_.find(key);
  return found == keys_.end() ? kNoNode : found->second;
}

void Tree::setImage(NodeId node, int image) {
  at(node).image = image;
  if (!isUnreported(node)) tell(TreeChange::Kind::NodeChanged, node);
}

int Tree::picture(NodeId node) const {
  const int image = at(node).image;
  if (pictures_.empty()) return image;
  const bool listed = image >= 1 && image <= static_cast<int>(pictures_.size());
  return listed ? pictures_[static_cast<std::size_t>(image - 1)] : 0;
}

void Tree::setTag(NodeId node, std::string tag) { at(node).tag = std::move(tag); }

void Tree::setChecked(NodeId node, bool checked) {
  if (at(node).checked == checked) return;
  at(node).checked = checked;
  if (!isUnreported(node)) tell(TreeChange::Kind::NodeChanged, node);
}

void Tree::setExpanded(NodeId node, bool expanded) {
  if (at(node).expanded == expanded) return;
  at(node).expanded = expanded;
  tell(expanded ? TreeChange::Kind::Expanded : TreeChange::Kind::Collapsed, node);
}

void Tree::ensureVisible(NodeId node) {
  for (NodeId above = at(node).parent; above != kNoNode; above = at(above).parent) setExpanded(above, true);
  tell(TreeChange::Kind::EnsureVisible, node);
}

void Tree::select(NodeId node) {
  selected_ = node;
  tell(TreeChange::Kind::Selected, node);
}

void Tree::expand(NodeId node) {
  if (!withinReach() || !has(node) || at(node).children.empty() || at(node).expanded) return;
  setExpanded(node, true);
  raise(onExpand, node);
}

void Tree::collapse(NodeId node) {
  if (withinReach() && has(node)) setExpanded(node, false);
}

void Tree::click(NodeId node) {
  if (!withinReach() || !has(node)) return;
  select(node);
  raise(onNodeClick, node);
}

void Tree::tick(NodeId node) {
  if (!withinReach() || !checkBoxes_ || !has(node)) return;
  setChecked(node, !at(node).checked);
  raise(onNodeCheck, node);
}

std::vector<NodeId> Tree::visibleNodes() const {
  std::vector<NodeId> visible;
  std::vector<NodeId> waiting(roots_.rbegin(), roots_.rend());
  while (!waiting.empty()) {
    const NodeId node = waiting.back();
    waiting.pop_back();
    visible.push_back(node);
    const auto& children = at(node).children;
    if (at(node).expanded) waiting.insert(waiting.end(), children.rbegin(), children.rend());
  }
  return visible;
}

void Tree::choose(NodeId node) {
  if (!withinReach() || !has(node) || node == selected_) return;
  select(node);
  raise(onNodeSelect, node);
}

NodeId Tree::nextThatBegins(std::string_view folded, bool alsoSelected) const {
  const auto visible = visibleNodes();
  const auto from = std::find(visible.begin(), visible.end(), selected_);
  std::size_t index = from == visible.end() ? 0 : static_cast<std::size_t>(from - visible.begin());
  if (from != visible.end() && !alsoSelected) ++index;
  std::string text;
  for (std::size_t looked = 0; looked < visible.size(); ++looked, ++index) {
    const NodeId node = visible[index % visible.size()];
    const std::string_view whole = at(node).text;
    text::fold(whole, text);
    if (text.starts_with(folded)) return node;
    const auto mark = titleMark_.empty() ? std::string_view::npos : whole.find(titleMark_);
    if (mark == std::string_view::npos) continue;
    text::fold(whole.substr(mark + titleMark_.size()), text);
    if (text.starts_with(folded)) return node;
  }
  return kNoNode;
}

NodeId Tree::nextTyped(std::string& typed, std::string_view letters, bool goesOn) const {
  if (!goesOn) typed.clear();
  const std::string folded = text::fold(letters);
  if (folded.empty()) return kNoNode;
  const bool again = typed == folded;
  const bool first = typed.empty();
  typed += folded;
  const NodeId node = nextThatBegins(typed, !first);
  if (node != kNoNode || !again) return node;
  typed = folded;
  return nextThatBegins(typed, false);
}

void Tree::type(std::string_view letters, bool goesOn, std::string_view otherwise) {
  if (!withinReach()) return;
  const NodeId node = nextTyped(typed_, letters, goesOn);
  const NodeId other = nextTyped(typedOtherwise_, otherwise, goesOn);
  if (node != kNoNode || other != kNoNode) choose(node != kNoNode ? node : other);
}

void Tree::askMenu(NodeId node, Twips left, Twips top) {
  if (!withinReach() || !has(node) || !onMenu) return;
  const Form::Act act(form());
  if (node != selected_) click(node);
  // The click may select another node or end the form.
  if (act.formAlive() && selected_ == node) raise(onMenu, left, top);
}

void Tree::enterByKey() {
  if (selected_ == kNoNode && !onNodeSelect) press(Key::Home);
}

void Tree::press(Key key) {
  if (!withinReach() || roots_.empty()) return;
  if (key == Key::Enter || (key == Key::Space && !checkBoxes_)) return click(selected_);
  if (key == Key::Space) return tick(selected_);
  const NodeId from = selected_ == kNoNode ? roots_.front() : selected_;
  const bool open = expanded(from) && !children(from).empty();
  if (key == Key::Left) return open ? choose(children(from).front()) : expand(from);
  if (key == Key::Right && !open && parent(from) != kNoNode) return choose(parent(from));
  if (key == Key::Right) return collapse(from);
  if (key != Key::Up && key != Key::Down && key != Key::Home && key != Key::End) return;
  const auto visible = visibleNodes();
  auto position = std::find(visible.begin(), visible.end(), from);
  if (key == Key::Home || position == visible.end()) position = visible.begin();
  if (key == Key::End) position = visible.end() - 1;
  if (key == Key::Up && position != visible.begin()) --position;
  if (key == Key::Down && position + 1 != visible.end()) ++position;
  choose(*position);
}

void Tree::accept(ControlVisitor& visitor) { visitor.visit(*this); }

}  // namespace ledgertree::ui
