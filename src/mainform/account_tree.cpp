#include "mainform/account_tree.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

#include "data/ahead.h"
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

/// The accounts of a period (-1: of all), which is a number or a column of the statement around it.
std::string inPeriod(const std::string& period) {
  return " where (ID in (Select x.AccountID from tblAccountPeriodAccount x Where x.PeriodID = " + period +
         ") or -1=" + period + ")";
}

constexpr std::string_view kUnder = " and IsNull(ParentID,-1)=";

/// Those of them below a parent (-1: at the top).
std::string underParent(const NodeKey& key) {
  return inPeriod(std::to_string(key.period)).append(kUnder) + std::to_string(key.account);
}

constexpr std::string_view kPeriods = "select * from tblAccountPeriod order by FarsibeginDate Desc";

std::string levelStatement(const NodeKey& key) {
  return "Select ID,ParentID,IsClosed,AccountNatureID,Code,Title  from tblAccount " + underParent(key) +
         " Order by Code";
}

/// Which periods have accounts at the top.
std::string periodsWithAccounts() {
  return "Select p.ID from tblAccountPeriod p where exists (Select ID from tblAccount" +
         inPeriod("p.ID").append(kUnder) + "-1)";
}

/// Which accounts of a level have children, under the condition that the level itself has. Of a parent none
/// of whose children is in a period each child would be looked up there: whether the period has any account
/// between the first child and the last one takes three looks.
std::string parentsBelow(const NodeKey& key) {
  const std::string period = std::to_string(key.period);
  const std::string between =
      key.period == -1
          ? ""
          : " and exists (Select x.AccountID from tblAccountPeriodAccount x Where x.PeriodID = " + period +
                " and x.AccountID between (Select min(c.ID) from tblAccount c Where c.ParentID=p.ID)"
                " and (Select max(c.ID) from tblAccount c Where c.ParentID=p.ID))";
  return "Select p.ID from tblAccount p" + underParent(key) + between +
         " and exists (Select ID from tblAccount" + inPeriod(period) + " and ParentID=p.ID)";
}

std::vector<data::Command> questionsOfPeriods() {
  return {{.statement = std::string(kPeriods)}, {.statement = periodsWithAccounts()}};
}

std::vector<data::Command> questionsOfLevel(const NodeKey& key) {
  return {{.statement = levelStatement(key)}, {.statement = parentsBelow(key)}};
}

/// The numbers in the column ID, in ascending order.
std::vector<std::int32_t> sortedIDs(data::RecordHandle& handle, const std::string& statement) {
  const data::OpenRows rows(handle, statement);
  std::vector<std::int32_t> ids;
  ids.reserve(static_cast<std::size_t>(rows->RecordCount()));
  for (const std::size_t id = rows->Column("ID"); !rows->Eof(); rows->MoveNext())
    ids.push_back(rows->Fields(id).toInt32());
  std::sort(ids.begin(), ids.end());
  return ids;
}

bool isAmong(const std::vector<std::int32_t>& sorted, std::int32_t id) {
  return std::binary_search(sorted.begin(), sorted.end(), id);
}

std::int32_t smallNumber(const data::Value& value, std::int32_t greatest) {
  const std::int32_t number = value.isNull() ? 0 : value.toInt32();
  return number < 0 || number > greatest ? 0 : number;
}

/// The columns of a level's rows, each looked for once.
struct LevelRow {
  explicit LevelRow(const data::RecordHandle& rows)
      : rows_(rows),
        id_(rows.Column("ID")),
        isClosed_(rows.Column("IsClosed")),
        nature_(rows.Column("AccountNatureID")),
        code_(rows.Column("Code")),
        title_(rows.Column("Title")) {}

  [[nodiscard]] std::int32_t id() const { return rows_.Fields(id_).toInt32(); }
  /// One for each nature, open and closed.
  [[nodiscard]] int image() const {
    return 1 + smallNumber(rows_.Fields(nature_), 2) + 3 * smallNumber(rows_.Fields(isClosed_), 1);
  }
  /// With the code less as many characters ahead.
  [[nodiscard]] std::string label(std::size_t cut) const {
    std::string label;
    label.reserve(kUsualLabel);
    rows_.AppendText(code_, label);
    if (cut != 0) label.erase(0, label.size() - text::withoutFirstCharacters(label, cut).size());
    label += " ... ";
    rows_.AppendText(title_, label);
    return label;
  }

 private:
  static constexpr std::size_t kUsualLabel = 64;

  const data::RecordHandle& rows_;
  std::size_t id_;
  std::size_t isClosed_;
  std::size_t nature_;
  std::size_t code_;
  std::size_t title_;
};

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
  const data::OpenRows rows(gateway->rssqlAccountChilds,
                            "Select count(*) as cnt from tblAccount " + underParent(*parsed) + " ");
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
  const data::Ahead ahead(gateway.cnMainData, questionsOfPeriods());
  const data::OpenRows periods(gateway.rssqlAccCostCenter, kPeriods);
  const std::vector<std::int32_t> withAccounts = sortedIDs(gateway.rssqlAccountChilds, periodsWithAccounts());
  const ui::Tree::Batch batch(screen_.treeAccount);
  for (; !periods->Eof(); periods->MoveNext()) {
    const std::int32_t period = periods->Fields("ID").toInt32();
    const ui::NodeId node =
        screen_.treeAccount.add(root, makeNodeKey(period, -1), periods->Fields("Name").toText(), kRootImage);
    if (isAmong(withAccounts, period)) addPlaceholder(node, {.period = period, .account = -1});
  }
}

void AccountTree::addAccounts(data::DtEn& gateway, const NodeKey& key, ui::NodeId parent) {
  const data::Ahead ahead(gateway.cnMainData, questionsOfLevel(key));
  data::OpenRows accounts(gateway.rssqlAccCostCenter, levelStatement(key));
  const std::vector<std::int32_t> withChildren = sortedIDs(gateway.rssqlAccountChilds, parentsBelow(key));
  const LevelRow row(*accounts);
  // They have one parent.
  const bool isShort = !screen_.settings.ShowCompleteCode && !accounts->Eof();
  const std::size_t cut = isShort ? parentCodeLength(gateway, row.id()) : 0;
  std::vector<std::string> keys;
  keys.reserve(static_cast<std::size_t>(accounts->RecordCount()));
  for (; !accounts->Eof(); accounts->MoveNext()) keys.push_back(makeNodeKey(key.period, row.id()));
  if (!dropMoved(keys, parent)) {
    accounts.close();
    return refreshTree();
  }
  const ui::Tree::Batch batch(screen_.treeAccount);
  accounts->MoveFirst();
  for (std::string& own : keys) {
    const ui::NodeId node = screen_.treeAccount.addNew(parent, std::move(own), row.label(cut), row.image());
    if (isAmong(withChildren, row.id())) addPlaceholder(node, {.period = key.period, .account = row.id()});
    accounts->MoveNext();
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

/// A node that has children which aren't read yet gets an opening box by it. A period's has the number of the
/// period on the other side.
void AccountTree::addPlaceholder(ui::NodeId node, const NodeKey& key) {
  std::string own =
      key.account < 1 ? makeNodeKey(key.account, key.period) : makeNodeKey(key.period, key.account);
  screen_.treeAccount.addNew(node, own.append(kPlaceholder), std::string(kPlaceholder));
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
  return screen_.optPeriodic.value() ? questionsOfPeriods() : questionsOfLevel({});
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
