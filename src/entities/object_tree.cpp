#include "entities/object_tree.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>

#include "data/data_error.h"

namespace ledgertree::entities {

namespace {

constexpr const char* kRootKey = "MAIN_PARENT_KEY";
constexpr const char* kRootText = "ريشه";
constexpr const char* kPlaceholderText = "UNKNOWN_TEXT";
constexpr const char* kMarkedTag = "ALL_Branches";
/// Objects between two updates of the progress bar.
constexpr std::size_t kBetweenLooks = 64;
constexpr int kImage = 1;
constexpr int kMarkedImage = 2;
/// The pictures of the images: a yellow folder, and a blue one for a marked node.
constexpr int kYellowFolder = 2;
constexpr int kBlueFolder = 3;

/// The number of an object; nothing if the host's view has none that fits.
std::optional<std::int32_t> objectID(const data::Value& value) {
  try {
    return value.toInt32();
  } catch (const std::logic_error&) {
    return std::nullopt;
  } catch (const std::range_error&) {
    return std::nullopt;
  }
}

std::string keyOf(std::int32_t objectID) { return std::string("N").append(std::to_string(objectID)); }

/// The ID from the key of an object's node.
std::string idOf(const std::string& key) { return key.substr(1); }

}  // namespace

ObjectTree::ObjectTree(ui::Tree& tree, shell::Shell& shell) : tree_(tree), shell_(shell) {
  tree_.setCheckBoxes(true);
  tree_.setPictures({kYellowFolder, kBlueFolder});
}

void ObjectTree::clear() {
  tree_.clear();
  root_ = ui::kNoNode;
  seen_.clear();
  objects_.clear();
  unread_.clear();
  known_ = 0;
  filled_ = false;
  lookUpFailed_ = false;
  lookUpCameLate_ = false;
}

void ObjectTree::fillObjectTree(std::int32_t accountID, std::int32_t classID, std::string_view view,
                                shell::WorkProgress& progress) {
  clear();
  const std::string from(view);
  select_ = "SELECT ID, ParentID, Name,(SELECT COUNT(*)  FROM " + from +
            " AS Childs  WHERE Childs.ParentID = " + from + ".ID) AS NumberOfChilds FROM " + from;
  lookUp_ = "Select * from tblAccountRelatedClassesDetail Where AccountID=" + std::to_string(accountID) +
            " and ClassID = " + std::to_string(classID) + " and ObjectID = ";
  lookUpHead_ = lookUp_.size();
  std::exception_ptr failure;
  {
    const ui::Tree::Batch batch(tree_);
    root_ = tree_.add(ui::kNoNode, kRootKey, kRootText, kImage);
    unread_.push_back(root_);
    try {
      // A queue holds the order: searching for the next node from the first one would take quadratic time.
      shell_.dtEn()->cnMainData.port().readTogether([&] {
        while (!unread_.empty() && readChildren(unread_.front(), progress)) unread_.pop_front();
      });
    } catch (...) {
      failure = std::current_exception();
    }
    addPlaceholders();
  }
  tree_.setExpanded(root_, true);
  openAboveStored();
  filled_ = true;
  if (failure) std::rethrow_exception(failure);
}

void ObjectTree::fillObjectChildren(ui::NodeId node, shell::WorkProgress& progress) {
  const ui::NodeId placeholder = placeholderOf(node);
  if (placeholder == ui::kNoNode) return;
  const std::size_t before = objects_.size();
  bool complete = false;
  {
    const ui::Tree::Batch batch(tree_);
    shell_.dtEn()->cnMainData.port().readTogether([&] { complete = readChildren(node, progress); });
  }
  tree_.remove(placeholder);
  if (complete) unread_.erase(std::find(unread_.begin(), unread_.end(), node));
  addPlaceholders();
  for (std::size_t read = before; read < objects_.size(); ++read) {
    if (tree_.checked(objects_[read])) tree_.ensureVisible(objects_[read]);
  }
}

bool ObjectTree::readChildren(ui::NodeId parent, shell::WorkProgress& progress) {
  const auto gateway = shell_.dtEn();
  data::RecordHandle& handle = gateway->rssqlTarvoBasePath;
  if (handle.State() != 0) handle.Close();
  const data::OpenRows objects(handle, childrenStatement(parent));
  known_ = std::max(known_, static_cast<std::int64_t>(objects_.size()) + objects->RecordCount());
  const Columns columns{objects->Column("ID"), objects->Column("Name"), objects->Column("NumberOfChilds")};
  for (; !objects->Eof(); objects->MoveNext()) {
    addObject(*gateway, columns, parent);
    if (objects_.size() % kBetweenLooks != 0) continue;
    progress.expect(static_cast<std::int32_t>(known_));
    progress.advance(static_cast<std::int32_t>(objects_.size()));
    if (progress.givenUp()) return false;
  }
  return true;
}

std::string ObjectTree::childrenStatement(ui::NodeId parent) const {
  std::string statement = select_;
  if (parent == root_) return statement.append(" Where ParentID is null ORDER BY Name");
  return statement.append(" Where ParentID = ").append(idOf(tree_.key(parent))).append(" ORDER BY Name");
}

/// Skips an object that is already in the tree: the host's data says that it is below itself or has two
/// parents, and reading it again might never end.
void ObjectTree::addObject(data::DtEn& gateway, const Columns& columns, ui::NodeId parent) {
  const data::RecordHandle& row = gateway.rssqlTarvoBasePath;
  const auto id = objectID(row.Fields(columns.id));
  if (!id || !isNew(*id)) return;
  const bool stored = isStored(gateway, *id);
  const ui::NodeId node =
      tree_.addNew(parent, keyOf(*id), row.Text(columns.name), stored ? kMarkedImage : kImage);
  objects_.push_back(node);
  if (stored) {
    tree_.setTag(node, kMarkedTag);
    tree_.setChecked(node, true);
  }
  const std::int64_t children = row.Fields(columns.children).toInt64();
  known_ += children;
  if (children > 0) unread_.push_back(node);
}

bool ObjectTree::isNew(std::int32_t objectID) {
  const auto number = static_cast<std::uint32_t>(objectID);
  std::bitset<kPage>& page = seen_[number / kPage];
  const bool seen = page[number % kPage];
  page.set(number % kPage);
  return !seen;
}

bool ObjectTree::isStored(data::DtEn& gateway, std::int32_t objectID) {
  if (lookUpCameLate_) return false;
  try {
    lookUp_.resize(lookUpHead_);
    lookUp_.append(std::to_string(objectID));
    const data::OpenRows rows(gateway.rssqlAccGroupL, lookUp_);
    return rows->RecordCount() != 0;
  } catch (const data::DataError& failure) {
    // The object is shown all the same, and so is the rest of the class.
    lookUpFailed_ = true;
    lookUpCameLate_ = failure.cameLate();
    return false;
  }
}

void ObjectTree::addPlaceholders() {
  for (const ui::NodeId node : unread_) {
    if (placeholderOf(node) == ui::kNoNode) tree_.add(node, {}, kPlaceholderText);
  }
}

ui::NodeId ObjectTree::placeholderOf(ui::NodeId node) const {
  // After the children that were read before the user gave up.
  const auto& children = tree_.children(node);
  return children.empty() || !tree_.key(children.back()).empty() ? ui::kNoNode : children.back();
}

/// Stored nodes open the nodes above them. A node is closed again once its own children are read, and
/// anything read later may reopen it: so it stays open if something stored is deeper than its children.
void ObjectTree::openAboveStored() {
  std::vector<bool> storedBelow;
  const auto below = [&](ui::NodeId node) { return node < storedBelow.size() && storedBelow[node]; };
  for (auto object = objects_.rbegin(); object != objects_.rend(); ++object) {
    if (!tree_.checked(*object) && !below(*object)) continue;
    const ui::NodeId mother = tree_.parent(*object);
    if (below(*object)) tree_.setExpanded(mother, true);
    if (storedBelow.size() <= mother) storedBelow.resize(mother + std::size_t{1});
    storedBelow[mother] = true;
  }
}

void ObjectTree::checkChildren(ui::NodeId node) {
  const bool checked = tree_.checked(node);
  std::vector<ui::NodeId> waiting{node};
  while (!waiting.empty()) {
    const ui::NodeId mother = waiting.back();
    waiting.pop_back();
    for (const ui::NodeId child : tree_.children(mother)) {
      tree_.setChecked(child, checked);
      waiting.push_back(child);
    }
  }
}

void ObjectTree::setMarked(ui::NodeId node, bool marked) {
  tree_.setTag(node, marked ? kMarkedTag : "");
  tree_.setImage(node, marked ? kMarkedImage : kImage);
}

std::vector<std::string> ObjectTree::chosenObjects() const {
  std::vector<std::string> chosen;
  for (const ui::NodeId node : objects_) {
    const bool isMother = !tree_.children(node).empty();
    if (isMother ? tree_.tag(node) == kMarkedTag : tree_.checked(node))
      chosen.push_back(idOf(tree_.key(node)));
  }
  return chosen;
}

}  // namespace ledgertree::entities
