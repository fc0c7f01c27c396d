#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/dten.h"
#include "shell/shell.h"
#include "shell/work_progress.h"
#include "ui/tree.h"

namespace ledgertree::entities {

/// The objects of one entity class as a tree with check boxes: what the screen of the related objects reads,
/// marks and stores.
///
/// The objects come from a view of the host with ID, ParentID (NULL at the top) and Name; what is stored of
/// them are rows of tblAccountRelatedClassesDetail. A node and its siblings are read by one statement, on the
/// handle rssqlTarvoBasePath; whether an object is stored is queried on rssqlAccGroupL.
///
/// A node with children has a row if it is marked: it then includes everything below it, now and later. A
/// node without children, a leaf, has a row if it is ticked. Stored nodes are read back as ticked and marked.
class ObjectTree {
 public:
  /// `tree` and `shell` outlive it.
  ObjectTree(ui::Tree& tree, shell::Shell& shell);

  void clear();
  /// Reads the whole class, level by level, and opens the root. `view` is a plain view name. Throws
  /// data::DataError if the children of a node can't be read: that node and all that were still to be read
  /// keep a placeholder, as they do if the user cancels.
  void fillObjectTree(std::int32_t accountID, std::int32_t classID, std::string_view view,
                      shell::WorkProgress& progress);
  /// Reads the children of a node that still has its placeholder. Throws data::DataError.
  void fillObjectChildren(ui::NodeId node, shell::WorkProgress& progress);
  /// Whether the tree has all objects of the class, as they are stored. An incomplete tree must not be saved:
  /// that would delete the rows of what couldn't be read.
  [[nodiscard]] bool complete() const { return filled_ && unread_.empty() && !lookUpFailed_; }

  /// kNoNode if no class was read.
  [[nodiscard]] ui::NodeId root() const { return root_; }
  /// Copies the check of a node to all nodes below it; marks stay.
  void checkChildren(ui::NodeId node);
  /// Marks a node so that it includes all its branches, or removes the mark; its check stays.
  void setMarked(ui::NodeId node, bool marked);

  /// The IDs of the objects that get a row, in the order in which they were read.
  [[nodiscard]] std::vector<std::string> chosenObjects() const;

 private:
  /// False if the user cancelled before all of them were read.
  bool readChildren(ui::NodeId parent, shell::WorkProgress& progress);
  /// Where the columns of the children are.
  struct Columns {
    std::size_t id;
    std::size_t name;
    std::size_t children;
  };
  void addObject(data::DtEn& gateway, const Columns& columns, ui::NodeId parent);
  /// Whether an object occurs for the first time.
  [[nodiscard]] bool isNew(std::int32_t objectID);
  [[nodiscard]] bool isStored(data::DtEn& gateway, std::int32_t objectID);
  [[nodiscard]] std::string childrenStatement(ui::NodeId parent) const;
  void addPlaceholders();
  /// The placeholder for children that aren't read yet; kNoNode if there is none.
  [[nodiscard]] ui::NodeId placeholderOf(ui::NodeId node) const;
  void openAboveStored();

  static constexpr std::uint32_t kPage = 256;

  ui::Tree& tree_;
  shell::Shell& shell_;
  /// The statement for the children, up to the parent's ID.
  std::string select_;
  /// The look-up of a stored object: its beginning, which never changes, and the last object's number.
  std::string lookUp_;
  std::size_t lookUpHead_ = 0;
  ui::NodeId root_ = ui::kNoNode;
  /// The IDs of the objects in the tree, one bit each: IDs of one range share a page.
  std::unordered_map<std::uint32_t, std::bitset<kPage>> seen_;
  /// How many objects there are by the rows read so far.
  std::int64_t known_ = 0;
  /// The nodes of the objects, in the order in which they were read.
  std::vector<ui::NodeId> objects_;
  /// The nodes whose children aren't read yet, in the order in which they will be.
  std::deque<ui::NodeId> unread_;
  bool filled_ = false;
  bool lookUpFailed_ = false;
  /// A look-up has timed out: further ones would wait as long, so none is made.
  bool lookUpCameLate_ = false;
};

}  // namespace ledgertree::entities
