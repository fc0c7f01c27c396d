#include "mainform/account_tree.h"

#include <chrono>
#include <utility>

#include "data/numbers.h"
#include "text/characters.h"

namespace ledgertree::mainform {

namespace {

constexpr std::string_view kRootKey = "-1:-1";
constexpr std::string_view kPlaceholder = "!$@Dummy@$!";
constexpr std::string_view kPeriodRoot = "سرفصل حسابها";
constexpr std::string_view kIntegratedRoot = "درخت حسابها در همه دوره ها بصورت يکپارچه";
constexpr int kRootImage = 1;
/// Longer than a key that is held down takes to come again.
constexpr std::chrono::milliseconds kRest{150};

/// The accounts of a period (-1: of all) below a parent (-1: at the top). The two statements of a level, for
/// its rows and for the count of each row's children, ask under the same condition.
std::string underParent(const NodeKey& key) {
  const std::string period = std::to_string(key.period);
  return " where (ID in (Select x.AccountID from tblAccountPeriodAccount x Where x.PeriodID = " + period +
         ") or -1=" + period + ")" + " and IsNull(ParentID,-1)=" + std::to_string(key.account);
}

constexpr std::string_view kPeriods = "select * from tblAccountPeriod order by FarsibeginDate Desc";

std::string levelStatement(const NodeKey& key) {
  return "Select ID,ParentID,IsClosed,AccountNatureID,Code,Title  from tblAccount " + underParent(key) +
         " Order by Code";
}

std::int32_t smallNumber(const data::Value& value, std::int32_t greatest) {
  const std::int32_t number = value.isNull() ? 0 : value.toInt32();
  return number < 0 || number > greatest ? 0 : number;
}

/// One image for each nature, open and closed.
int imageOf(const data::RecordHandle& row) {
  return 1 + smallNumber(row.Fields("AccountNatureID"), 2) + 3 * smallNumber(row.Fields("IsClosed"), 1);
}

}  // namespace

std::string makeNodeKey(std::int32_t period, std::int32_t account) {
  return std::to_string(period) + ":" + std::to_string(account);
}

std::optional<NodeKey> parseNodeKey(std::string_view key) {
  const auto colon = key.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  return NodeKey{.period = data::toNumber(key.substr(0, colon)).asInt32(),
                 .account = data::toNumber(key.substr(colon + 1)).asInt32()};
}

AccountTree::AccountTree(MainScreen& screen, shell::Shell& shell)
    : screen_(screen), shell_(shell), rest_(screen, "TreeRest", kRest) {
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
  return hasChildren(*gateway, *parsed);
}

bool AccountTree::hasChildren(data::DtEn& gateway, const NodeKey& key) {
  const data::OpenRows rows(gateway.rssqlAccountChilds,
                            "Select count(*) as cnt from tblAccount " + underParent(key) + " ");
  return !rows->Eof() && rows->Fields("cnt").toInt64() > 0;
}

std::string AccountTree::stripParentCode(std::int32_t accountID, std::string_view code) {
  const auto gateway = shell_.dtEn();
  return shortCode(*gateway, accountID, code);
}

std::string AccountTree::shortCode(data::DtEn& gateway, std::int32_t accountID, std::string_view code) {
  const data::OpenRows parent(
      gateway.rssqlAccLevelCodeLength,
      "select Code from tblAccount Where ID in (Select x.ParentID from tblAccount x Where x.ID=" +
          std::to_string(accountID) + ")");
  if (parent->Eof()) return std::string(code);
  const std::size_t length = text::characterCount(parent->Fields("Code").toText());
  return std::string(text::withoutFirstCharacters(code, length));
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
    // It is gone where the tree was being read anew.
    if (tree.find(makeNodeKey(parsed->period, parsed->account)) == node) takeBack(node, *parsed, before);
    throw;
  }
}

void AccountTree::readChildren(data::DtEn& gateway, const NodeKey& key, ui::NodeId node) {
  if (screen_.optPeriodic.value() && key == NodeKey{}) {
    addPeriods(gateway, node);
  } else {
    addAccounts(gateway, key, node);
  }
}

void AccountTree::addPeriods(data::DtEn& gateway, ui::NodeId root) {
  const ui::Tree::Batch batch(screen_.treeAccount);
  const data::OpenRows periods(gateway.rssqlAccCostCenter, kPeriods);
  for (; !periods->Eof(); periods->MoveNext()) {
    const std::int32_t period = periods->Fields("ID").toInt32();
    const ui::NodeId node =
        screen_.treeAccount.add(root, makeNodeKey(period, -1), periods->Fields("Name").toText(), kRootImage);
    const NodeKey key{.period = period, .account = -1};
    if (hasChildren(gateway, key)) addPlaceholder(node, key);
  }
}

void AccountTree::addAccounts(data::DtEn& gateway, const NodeKey& key, ui::NodeId parent) {
  data::OpenRows accounts(gateway.rssqlAccCostCenter, levelStatement(key));
  if (!dropMoved(accounts, key.period, parent)) {
    accounts.close();
    return refreshTree();
  }
  const ui::Tree::Batch batch(screen_.treeAccount);
  for (; !accounts->Eof(); accounts->MoveNext()) {
    const std::int32_t account = accounts->Fields("ID").toInt32();
    std::string label = accounts->Fields("Code").toText();
    if (!screen_.settings.ShowCompleteCode) label = shortCode(gateway, account, label);
    label += " ... ";
    label += accounts->Fields("Title").toText();
    const ui::NodeId node = screen_.treeAccount.add(parent, makeNodeKey(key.period, account),
                                                    std::move(label), imageOf(*accounts.operator->()));
    const NodeKey own{.period = key.period, .account = account};
    if (hasChildren(gateway, own)) addPlaceholder(node, own);
  }
}

bool AccountTree::dropMoved(data::OpenRows& accounts, std::int32_t period, ui::NodeId node) {
  ui::Tree& tree = screen_.treeAccount;
  for (; !accounts->Eof(); accounts->MoveNext()) {
    const ui::NodeId moved = tree.find(makeNodeKey(period, accounts->Fields("ID").toInt32()));
    if (moved == ui::kNoNode) continue;
    for (ui::NodeId above = node; above != ui::kNoNode; above = tree.parent(above))
      if (above == moved) return false;
    tree.remove(moved);
  }
  if (accounts->RecordCount() != 0) accounts->MoveFirst();
  return true;
}

/// A node that has children which aren't read yet gets an opening box by it. A period's has the number of the
/// period on the other side.
void AccountTree::addPlaceholder(ui::NodeId node, const NodeKey& key) {
  std::string own =
      key.account < 1 ? makeNodeKey(key.account, key.period) : makeNodeKey(key.period, key.account);
  screen_.treeAccount.add(node, own.append(kPlaceholder), std::string(kPlaceholder));
}

/// A level that couldn't be read whole isn't shown in part: it can be opened again.
void AccountTree::takeBack(ui::NodeId node, const NodeKey& key, std::size_t childrenBefore) {
  ui::Tree& tree = screen_.treeAccount;
  while (tree.children(node).size() > childrenBefore) tree.remove(tree.children(node).back());
  if (childrenBefore != 0) return;
  addPlaceholder(node, key);
  tree.setExpanded(node, false);
}

void AccountTree::refreshTree() {
  ui::Tree& tree = screen_.treeAccount;
  tree.clear();
  const std::string_view text = screen_.optPeriodic.value() ? kPeriodRoot : kIntegratedRoot;
  const ui::NodeId root = tree.add(ui::kNoNode, std::string(kRootKey), std::string(text), kRootImage);
  tree.setExpanded(root, true);
  tree.ensureVisible(root);
  fillNodeChildren(kRootKey);
  tree.setExpanded(root, true);
  tree.setVisible(true);
}

std::vector<data::Command> AccountTree::questionsOfRefresh() const {
  return {{.statement = screen_.optPeriodic.value() ? std::string(kPeriods) : levelStatement({})}};
}

void AccountTree::expanded(ui::NodeId node) {
  ui::Tree& tree = screen_.treeAccount;
  const auto& children = tree.children(node);
  if (children.empty() || tree.text(children.front()) != kPlaceholder) return;
  tree.remove(children.front());
  const std::string key = tree.key(node);
  fillNodeChildren(key);
  if (tree.find(key) != node) return;  // the tree was read anew
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
