#include "tsql/value_types.h"

#include <algorithm>
#include <string>
#include <vector>

#include "text/characters.h"

namespace ledgertree::tsql {
namespace {

using Kind = Expression::Kind;

class Typing {
 public:
  explicit Typing(Columns& columns) : columns_(columns) {}

  void statement(Statement& statement) {
    if (statement.select) select(*statement.select);
    const Source target{statement.table, {}, nullptr};
    if (!statement.table.empty()) known_.push_back(&target);
    for (auto& row : statement.values) {
      for (ExpressionPtr& value : row) expression(value);
    }
    expression(statement.where);
  }

 private:
  void select(Select& select) {
    const std::size_t outside = known_.size();
    for (SelectCore& core : select.cores) {
      enter(core, outside);
      for (Item& item : core.items) expression(item.value);
      for (Source& source : core.sources) expression(source.on);
      expression(core.where);
    }
    // ORDER BY refers to the first part of a union.
    enter(select.cores.front(), outside);
    for (OrderTerm& term : select.order) order(*term.value, select.cores.front());
    known_.resize(outside);
  }

  void enter(const SelectCore& core, std::size_t outside) {
    known_.resize(outside);
    for (const Source& source : core.sources) known_.push_back(&source);
  }

  void order(Expression& value, const SelectCore& core) {
    const auto named = std::find_if(core.items.begin(), core.items.end(), [&value](const Item& item) {
      return value.kind == Kind::Column && value.qualifier.empty() &&
             text::equalsIgnoringCase(item.alias, value.name);
    });
    if (named == core.items.end()) return expression(value);
    value.type = named->value->type;
  }

  void expression(const ExpressionPtr& part) {
    if (part) expression(*part);
  }
  void expression(Expression& part) {
    for (ExpressionPtr& operand : part.operands) expression(*operand);
    if (part.select) select(*part.select);
    part.type = typeOf(part);
  }

  ValueType typeOf(const Expression& part) {
    switch (part.kind) {
      case Kind::Text:
        return ValueType::Text;
      case Kind::All:
        return ValueType::Unknown;
      case Kind::Column:
        return typeOfColumn(part);
      case Kind::Call:
        return typeOfCall(part);
      case Kind::Arithmetic:
        return part.op == "+" ? typeOfSum(part) : ValueType::Number;
      case Kind::ScalarSelect:
        return part.select->cores.front().items.front().value->type;
      default:
        return ValueType::Number;
    }
  }

  /// A name refers to the innermost table that has it.
  ValueType typeOfColumn(const Expression& column) {
    for (auto source = known_.rbegin(); source != known_.rend(); ++source) {
      if (!column.qualifier.empty() && !text::equalsIgnoringCase((*source)->exposedName(), column.qualifier))
        continue;
      const auto found = columns_.typeOf((*source)->table, column.name);
      if (found) return *found;
    }
    return ValueType::Unknown;
  }

  static ValueType typeOfCall(const Expression& call) {
    if (call.name == "left" || call.name == "right") return ValueType::Text;
    if (call.name == "count" || call.name == "sum") return ValueType::Number;
    const bool none = call.operands.front()->kind == Kind::Null;
    return none ? call.operands.back()->type : call.operands.front()->type;
  }

  static ValueType typeOfSum(const Expression& sum) {
    const ValueType left = sum.operands[0]->type;
    const ValueType right = sum.operands[1]->type;
    if (left == ValueType::Text || right == ValueType::Text) return ValueType::Text;
    return left == right ? left : ValueType::Unknown;
  }

  Columns& columns_;
  std::vector<const Source*> known_;  ///< the visible tables, those of the innermost select last
};

}  // namespace

void tellTypes(Statement& statement, Columns& columns) { Typing(columns).statement(statement); }

}  // namespace ledgertree::tsql
