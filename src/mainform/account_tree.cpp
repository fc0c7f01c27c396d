#include "mainform/account_tree.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

#include "text/characters.h"

namespace ledgertree::mainform {

namespace {

constexpr std::string_view kPlaceholder = "!$@Dummy@$!";
constexpr std::string_view kPeriodRoot = "سرفصل حسابها";
constexpr std::string_view kIntegratedRoot = "درخت حسابها در همه دوره ها بصورت يکپارچه";
/// Longer than the repeat interval of a key that is held down.
constexpr std::chrono::milliseconds kRest{150};

}  // namespace

AccountTree::AccountTree(MainScreen& screen, shell::Shell& shell)
    : screen_(screen), shell_(shell), rest_(screen, "TreeRest", kRest) {
  screen_.treeAccount.setTitleMark(std::string(kBehindCode));
  screen_.treeAccount.onExpand = [this](ui::NodeId node) { expanded(node); };
  screen_.treeAccount.onNodeClick = [this](ui::NodeId node) { clicked(node); };
  screen_.treeAccount.onNodeSelect = [this](ui::NodeId) {
    clickWaits_ = true;
    rest_.restart();
  };
  rest_.onTick = [this] { settle(); };
}

bool AccountTree::nodeHasChildren(std::string_view key) {
  const auto parsed = parseNodeKey(key);
  if (!parsed) return false;
  const auto gateway = shell_.dtEn();
  const data::OpenRows rows(gateway->rssqlAccountChilds, childCountStatement(*parsed));
  return !rows->Eof() && rows->Fields("cnt").toInt64() > 0;
}

std::string AccountTree::stripParentCode(std::int32_t accountID, std::string_view code) {
  const auto gateway = shell_.dtEn();
  return std::string(text::withoutFirstCharacters(code, parentCodeLength(*gateway, accountID)));
}

std::size_t AccountTree::parentCodeLength(data::DtEn& gateway, std::int32_t accountID) {
  const data::OpenRows parent(
      gateway.rssqlAccLevelCodeLength,
      "select Code from tblAccount Where ID in (Select x.ParentID from tblAccount x Where x.ID=" +
          std::to_string(accountID) + ")");
  return parent->Eof() ? 0 : text::characterCount(parent->Fields("Code").toText());
}

void AccountTree::fillNodeChildren(std::string_view key) {
  const auto parsed = parseNodeKey(key);
  if (!parsed) return;
  ui::Tree& tree = screen_.treeAccount;
  const ui::NodeId node = tree.find(makeNodeKey(parsed->period, parsed->account));
  if (node == ui::kNoNode) return;

  const auto gateway = shell_.dtEn();
  const shell::Hourglass hourglass(shell_.desktop());
  if (gateway->rssqlAccCostCenter.State() != 0) gateway->rssqlAccCostCenter.Close();
  const std::size_t before = tree.children(node).size();
  try {
    readChildren(*gateway, *parsed, node);
  } catch (...) {
    // It is gone if the tree was being reread.
    if (tree.find(makeNodeKey(parsed->period, parsed->account)) == node) takeBack(node, *parsed, before);
    throw;
  }
}

void AccountTree::readChildren(data::DtEn& gateway, const NodeKey& key, ui::NodeId parent) {
  ChartLevel level(gateway, key, screen_.optPeriodic.value());
  // They have one parent.
  const bool isShort = !screen_.settings.ShowCompleteCode && level.ofAccounts() && !level.atEnd();
  const std::size_t cut = isShort ? parentCodeLength(gateway, level.key().account) : 0;
  std::vector<std::string> keys;
  keys.reserve(level.count());
  for (; !level.atEnd(); level.next()) keys.push_back(makeNodeKey(level.key()));
  if (!dropMoved(keys, parent)) {
    level.close();
    return refreshTree();
  }
  const ui::Tree::Batch batch(screen_.treeAccount);
  level.begin();
  for (std::string& own : keys) {
    const ui::NodeId node =
        screen_.treeAccount.addNew(parent, std::move(own), level.label(cut), level.image());
    if (level.hasChildren()) addPlaceholder(node, level.key());
    level.next();
  }
}

bool AccountTree::dropMoved(const std::vector<std::string>& keys, ui::NodeId node) {
  ui::Tree& tree = screen_.treeAccount;
  for (const std::string& key : keys) {
    const ui::NodeId moved = tree.find(key);
    if (moved == ui::kNoNode) continue;
    for (ui::NodeId above = node; above != ui::kNoNode; above = tree.parent(above))
      if (above == moved) return false;
    tree.remove(moved);
  }
  return true;
}

/// A placeholder gives a node with unread children an expander. That of a period has the period's number on
/// the other side of the colon.
void AccountTree::addPlaceholder(ui::NodeId node, const NodeKey& key) {
  std::string own =
      key.account < 1 ? makeNodeKey(key.account, key.period) : makeNodeKey(key.period, key.account);
  screen_.treeAccount.addNew(node, own.append(kPlaceholder), std::string(kPlaceholder));
}

/// A level that couldn't be read completely isn't shown in part: it can be opened again.
void AccountTree::takeBack(ui::NodeId node, const NodeKey& key, std::size_t childrenBefore) {
  ui::Tree& tree = screen_.treeAccount;
  while (tree.children(node).size() > childrenBefore) tree.remove(tree.children(node).back());
  if (childrenBefore != 0) return;
  addPlaceholder(node, key);
  tree.setExpanded(node, false);
}

std::string_view AccountTree::rootText() const {
  return screen_.optPeriodic.value() ? kPeriodRoot : kIntegratedRoot;
}

void AccountTree::refreshTree() {
  if (!shell_.isOffered(Offer::KeptPlace)) return readAnew();
  readWithAccount(screen_.AccountOnRecord, false);
  screen_.treeAccount.setExpanded(screen_.treeAccount.find(kRootKey), true);
}

void AccountTree::readAnew() {
  ui::Tree& tree = screen_.treeAccount;
  tree.clear();
  const ui::NodeId root = tree.add(ui::kNoNode, std::string(kRootKey), std::string(rootText()), kRootImage);
  tree.setExpanded(root, true);
  tree.ensureVisible(root);
  fillNodeChildren(kRootKey);
  tree.setExpanded(root, true);
  tree.setVisible(true);
}

void AccountTree::expanded(ui::NodeId node) {
  ui::Tree& tree = screen_.treeAccount;
  const auto& children = tree.children(node);
  if (children.empty() || tree.text(children.front()) != kPlaceholder) return;
  tree.remove(children.front());
  const std::string key = tree.key(node);
  fillNodeChildren(key);
  if (tree.find(key) != node) return;  // the tree was reread
  tree.setExpanded(node, true);
  tree.ensureVisible(node);
}

void AccountTree::settle() {
  const ui::NodeId node = screen_.treeAccount.selected();
  if (clickWaits_ && node != ui::kNoNode) clicked(node);
}

void AccountTree::keepHighlightFor(std::int32_t accountID) {
  ui::Tree& tree = screen_.treeAccount;
  if (tree.selected() == ui::kNoNode) return;
  const std::int32_t highlighted = parseNodeKey(tree.key(tree.selected())).value_or(NodeKey{}).account;
  if (highlighted == accountID || (highlighted < 1 && accountID < 1)) return;
  clickWaits_ = false;
  tree.select(ui::kNoNode);
}

void AccountTree::clicked(ui::NodeId node) {
  clickWaits_ = false;
  const auto key = parseNodeKey(screen_.treeAccount.key(node));
  if (!key) return;
  if (key->account < 1) {
    if (onOtherClick) onOtherClick();
    return;
  }
  const bool looking = screen_.formMode == FormMode::ModeView || screen_.formMode == FormMode::ModeIdle;
  if (looking && onAccountClick) onAccountClick(key->account);
}

}  // namespace ledgertree::mainform
