#include <algorithm>
#include <set>
#include <utility>

#include "data/ahead.h"
#include "mainform/account_tree.h"

// Keeping the tree's place while it is reread.

namespace ledgertree::mainform {

namespace {

std::string ancestorsStatement(std::int32_t accountID) {
  return "Select ID from tblAccountParent Where ChildID=" + std::to_string(accountID);
}

/// The periods in which the tree leads to an account: those that include it and all its ancestors.
std::string periodsStatement(std::int32_t accountID) {
  return "Select x.PeriodID from tblAccountPeriodAccount x Where x.AccountID=" + std::to_string(accountID) +
         " and not exists (Select p.ID from tblAccountParent p Where p.ChildID=x.AccountID and not exists "
         "(Select y.AccountID from tblAccountPeriodAccount y Where y.AccountID=p.ID and "
         "y.PeriodID=x.PeriodID))";
}

void addQuestions(const std::vector<NodeKey>& parents, bool ofPeriods,
                  std::vector<data::Command>& questions) {
  for (const NodeKey& parent : parents)
    for (data::Command& question : ChartLevel::questions(parent, ofPeriods))
      questions.push_back(std::move(question));
}

}  // namespace

/// A node to be added to the tree.
struct AccountTree::OpenNode {
  NodeKey key;
  std::string label;
  int image = kRootImage;
  bool hasChildren = false;
  std::size_t codeLength = 0;      ///< what the labels of its children lose
  std::vector<OpenNode> children;  ///< if it is open
};

std::vector<data::Command> AccountTree::questionsOfRefresh(std::int32_t shown) const {
  if (shell_.isOffered(Offer::KeptPlace)) return questionsOfReading(shown);
  return ChartLevel::questions({}, screen_.optPeriodic.value());
}

std::vector<data::Command> AccountTree::questionsOfReading(std::int32_t accountID) const {
  const bool ofPeriods = screen_.optPeriodic.value();
  std::vector<data::Command> questions;
  if (accountID > 0 && ofPeriods) questions.push_back({.statement = periodsStatement(accountID)});
  if (accountID > 0) questions.push_back({.statement = ancestorsStatement(accountID)});
  addQuestions(openKeys(), ofPeriods, questions);
  return questions;
}

void AccountTree::readAgain() { static_cast<void>(readWithAccount(-1, false)); }

bool AccountTree::showAccount(std::int32_t accountID) { return readWithAccount(accountID, true); }

bool AccountTree::readWithAccount(std::int32_t accountID, bool opensPeriod) {
  const auto gateway = shell_.dtEn();
  const shell::Hourglass hourglass(shell_.desktop());
  const data::Ahead ahead(gateway->cnMainData, questionsOfReading(accountID));
  std::vector<NodeKey> open = openKeys();
  const auto period = accountID > 0 ? periodOf(*gateway, accountID, opensPeriod) : std::nullopt;
  if (period) {
    open.push_back({.period = *period, .account = -1});
    for (const std::int32_t above :
         sortedNumbers(gateway->rssqlAccountChilds, ancestorsStatement(accountID), "ID"))
      open.push_back({.period = *period, .account = above});
  }
  putUp(readOpen(*gateway, open));
  ui::Tree& tree = screen_.treeAccount;
  const ui::NodeId node = period ? tree.find(makeNodeKey(*period, accountID)) : ui::kNoNode;
  if (node == ui::kNoNode) return false;
  clickWaits_ = false;
  tree.ensureVisible(node);
  tree.select(node);
  return true;
}

/// From the root downwards, one level after the other.
std::vector<NodeKey> AccountTree::openKeys() const {
  const ui::Tree& tree = screen_.treeAccount;
  std::vector<NodeKey> keys{{}};
  std::vector<ui::NodeId> waiting(tree.roots());
  for (std::size_t next = 0; next < waiting.size(); ++next) {
    for (const ui::NodeId child : tree.children(waiting[next])) {
      if (!tree.expanded(child)) continue;
      keys.push_back(parseNodeKey(tree.key(child)).value());
      waiting.push_back(child);
    }
  }
  return keys;
}

/// -1 in the integrated tree. Of several periods, preferably the one in which it is highlighted, then one
/// that is open.
std::optional<std::int32_t> AccountTree::periodOf(data::DtEn& gateway, std::int32_t accountID,
                                                  bool opensPeriod) const {
  if (!screen_.optPeriodic.value()) return -1;
  const ui::Tree& tree = screen_.treeAccount;
  std::vector<NodeKey> wanted;
  if (tree.selected() != ui::kNoNode) {
    const auto highlighted = parseNodeKey(tree.key(tree.selected()));
    if (highlighted && highlighted->account == accountID) wanted.push_back(*highlighted);
  }
  for (const bool alsoClosed : {false, true})
    for (const ui::NodeId root : tree.roots())
      for (const ui::NodeId period : tree.children(root))
        if (tree.expanded(period) || (alsoClosed && opensPeriod))
          if (const auto key = parseNodeKey(tree.key(period))) wanted.push_back(*key);
  const auto having = sortedNumbers(gateway.rssqlAccountChilds, periodsStatement(accountID), "PeriodID");
  for (const NodeKey& key : wanted)
    if (std::binary_search(having.begin(), having.end(), key.period)) return key.period;
  return std::nullopt;
}

AccountTree::OpenNode AccountTree::readOpen(data::DtEn& gateway, const std::vector<NodeKey>& open) const {
  const bool ofPeriods = screen_.optPeriodic.value();
  const bool isShort = !screen_.settings.ShowCompleteCode;
  std::vector<data::Command> questions;
  addQuestions(open, ofPeriods, questions);
  const data::Ahead ahead(gateway.cnMainData, std::move(questions));
  // Each is read once, even if another user moves it meanwhile.
  std::set<NodeKey> unread(open.begin(), open.end());
  OpenNode root{.key = {}, .label = std::string(rootText()), .children = {}};
  std::vector<OpenNode*> waiting{&root};
  for (std::size_t next = 0; next < waiting.size(); ++next) {
    OpenNode& parent = *waiting[next];
    ChartLevel level(gateway, parent.key, ofPeriods);
    parent.children.reserve(level.count());
    for (; !level.atEnd(); level.next())
      parent.children.push_back({.key = level.key(),
                                 .label = level.label(parent.codeLength),
                                 .image = level.image(),
                                 .hasChildren = level.hasChildren(),
                                 .codeLength = isShort ? level.codeLength() : 0,
                                 .children = {}});
    parent.hasChildren = !parent.children.empty();
    for (OpenNode& child : parent.children)
      if (child.hasChildren && unread.erase(child.key) > 0) waiting.push_back(&child);
  }
  return root;
}

void AccountTree::putUp(const OpenNode& root) {
  ui::Tree& tree = screen_.treeAccount;
  const ui::NodeId oldRoot = tree.find(kRootKey);
  const bool open = oldRoot == ui::kNoNode || tree.expanded(oldRoot);
  const std::string highlighted = tree.selected() == ui::kNoNode ? "" : tree.key(tree.selected());
  const ui::Tree::Renewal renewal(tree);
  const ui::NodeId top = tree.add(ui::kNoNode, std::string(kRootKey), root.label, root.image);
  tree.setExpanded(top, open);
  std::vector<std::pair<ui::NodeId, const OpenNode*>> waiting{{top, &root}};
  for (std::size_t next = 0; next < waiting.size(); ++next) {
    const auto [parent, read] = waiting[next];
    for (const OpenNode& child : read->children) {
      std::string key = makeNodeKey(child.key);
      // It was moved between two queries, and has already been read elsewhere.
      if (tree.find(key) != ui::kNoNode) continue;
      const ui::NodeId node = tree.addNew(parent, std::move(key), child.label, child.image);
      tree.setExpanded(node, !child.children.empty());
      if (!child.children.empty()) {
        waiting.emplace_back(node, &child);
      } else if (child.hasChildren) {
        addPlaceholder(node, child.key);
      }
    }
  }
  const ui::NodeId node = tree.find(highlighted);
  if (node != ui::kNoNode) tree.select(node);
}

}  // namespace ledgertree::mainform
