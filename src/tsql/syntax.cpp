#include "tsql/syntax.h"

#include <algorithm>
#include <utility>

#include "text/characters.h"

namespace ledgertree::tsql {
namespace {

void collect(const Expression& part, std::vector<std::string_view>& bound, OuterNames& found);

void collect(const SelectCore& core, std::vector<std::string_view>& bound, OuterNames& found) {
  const std::size_t before = bound.size();
  for (const Source& source : core.sources) bound.push_back(source.exposedName());
  for (const Item& item : core.items) collect(*item.value, bound, found);
  for (const Source& source : core.sources) {
    if (source.on) collect(*source.on, bound, found);
  }
  if (core.where) collect(*core.where, bound, found);
  if (core.gate) collect(*core.gate, bound, found);
  bound.resize(before);
}

void collect(const Expression& part, std::vector<std::string_view>& bound, OuterNames& found) {
  if (part.kind == Expression::Kind::Column && part.qualifier.empty()) found.bareColumns = true;
  if (!part.qualifier.empty()) {
    const bool inside = std::any_of(bound.begin(), bound.end(), [&part](std::string_view name) {
      return text::equalsIgnoringCase(name, part.qualifier);
    });
    if (!inside) found.qualifiers.push_back(part.qualifier);
  }
  for (const ExpressionPtr& operand : part.operands) collect(*operand, bound, found);
  if (!part.select) return;
  for (const SelectCore& core : part.select->cores) collect(core, bound, found);
  for (const OrderTerm& term : part.select->order) collect(*term.value, bound, found);
}

ExpressionPtr cloneIfAny(const ExpressionPtr& original) { return original ? clone(*original) : nullptr; }

}  // namespace

ExpressionPtr makeExpression(Expression::Kind kind) {
  auto made = std::make_unique<Expression>();
  made->kind = kind;
  return made;
}

ExpressionPtr makeColumn(std::string qualifier, std::string name) {
  auto made = makeExpression(Expression::Kind::Column);
  made->qualifier = std::move(qualifier);
  made->name = std::move(name);
  return made;
}

ExpressionPtr makeCompare(ExpressionPtr left, std::string_view op, ExpressionPtr right) {
  auto made = makeExpression(Expression::Kind::Compare);
  made->op = op;
  made->operands.push_back(std::move(left));
  made->operands.push_back(std::move(right));
  return made;
}

ExpressionPtr clone(const Expression& original) {
  auto copy = makeExpression(original.kind);
  copy->type = original.type;
  copy->negated = original.negated;
  copy->truth = original.truth;
  copy->pinned = original.pinned;
  copy->literal = original.literal;
  copy->qualifier = original.qualifier;
  copy->name = original.name;
  copy->op = original.op;
  for (const ExpressionPtr& operand : original.operands) copy->operands.push_back(clone(*operand));
  if (!original.select) return copy;
  copy->select = std::make_unique<Select>();
  copy->select->keepsRepeats = original.select->keepsRepeats;
  for (const SelectCore& core : original.select->cores) copy->select->cores.push_back(clone(core));
  for (const OrderTerm& term : original.select->order) {
    copy->select->order.push_back({clone(*term.value), term.descending});
  }
  return copy;
}

SelectCore clone(const SelectCore& original) {
  SelectCore copy;
  copy.top = original.top;
  for (const Item& item : original.items) copy.items.push_back({clone(*item.value), item.alias});
  for (const Source& source : original.sources) {
    copy.sources.push_back({source.table, source.alias, cloneIfAny(source.on)});
  }
  copy.where = cloneIfAny(original.where);
  copy.gate = cloneIfAny(original.gate);
  return copy;
}

bool OuterNames::uses(std::string_view qualifier) const {
  return std::any_of(qualifiers.begin(), qualifiers.end(), [qualifier](const std::string& name) {
    return text::equalsIgnoringCase(name, qualifier);
  });
}

OuterNames outerNames(const Expression& part) {
  std::vector<std::string_view> bound;
  OuterNames found;
  collect(part, bound, found);
  return found;
}

}  // namespace ledgertree::tsql
