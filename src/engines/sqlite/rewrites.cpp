#include "engines/sqlite/rewrites.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engines/sqlite/rule_forms.h"
#include "engines/sqlite/union_lists.h"
#include "text/characters.h"

namespace ledgertree::engines::sqlite {
namespace {

// Memberships.

/// Whether a condition finds a table's rows by an index: a column that equals a given value, or
/// isnull of one that equals a literal. The value compared with isnull isn't a column's, since
/// SQLite would convert that, and the index isn't on it.
bool findsRows(const Expression& condition, std::string_view source) {
  if (condition.kind != Kind::Compare || condition.op != "=") return false;
  const auto findsBy = [source](const Expression& key, const Expression& value) {
    const bool isReplaced = key.kind == Kind::Call && key.name == "isnull";
    const Expression& column = isReplaced ? *key.operands.front() : key;
    return column.kind == Kind::Column && !isGiven(column, source) && isGiven(value, source) &&
           !(isReplaced && value.kind == Kind::Column);
  };
  const Expression& left = *condition.operands[0];
  const Expression& right = *condition.operands[1];
  return findsBy(left, right) || findsBy(right, left);
}

/// The list of an IN if it is a plain select of one column from one table.
SelectCore* plainList(Expression& membership) {
  if (membership.kind != Kind::InSelect || membership.negated) return nullptr;
  Select& list = *membership.select;
  if (!list.order.empty() || !asksForRows(list)) return nullptr;
  SelectCore& core = list.cores.front();
  if (core.sources.size() != 1 || core.items.size() != 1) return nullptr;
  return core.items.front().value->kind == Kind::Column ? &core : nullptr;
}

/// Whether a column belongs to the innermost table around it: by its prefix, or because that table has it.
bool isOf(const Expression& column, const Source& source, Tables& tables) {
  if (!column.qualifier.empty()) return isColumnOf(column, source.exposedName());
  return tables.typeOf(source.table, column.name).has_value();
}

/// A membership next to conditions that find the rows of a table s, as in
///     s.c in (select x.d from x where B) and s.e = 7
/// becomes a look-up for each row found, instead of a list that every statement reads as a whole:
///     exists (select null from x where B and s.c = x.d) and s.e = 7
/// It applies if s is the only table of the select, c a column of it, d one of x, and an index of x finds a
/// d, so that no row costs a scan of x. The row found by the exists is the member of the list; a list with a
/// null in it would give null for false, which makes no difference in a condition built only with AND and OR.
/// s.c stays on the left, whose collation counts.
void membershipToLookUp(ExpressionPtr& condition, const Source& source, Tables& tables) {
  if (condition->kind == Kind::And || condition->kind == Kind::Or) {
    for (ExpressionPtr& operand : condition->operands) membershipToLookUp(operand, source, tables);
    return;
  }
  SelectCore* const list = plainList(*condition);
  if (list == nullptr) return;
  const Source& listed = list->sources.front();
  ExpressionPtr& member = condition->operands.front();
  ExpressionPtr& column = list->items.front().value;
  if (member->kind != Kind::Column || !isOf(*member, source, tables) || !isOf(*column, listed, tables) ||
      text::equalsIgnoringCase(listed.exposedName(), source.exposedName()) ||
      !tables.isLookUp(listed.table, column->name, fixedColumns(list->where, listed.exposedName()))) {
    return;
  }
  // Inside the list, an unqualified column would belong to the list's table.
  member->qualifier = source.exposedName();
  column->qualifier = listed.exposedName();
  list->where = both(std::move(list->where), makeCompare(std::move(member), "=", std::move(column)));
  column = makeExpression(Kind::Null);
  condition = existsOf(std::move(*list));
}

void membershipsToLookUps(ExpressionPtr& where, const Source& source, Tables& tables) {
  const auto parts = conjuncts(where);
  for (ExpressionPtr* const part : parts) {
    const bool found = std::any_of(parts.begin(), parts.end(), [&](ExpressionPtr* other) {
      return other != part && findsRows(**other, source.exposedName());
    });
    if (found) membershipToLookUp(*part, source, tables);
  }
}

// A range held in one row.

/// The parts of "s.c between x.b and x.e and x.ID = 5".
struct RangeTest {
  Expression* range = nullptr;
  Expression* key = nullptr;
};

std::optional<RangeTest> rangeTest(Expression& exists, std::string_view source, Tables& tables) {
  if (exists.kind != Kind::Exists || !asksForRows(*exists.select)) return std::nullopt;
  SelectCore& core = exists.select->cores.front();
  const Source& row = core.sources.front();
  const std::string& name = row.exposedName();
  const auto parts = conjuncts(core.where);
  if (core.sources.size() != 1 || parts.size() != 2 || text::equalsIgnoringCase(name, source))
    return std::nullopt;
  RangeTest test;
  for (ExpressionPtr* const part : parts) {
    Expression& condition = **part;
    if (condition.kind == Kind::Between && !condition.negated && isColumnOf(*condition.operands[0], source) &&
        isColumnOf(*condition.operands[1], name) && isColumnOf(*condition.operands[2], name)) {
      test.range = &condition;
    } else if (condition.kind == Kind::Compare && condition.op == "=" &&
               isColumnOf(*condition.operands[0], name) && isNumber(*condition.operands[0]) &&
               condition.operands[1]->kind == Kind::Number &&
               tables.isKey(row.table, {condition.operands[0]->name})) {
      test.key = &condition;
    }
  }
  return test.range != nullptr && test.key != nullptr ? std::optional(test) : std::nullopt;
}

/// A range held in one row x,
///     exists (select ... from x where s.c between x.b and x.e and x.ID = 5)
/// becomes a range between two values, which an index on s.c serves:
///     s.c between (select x.b from x where x.ID = 5) and (select x.e from x where x.ID = 5)
/// It applies if ID is a key of x, so that there is at most one row, and the exists is one of a WHERE's
/// conditions joined by AND: without a row it yields null instead of false, and finds as little.
void rowToRange(ExpressionPtr& exists, std::string_view source, Tables& tables) {
  const auto test = rangeTest(*exists, source, tables);
  if (!test) return;
  const Source& row = exists->select->cores.front().sources.front();
  const auto bound = [&](const ExpressionPtr& column) {
    SelectCore core;
    core.items.push_back({clone(*column), {}});
    core.sources.push_back({row.table, row.alias, nullptr});
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

// Conditions that don't depend on the row.

bool asksNoRow(const Expression& condition) {
  if (condition.kind == Kind::Or) {
    return std::all_of(condition.operands.begin(), condition.operands.end(),
                       [](const ExpressionPtr& operand) { return asksNoRow(*operand); });
  }
  if (condition.kind != Kind::Exists) return false;
  const tsql::OuterNames names = outerNames(condition);
  return !names.bareColumns && names.qualifiers.empty();
}

/// An exists, or several joined by OR, that refers to no outer table holds for all rows or for none:
///     select s.a from s where exists (select ... from x where B) and C
/// evaluates it once, and reads no row of s if it doesn't hold. It applies to the outermost select if that is
/// no union, has no limit of its own, and returns rows' own values: a count returns a row even over none.
void openGate(SelectCore& core) {
  if (core.top || core.sources.empty() || !core.where || !hasPlainItems(core)) return;
  for (ExpressionPtr* const part : conjuncts(core.where)) {
    if (!asksNoRow(**part)) continue;
    core.gate = std::exchange(*part, makeExpression(Kind::Truth));
    (*part)->truth = true;
    settleWhere(core.where);
    return;
  }
}

// The walk over all parts of a statement.

class Walk {
 public:
  explicit Walk(Tables& tables) : tables_(tables) {}

  void select(Select& select, bool outermost) {
    for (SelectCore& core : select.cores) {
      for (tsql::Item& item : core.items) expression(item.value);
      std::vector<const Source*> sources;
      for (Source& source : core.sources) {
        if (source.on) expression(source.on);
        sources.push_back(&source);
      }
      where(core.where, sources);
    }
    // A gate is written as a limit, which applies to a whole union.
    if (outermost && select.cores.size() == 1) openGate(select.cores.front());
  }

  /// `sources` are the tables that the rows come from.
  void where(ExpressionPtr& where, const std::vector<const Source*>& sources) {
    settleWhere(where);
    if (!where) return;
    expression(where);
    settleWhere(where);
    if (!where) return;
    for (const Source* const source : sources) {
      for (ExpressionPtr* const part : conjuncts(where)) rowToRange(*part, source->exposedName(), tables_);
    }
    if (sources.size() == 1) membershipsToLookUps(where, *sources.front(), tables_);
  }

  void expression(ExpressionPtr& expression) {
    for (ExpressionPtr& operand : expression->operands) this->expression(operand);
    if (expression->select) select(*expression->select, false);
    splitUnionList(expression, splits_);
  }

 private:
  Tables& tables_;
  int splits_ = 0;
};

}  // namespace

void rewriteForLookUps(tsql::Statement& statement, Tables& tables) {
  Walk walk(tables);
  for (auto& row : statement.values) {
    for (ExpressionPtr& value : row) walk.expression(value);
  }
  if (statement.select) walk.select(*statement.select, statement.kind == tsql::Statement::Kind::Select);
  if (statement.kind == tsql::Statement::Kind::Delete) testsToLists(statement.where, statement.table, tables);
  const Source target{statement.table, {}, nullptr};
  walk.where(statement.where, {&target});
}

}  // namespace ledgertree::engines::sqlite
