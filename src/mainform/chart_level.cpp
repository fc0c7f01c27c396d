#include "mainform/chart_level.h"

#include <algorithm>

#include "data/numbers.h"
#include "text/characters.h"

namespace ledgertree::mainform {

namespace {

/// The accounts of a period (-1: of all), given as a number or as a column of the enclosing statement.
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

std::string rowsOf(const NodeKey& parent, bool periods) {
  if (periods) return std::string(kPeriods);
  return "Select ID,ParentID,IsClosed,AccountNatureID,Code,Title  from tblAccount " + underParent(parent) +
         " Order by Code";
}

/// The periods that have accounts at the top.
std::string periodsWithAccounts() {
  return "Select p.ID from tblAccountPeriod p where exists (Select ID from tblAccount" +
         inPeriod("p.ID").append(kUnder) + "-1)";
}

/// The accounts of a level that have children, with the condition of the level itself. If none of a parent's
/// children is in a period, each of them would be looked up there; checking first whether the period has any
/// account between the first child and the last takes only three look-ups.
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

std::string withChildrenOf(const NodeKey& parent, bool periods) {
  return periods ? periodsWithAccounts() : parentsBelow(parent);
}

bool arePeriods(const NodeKey& parent, bool ofPeriods) { return ofPeriods && parent == NodeKey{}; }

std::int32_t smallNumber(const data::Value& value, std::int32_t greatest) {
  const std::int32_t number = value.isNull() ? 0 : value.toInt32();
  return number < 0 || number > greatest ? 0 : number;
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

std::string childCountStatement(const NodeKey& key) {
  return "Select count(*) as cnt from tblAccount " + underParent(key) + " ";
}

std::vector<std::int32_t> sortedNumbers(data::RecordHandle& handle, const std::string& statement,
                                        std::string_view column) {
  const data::OpenRows rows(handle, statement);
  std::vector<std::int32_t> numbers;
  numbers.reserve(static_cast<std::size_t>(rows->RecordCount()));
  for (const std::size_t index = rows->Column(column); !rows->Eof(); rows->MoveNext())
    numbers.push_back(rows->Fields(index).toInt32());
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

std::vector<data::Command> ChartLevel::questions(const NodeKey& parent, bool ofPeriods) {
  const bool periods = arePeriods(parent, ofPeriods);
  return {{.statement = rowsOf(parent, periods)}, {.statement = withChildrenOf(parent, periods)}};
}

ChartLevel::ChartLevel(data::DtEn& gateway, const NodeKey& parent, bool ofPeriods)
    : ChartLevel(gateway, parent, arePeriods(parent, ofPeriods),
                 data::Ahead(gateway.cnMainData, questions(parent, ofPeriods))) {}

ChartLevel::ChartLevel(data::DtEn& gateway, const NodeKey& parent, bool periods, const data::Ahead&)
    : parent_(parent),
      periods_(periods),
      rows_(gateway.rssqlAccCostCenter, rowsOf(parent, periods)),
      withChildren_(sortedNumbers(gateway.rssqlAccountChilds, withChildrenOf(parent, periods), "ID")),
      id_(rows_->Column("ID")),
      title_(rows_->Column(periods ? "Name" : "Title")) {
  if (periods) return;
  isClosed_ = rows_->Column("IsClosed");
  nature_ = rows_->Column("AccountNatureID");
  code_ = rows_->Column("Code");
}

NodeKey ChartLevel::key() const {
  return periods_ ? NodeKey{.period = id(), .account = -1}
                  : NodeKey{.period = parent_.period, .account = id()};
}

bool ChartLevel::hasChildren() const {
  return std::binary_search(withChildren_.begin(), withChildren_.end(), id());
}

int ChartLevel::image() const {
  if (periods_) return kRootImage;
  return 1 + smallNumber(rows_->Fields(nature_), 2) + 3 * smallNumber(rows_->Fields(isClosed_), 1);
}

std::string ChartLevel::label(std::size_t cut) const {
  constexpr std::size_t kUsual = 64;
  std::string label;
  label.reserve(kUsual);
  if (!periods_) {
    rows_->AppendText(code_, label);
    if (cut != 0) label.erase(0, label.size() - text::withoutFirstCharacters(label, cut).size());
    label += kBehindCode;
  }
  rows_->AppendText(title_, label);
  return label;
}

std::size_t ChartLevel::codeLength() const { return periods_ ? 0 : text::characterCount(rows_->Text(code_)); }

}  // namespace ledgertree::mainform
