#include "engines/sqlite/rewrites.h"

#include <algorithm>
#include <utility>

#include "text/characters.h"
#include "tsql/conditions.h"

namespace ledgertree::engines::sqlite {

using tsql::both;
using tsql::clone;
using tsql::conjuncts;
using tsql::Expression;
using tsql::ExpressionPtr;
using tsql::Item;
using tsql::makeColumn;
using tsql::makeCompare;
using tsql::makeExpression;
using tsql::OuterNames;
using tsql::outerNames;
using tsql::Select;
using tsql::SelectCore;
using tsql::settleWhere;
using tsql::Source;
using tsql::Statement;
namespace {

using Kind = Expression::Kind;

/// The table of the periods has one row for each ID.
constexpr std::string_view kPeriodTable = "tblAccountPeriod";

bool isColumnOf(const Expression& expression, std::string_view source) {
  return expression.kind == Kind::Column && text::equalsIgnoringCase(expression.qualifier, source);
}

ExpressionPtr existsOf(SelectCore core) {
  ExpressionPtr whole = makeExpression(Kind::Exists);
  whole->select = std::make_unique<Select>();
  whole->select->cores.push_back(std::move(core));
  return whole;
}

// Memberships.

/// Whether a condition finds its rows by an index: a column, or isnull of one, that equals a literal.
bool findsRows(const Expression& condition) {
  if (condition.kind != Kind::Compare || condition.sign != "=") return false;
  const auto isKey = [](const Expression& side) {
    return side.kind == Kind::Column ||
           (side.kind == Kind::Call && side.name == "isnull" && side.operands.front()->kind == Kind::Column);
  };
  const auto isLiteral = [](const Expression& side) {
    return side.kind == Kind::Number || side.kind == Kind::Text;
  };
  const Expression& left = *condition.operands[0];
  const Expression& right = *condition.operands[1];
  return (isKey(left) && isLiteral(right)) || (isKey(right) && isLiteral(left));
}

/// The list of an IN that is one plain select of one column from one table.
SelectCore* plainList(Expression& membership) {
  if (membership.kind != Kind::InSelect || membership.negated) return nullptr;
  Select& list = *membership.select;
  if (list.cores.size() != 1 || !list.order.empty()) return nullptr;
  SelectCore& core = list.cores.front();
  if (core.top || core.gate || core.sources.size() != 1 || core.items.size() != 1) return nullptr;
  if (core.items.front().value->kind != Kind::Column) return nullptr;
  return &core;
}

void membershipToLookUp(ExpressionPtr& condition, std::string_view source) {
  if (condition->kind == Kind::And || condition->kind == Kind::Or) {
    for (ExpressionPtr& operand : condition->operands) membershipToLookUp(operand, source);
    return;
  }
  SelectCore* const list = plainList(*condition);
  if (list == nullptr) return;
  Expression& member = *condition->operands.front();
  if (member.kind != Kind::Column) return;
  if (!member.qualifier.empty() && !text::equalsIgnoringCase(member.qualifier, source)) return;
  const std::string inner = list->sources.front().exposedName();
  if (text::equalsIgnoringCase(inner, source)) return;
  ExpressionPtr& column = list->items.front().value;
  if (column->qualifier.empty()) column->qualifier = inner;
  if (!text::equalsIgnoringCase(column->qualifier, inner)) return;
  // Inside the list a bare column would be one of the list's table.
  ExpressionPtr key = makeCompare(std::move(column), "=", makeColumn(std::string(source), member.name));
  list->where = both(std::move(list->where), std::move(key));
  column = makeExpression(Kind::Null);
  condition = existsOf(std::move(*list));
}

void membershipsToLookUps(ExpressionPtr& where, std::string_view source) {
  const auto parts = conjuncts(where);
  for (ExpressionPtr* const part : parts) {
    const bool found = std::any_of(parts.begin(), parts.end(), [part](ExpressionPtr* other) {
      return other != part && findsRows(**other);
    });
    if (found) membershipToLookUp(*part, source);
  }
}

// An account and what lies below it.

/// A union list splits its exists in two, and nested ones would double again.
constexpr int kMostSplits = 4;

/// Whether all names of a condition say whose they are, and none of them is `taken`.
bool staysTrueBeside(const Expression& condition, std::string_view taken) {
  const OuterNames names = outerNames(condition);
  return !names.bareColumns && !names.uses(taken);
}

/// A list "select X union select c from t where ...".
struct Family {
  SelectCore* head;
  SelectCore* rest;
};

std::optional<Family> familyList(Expression& membership) {
  if (membership.kind != Kind::InSelect || membership.negated) return std::nullopt;
  Select& list = *membership.select;
  if (list.cores.size() != 2 || !list.order.empty()) return std::nullopt;
  SelectCore& head = list.cores[0];
  SelectCore& rest = list.cores[1];
  if (!head.sources.empty() || head.where || head.top || head.items.size() != 1) return std::nullopt;
  if (rest.sources.size() != 1 || rest.top || rest.items.size() != 1 || rest.gate) return std::nullopt;
  const Expression& first = *head.items.front().value;
  if (first.kind != Kind::Number && (first.kind != Kind::Column || first.qualifier.empty()))
    return std::nullopt;
  if (!isColumnOf(*rest.items.front().value, rest.sources.front().exposedName())) return std::nullopt;
  const bool bare = rest.where && outerNames(*rest.where).bareColumns;
  return bare ? std::nullopt : std::optional(Family{&head, &rest});
}

/// Whether the table of the list may join the tables of the select around it.
bool mayJoin(SelectCore& core, const Expression& membership, const Source& joined) {
  const std::string& name = joined.exposedName();
  for (const Source& source : core.sources) {
    if (text::equalsIgnoringCase(source.exposedName(), name)) return false;
    if (source.on && !staysTrueBeside(*source.on, name)) return false;
  }
  for (ExpressionPtr* const part : conjuncts(core.where)) {
    if (part->get() != &membership && !staysTrueBeside(**part, name)) return false;
  }
  const Expression& member = *membership.operands.front();
  return member.kind == Kind::Column && !member.qualifier.empty() &&
         !text::equalsIgnoringCase(member.qualifier, name);
}

void splitFamily(ExpressionPtr& exists, int& splits) {
  if (exists->select->cores.size() != 1) return;
  SelectCore& core = exists->select->cores.front();
  if (core.top || core.gate || core.sources.empty()) return;
  const auto parts = conjuncts(core.where);
  for (std::size_t place = 0; place < parts.size(); ++place) {
    const auto family = familyList(**parts[place]);
    if (!family || !mayJoin(core, **parts[place], family->rest->sources.front())) continue;
    if (++splits > kMostSplits) return;
    core.items.clear();
    core.items.push_back({makeExpression(Kind::Null), {}});
    SelectCore below = clone(core);
    ExpressionPtr& placeBelow = *conjuncts(below.where)[place];
    const Family copy = *familyList(*placeBelow);
    ExpressionPtr key =
        makeCompare(std::move(placeBelow->operands.front()), "=", std::move(copy.rest->items.front().value));
    // The table of the list comes first: it starts at the account's key.
    below.sources.insert(below.sources.begin(),
                         {copy.rest->sources.front().table, copy.rest->sources.front().alias, nullptr});
    placeBelow = both(std::move(copy.rest->where), std::move(key));
    settleWhere(below.where);
    ExpressionPtr& placeHere = *parts[place];
    placeHere = makeCompare(std::move(placeHere->operands.front()), "=",
                            std::move(family->head->items.front().value));
    ExpressionPtr whole = makeExpression(Kind::Or);
    whole->operands.push_back(std::move(exists));
    whole->operands.push_back(existsOf(std::move(below)));
    exists = std::move(whole);
    return;
  }
}

/// Gives "name in (select item from ...)", where no row of the list is null.
ExpressionPtr isAmong(ExpressionPtr name, ExpressionPtr item, SelectCore core) {
  ExpressionPtr known = makeExpression(Kind::IsNull);
  known->negated = true;
  known->operands.push_back(clone(*item));
  core.where = both(std::move(core.where), std::move(known));
  core.items.clear();
  core.items.push_back({std::move(item), {}});
  ExpressionPtr whole = makeExpression(Kind::InSelect);
  whole->operands.push_back(std::move(name));
  whole->select = std::make_unique<Select>();
  whole->select->cores.push_back(std::move(core));
  return whole;
}

/// Whether the list is "select <key of the row> union select p.Child from t p where p.ID = <key of the row>".
bool isFamilyOf(const Family& family, std::string_view row) {
  const Expression& key = *family.head->items.front().value;
  const Expression* const where = family.rest->where.get();
  if (!isColumnOf(key, row) || where == nullptr || where->kind != Kind::Compare || where->sign != "=")
    return false;
  const std::string& below = family.rest->sources.front().exposedName();
  return isColumnOf(*where->operands[0], below) && isColumnOf(*where->operands[1], row) &&
         text::equalsIgnoringCase(where->operands[1]->name, key.name) &&
         !text::equalsIgnoringCase(below, row);
}

/// Turns a test for each row of a table into two lists that are read once. Looked up row by row, an account
/// near the top asks for each of its descendants; from the other side each line names its few ancestors.
void familyTestToLists(ExpressionPtr& test, std::string_view row) {
  if (test->kind != Kind::Not || test->operands.front()->kind != Kind::Exists) return;
  Select& exists = *test->operands.front()->select;
  if (exists.cores.size() != 1) return;
  SelectCore& core = exists.cores.front();
  if (core.top || core.sources.empty()) return;
  for (ExpressionPtr* const part : conjuncts(core.where)) {
    const auto family = familyList(**part);
    if (!family || !isFamilyOf(*family, row) || !mayJoin(core, **part, {std::string(row), {}, nullptr}))
      continue;
    const ExpressionPtr membership = std::exchange(*part, makeExpression(Kind::Truth));
    (*part)->truth = true;
    settleWhere(core.where);
    ExpressionPtr& member = membership->operands.front();
    ExpressionPtr& key = family->head->items.front().value;
    SelectCore parents;
    parents.sources.push_back(std::move(family->rest->sources.front()));
    parents.where = isAmong(std::move(family->rest->items.front().value), clone(*member), clone(core));
    ExpressionPtr parent = std::move(family->rest->where->operands[0]);

    ExpressionPtr among = makeExpression(Kind::Or);
    among->operands.push_back(isAmong(clone(*key), std::move(member), std::move(core)));
    among->operands.push_back(isAmong(clone(*key), std::move(parent), std::move(parents)));
    ExpressionPtr known = makeExpression(Kind::IsNull);
    known->negated = true;
    known->operands.push_back(std::move(key));
    test->operands.front() = both(std::move(known), std::move(among));
    return;
  }
}

/// `table` is the one whose rows a statement deletes.
void familyTestsToLists(ExpressionPtr& where, std::string_view table) {
  settleWhere(where);
  for (ExpressionPtr* const part : conjuncts(where)) familyTestToLists(*part, table);
}

// A date inside one period.

/// `exists (select ... from tblAccountPeriod p where d.Date between p.Begin and p.End and p.ID = 5)`, taken
/// apart.
struct PeriodTest {
  Expression* range;
  Expression* key;
};

std::optional<PeriodTest> periodTest(Expression& exists, std::string_view source) {
  if (exists.kind != Kind::Exists || exists.select->cores.size() != 1) return std::nullopt;
  SelectCore& core = exists.select->cores.front();
  if (core.top || core.gate || core.sources.size() != 1) return std::nullopt;
  if (!text::equalsIgnoringCase(core.sources.front().table, kPeriodTable)) return std::nullopt;
  const std::string& period = core.sources.front().exposedName();
  const auto parts = conjuncts(core.where);
  if (parts.size() != 2 || text::equalsIgnoringCase(period, source)) return std::nullopt;
  PeriodTest test{nullptr, nullptr};
  for (ExpressionPtr* const part : parts) {
    Expression& condition = **part;
    if (condition.kind == Kind::Between && !condition.negated && isColumnOf(*condition.operands[0], source) &&
        isColumnOf(*condition.operands[1], period) && isColumnOf(*condition.operands[2], period)) {
      test.range = &condition;
    } else if (condition.kind == Kind::Compare && condition.sign == "=" &&
               isColumnOf(*condition.operands[0], period) &&
               text::equalsIgnoringCase(condition.operands[0]->name, "ID") &&
               condition.operands[1]->kind == Kind::Number) {
      test.key = &condition;
    }
  }
  return test.range != nullptr && test.key != nullptr ? std::optional(test) : std::nullopt;
}

void periodToRange(ExpressionPtr& exists, std::string_view source) {
  const auto test = periodTest(*exists, source);
  if (!test) return;
  const Source& period = exists->select->cores.front().sources.front();
  const auto bound = [&](const ExpressionPtr& column) {
    SelectCore core;
    core.items.push_back({clone(*column), {}});
    core.sources.push_back({period.table, period.alias, nullptr});
    core.where = clone(*test->key);
    ExpressionPtr whole = makeExpression(Kind::ScalarSelect);
    whole->select = std::make_unique<Select>();
    whole->select->cores.push_back(std::move(core));
    return whole;
  };
  ExpressionPtr range = makeExpression(Kind::Between);
  range->operands.push_back(std::move(test->range->operands[0]));
  range->operands.push_back(bound(test->range->operands[1]));
  range->operands.push_back(bound(test->range->operands[2]));
  exists = std::move(range);
}

// What no row decides.

bool asksNoRow(const Expression& condition) {
  if (condition.kind == Kind::Or) {
    return std::all_of(condition.operands.begin(), condition.operands.end(),
                       [](const ExpressionPtr& operand) { return asksNoRow(*operand); });
  }
  if (condition.kind != Kind::Exists) return false;
  const OuterNames names = outerNames(condition);
  return !names.bareColumns && names.qualifiers.empty();
}

void openGate(SelectCore& core) {
  if (core.top || core.sources.empty() || !core.where) return;
  // A count has a row even where it counts none.
  const auto isPlain = [](const Item& item) {
    return item.value->kind == Kind::Column || item.value->kind == Kind::All;
  };
  if (!std::all_of(core.items.begin(), core.items.end(), isPlain)) return;
  for (ExpressionPtr* const part : conjuncts(core.where)) {
    if (!asksNoRow(**part)) continue;
    core.gate = std::move(*part);
    *part = makeExpression(Kind::Truth);
    (*part)->truth = true;
    settleWhere(core.where);
    return;
  }
}

// The walk over all parts.

class Walk {
 public:
  void select(Select& select, bool outermost) {
    for (SelectCore& core : select.cores) {
      for (Item& item : core.items) expression(item.value);
      for (Source& source : core.sources) {
        if (source.on) expression(source.on);
      }
      std::vector<std::string> sources;
      for (const Source& source : core.sources) sources.push_back(source.exposedName());
      where(core.where, sources);
    }
    // A gate is written as a limit, which a union has as a whole.
    if (outermost && select.cores.size() == 1) openGate(select.cores.front());
  }

  /// `sources` are the tables that the rows come from.
  void where(ExpressionPtr& where, const std::vector<std::string>& sources) {
    settleWhere(where);
    if (!where) return;
    expression(where);
    settleWhere(where);
    if (!where) return;
    for (const std::string& source : sources) {
      for (ExpressionPtr* const part : conjuncts(where)) periodToRange(*part, source);
    }
    if (sources.size() == 1) membershipsToLookUps(where, sources.front());
  }

  void expression(ExpressionPtr& expression) {
    for (ExpressionPtr& operand : expression->operands) this->expression(operand);
    if (expression->select) select(*expression->select, false);
    if (expression->kind == Kind::Exists) splitFamily(expression, splits_);
  }

 private:
  int splits_ = 0;
};

}  // namespace

void rewriteForLookUps(Statement& statement) {
  Walk walk;
  for (auto& row : statement.values) {
    for (ExpressionPtr& value : row) walk.expression(value);
  }
  if (statement.select) walk.select(*statement.select, statement.kind == Statement::Kind::Select);
  if (statement.kind == Statement::Kind::Delete) familyTestsToLists(statement.where, statement.table);
  walk.where(statement.where, {statement.table});
}

}  // namespace ledgertree::engines::sqlite
