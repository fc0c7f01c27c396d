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

/// The objects of one entity class as the nodes of a tree with check boxes: what the screen of the related
/// objects reads, marks and stores.
///
/// The objects come from a view of the host with ID, ParentID (NULL at the top) and Name; what is stored of
/// them are rows of tblAccountRelatedClassesDetail. A node is read with all of its siblings by one statement,
/// on the handle rssqlTarvoBasePath; whether an object is stored is asked on rssqlAccGroupL.
///
/// A node with children has a row where it is marked: it then stands for everything below it, now and later.
/// A node without children, a leaf, has a row where it is ticked. Stored nodes come back ticked and marked.
class ObjectTree {
 public:
  /// `tree` and `shell` outlive it.
  ObjectTree(ui::Tree& tree, shell::Shell& shell);

  void clear();
  /// Reads the whole class, level by level; the tree comes back with the root open. `view` is a plain view
  /// name. Throws data::DataError where the children of a node can't be read: that node and those whose turn
  /// had not come keep a placeholder, as they do where the person gives the reading up.
  void fillObjectTree(std::int32_t accountID, std::int32_t classID, std::string_view view,
                      shell::WorkProgress& progress);
  /// Reads the children of a node that still has its placeholder. Throws data::DataError.
  void fillObjectChildren(ui::NodeId node, shell::WorkProgress& progress);
  /// Whether everything that the class has stands in the tree as it is stored. What isn't complete must not
  /// be saved, for it would take the rows of what couldn't be read.
  [[nodiscard]] bool complete() const { return filled_ && unread_.empty() && !lookUpFailed_; }

  /// kNoNode where no class was read.
  [[nodiscard]] ui::NodeId root() const { return root_; }
  /// Hands the check of a node down to all nodes below it; marks stay.
  void checkChildren(ui::NodeId node);
  /// Marks a node to stand for all of its branches, or takes the mark away; its check stays.
  void setMarked(ui::NodeId node, bool marked);

  /// The IDs of the objects that get a row, in the order in which they were read.
  [[nodiscard]] std::vector<std::string> chosenObjects() const;

 private:
  /// False where the person gave it up before all of them were read.
  bool readChildren(ui::NodeId parent, shell::WorkProgress& progress);
  /// Where the columns of the children stand.
  struct Places {
    std::size_t id;
    std::size_t name;
    std::size_t children;
  };
  void addObject(data::DtEn& gateway, const Places& places, ui::NodeId parent);
  /// Whether an object comes for the first time.
  [[nodiscard]] bool isNew(std::int32_t objectID);
  [[nodiscard]] bool isStored(data::DtEn& gateway, std::int32_t objectID);
  [[nodiscard]] std::string childrenStatement(ui::NodeId parent) const;
  void addPlaceholders();
  /// The child that stands for those that aren't read; kNoNode where there is none.
  [[nodiscard]] ui::NodeId placeholderOf(ui::NodeId node) const;
  void openAboveStored();

  static constexpr std::uint32_t kPage = 256;

  ui::Tree& tree_;
  shell::Shell& shell_;
  /// The statement of the children, up to whose they are.
  std::string select_;
  /// The look-up of a stored object: its head, which is the same for all, and the number of the last one.
  std::string lookUp_;
  std::size_t lookUpHead_ = 0;
  ui::NodeId root_ = ui::kNoNode;
  /// The IDs of the objects that stand in the tree, a bit each: those of one range share a page.
  std::unordered_map<std::uint32_t, std::bitset<kPage>> seen_;
  /// How many objects the rows that were read tell of.
  std::int64_t known_ = 0;
  /// The nodes of the objects, in the order in which they were read.
  std::vector<ui::NodeId> objects_;
  /// The nodes whose children aren't read yet, in the order of their turn.
  std::deque<ui::NodeId> unread_;
  bool filled_ = false;
  bool lookUpFailed_ = false;
  /// A look-up waited in vain: those after it would stand still as long, and none is made.
  bool lookUpCameLate_ = false;
};

}  // namespace ledgertree::entities
