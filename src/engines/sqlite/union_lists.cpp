#include "engines/sqlite/union_lists.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "engines/sqlite/rule_forms.h"
#include "text/characters.h"

namespace ledgertree::engines::sqlite {
namespace {

constexpr int kMostSplits = 4;

/// Whether all columns of a condition are qualified, none of them by `taken`.
bool staysTrueBeside(const Expression& condition, std::string_view taken) {
  const tsql::OuterNames names = outerNames(condition);
  return !names.bareColumns && !names.uses(taken);
}

/// The parts of "m in (select k union select t.c from t where ...)".
struct UnionList {
  SelectCore* head;
  SelectCore* rest;
};

std::optional<UnionList> unionList(Expression& membership) {
  if (membership.kind != Kind::InSelect || membership.negated) return std::nullopt;
  Select& list = *membership.select;
  if (list.cores.size() != 2 || !list.order.empty()) return std::nullopt;
  SelectCore& head = list.cores[0];
  SelectCore& rest = list.cores[1];
  if (!head.sources.empty() || head.where || head.top || head.items.size() != 1) return std::nullopt;
  if (rest.sources.size() != 1 || rest.top || rest.items.size() != 1) return std::nullopt;
  const Expression& key = *head.items.front().value;
  const Expression& child = *rest.items.front().value;
  if (key.kind != Kind::Number && (key.kind != Kind::Column || key.qualifier.empty())) return std::nullopt;
  if (!isColumnOf(child, rest.sources.front().exposedName())) return std::nullopt;
  const bool numbers = isNumber(*membership.operands.front()) && isNumber(key) && isNumber(child);
  const bool bare = rest.where && outerNames(*rest.where).bareColumns;
  return bare || !numbers ? std::nullopt : std::optional(UnionList{&head, &rest});
}

/// Whether the list's table can join the tables of the surrounding select.
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

/// Builds "name in (select item from ...)", without nulls in the list.
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

/// Whether the list is "select r.k union select t.c from t where t.p = r.k".
bool isOfRow(const UnionList& list, std::string_view row) {
  const Expression& key = *list.head->items.front().value;
  const Expression* const where = list.rest->where.get();
  if (!isColumnOf(key, row) || where == nullptr || where->kind != Kind::Compare || where->op != "=")
    return false;
  const std::string& below = list.rest->sources.front().exposedName();
  return isColumnOf(*where->operands[0], below) && isNumber(*where->operands[0]) &&
         isColumnOf(*where->operands[1], row) &&
         text::equalsIgnoringCase(where->operands[1]->name, key.name) &&
         !text::equalsIgnoringCase(below, row);
}

void testToLists(ExpressionPtr& test, std::string_view row) {
  if (test->kind != Kind::Not || test->operands.front()->kind != Kind::Exists) return;
  Select& exists = *test->operands.front()->select;
  if (!asksForRows(exists)) return;
  SelectCore& core = exists.cores.front();
  for (ExpressionPtr* const part : conjuncts(core.where)) {
    const auto list = unionList(**part);
    if (!list || !isOfRow(*list, row) || !mayJoin(core, **part, {std::string(row), {}, nullptr})) continue;
    const ExpressionPtr membership = std::exchange(*part, makeExpression(Kind::Truth));
    (*part)->truth = true;
    settleWhere(core.where);
    ExpressionPtr& member = membership->operands.front();
    ExpressionPtr& key = list->head->items.front().value;
    SelectCore parents;
    parents.sources.push_back(std::move(list->rest->sources.front()));
    parents.where = isAmong(std::move(list->rest->items.front().value), clone(*member), clone(core));
    ExpressionPtr parent = std::move(list->rest->where->operands[0]);

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

}  // namespace

void splitUnionList(ExpressionPtr& exists, int& splits) {
  if (exists->kind != Kind::Exists || !asksForRows(*exists->select)) return;
  SelectCore& core = exists->select->cores.front();
  const auto parts = conjuncts(core.where);
  for (std::size_t place = 0; place < parts.size(); ++place) {
    const auto list = unionList(**parts[place]);
    if (!list || !mayJoin(core, **parts[place], list->rest->sources.front())) continue;
    if (++splits > kMostSplits) return;
    core.items.clear();
    core.items.push_back({makeExpression(Kind::Null), {}});
    SelectCore below = clone(core);
    ExpressionPtr& placeBelow = *conjuncts(below.where)[place];
    const UnionList copy = *unionList(*placeBelow);
    ExpressionPtr key =
        makeCompare(std::move(placeBelow->operands.front()), "=", std::move(copy.rest->items.front().value));
    // The list's table comes first: it starts at the key.
    below.sources.insert(below.sources.begin(),
                         {copy.rest->sources.front().table, copy.rest->sources.front().alias, nullptr});
    placeBelow = both(std::move(copy.rest->where), std::move(key));
    settleWhere(below.where);
    ExpressionPtr& placeHere = *parts[place];
    placeHere =
        makeCompare(std::move(placeHere->operands.front()), "=", std::move(list->head->items.front().value));
    ExpressionPtr whole = makeExpression(Kind::Or);
    whole->operands.push_back(std::move(exists));
    whole->operands.push_back(existsOf(std::move(below)));
    exists = std::move(whole);
    return;
  }
}

void testsToLists(ExpressionPtr& where, std::string_view table, Tables& tables) {
  settleWhere(where);
  if (tables.isKey(table, fixedColumns(where, table))) return;
  for (ExpressionPtr* const part : conjuncts(where)) testToLists(*part, table);
}

}  // namespace ledgertree::engines::sqlite
