#include "engines/sqlite/rule_forms.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "text/characters.h"

namespace ledgertree::engines::sqlite {

bool isColumnOf(const Expression& expression, std::string_view source) {
  return expression.kind == Kind::Column && text::equalsIgnoringCase(expression.qualifier, source);
}

bool isNumber(const Expression& expression) { return expression.type == tsql::ValueType::Number; }

bool hasPlainItems(const SelectCore& core) {
  return std::all_of(core.items.begin(), core.items.end(), [](const tsql::Item& item) {
    return item.value->kind <= Kind::Text;  // a column, all of them, or a literal
  });
}

bool asksForRows(const Select& exists) {
  const SelectCore& core = exists.cores.front();
  return exists.cores.size() == 1 && !core.top && !core.sources.empty() && hasPlainItems(core);
}

ExpressionPtr existsOf(SelectCore core) {
  ExpressionPtr whole = makeExpression(Kind::Exists);
  whole->select = std::make_unique<Select>();
  whole->select->cores.push_back(std::move(core));
  return whole;
}

bool isGiven(const Expression& value, std::string_view source) {
  if (value.kind == Kind::Number || value.kind == Kind::Text) return true;
  return value.kind == Kind::Column && !value.qualifier.empty() && !isColumnOf(value, source);
}

std::vector<std::string_view> fixedColumns(ExpressionPtr& where, std::string_view source) {
  std::vector<std::string_view> fixed;
  for (const ExpressionPtr* const part : conjuncts(where)) {
    if ((*part)->kind != Kind::Compare || (*part)->op != "=") continue;
    const Expression* column = (*part)->operands[0].get();
    const Expression* value = (*part)->operands[1].get();
    if (!isGiven(*value, source)) std::swap(column, value);
    if (isGiven(*value, source) && isNumber(*value) && column->kind == Kind::Column &&
        !isGiven(*column, source) && isNumber(*column))
      fixed.push_back(column->name);
  }
  return fixed;
}

}  // namespace ledgertree::engines::sqlite
