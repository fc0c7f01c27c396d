#include "tsql/conditions.h"

#include <algorithm>
#include <utility>

namespace ledgertree::tsql {
namespace {

using Kind = Expression::Kind;

void settle(ExpressionPtr& condition);

void settleOperands(ExpressionPtr& condition) {
  const bool decisive = condition->kind == Kind::Or;
  auto& operands = condition->operands;
  for (ExpressionPtr& operand : operands) settle(operand);
  for (ExpressionPtr& operand : operands) {
    if (operand->kind == Kind::Truth && operand->truth == decisive) {
      ExpressionPtr decided = std::move(operand);
      condition = std::move(decided);
      return;
    }
  }
  operands.erase(std::remove_if(operands.begin(), operands.end(),
                                [](const ExpressionPtr& operand) { return operand->kind == Kind::Truth; }),
                 operands.end());
  if (operands.empty()) {
    condition = makeExpression(Kind::Truth);
    condition->truth = !decisive;
  } else if (operands.size() == 1) {
    ExpressionPtr only = std::move(operands.front());
    condition = std::move(only);
  }
}

void settle(ExpressionPtr& condition) {
  if (condition->kind == Kind::And || condition->kind == Kind::Or) {
    settleOperands(condition);
  } else if (condition->kind == Kind::Not) {
    settle(condition->operands.front());
    if (condition->operands.front()->kind != Kind::Truth) return;
    ExpressionPtr inner = std::move(condition->operands.front());
    inner->truth = !inner->truth;
    condition = std::move(inner);
  }
}

}  // namespace

std::vector<ExpressionPtr*> conjuncts(ExpressionPtr& where) {
  std::vector<ExpressionPtr*> found;
  if (!where) return found;
  if (where->kind != Kind::And) return {&where};
  for (ExpressionPtr& operand : where->operands) found.push_back(&operand);
  return found;
}

ExpressionPtr both(ExpressionPtr left, ExpressionPtr right) {
  if (!left) return right;
  if (!right) return left;
  ExpressionPtr whole = makeExpression(Kind::And);
  whole->operands.push_back(std::move(left));
  whole->operands.push_back(std::move(right));
  return whole;
}

void settleWhere(ExpressionPtr& where) {
  if (!where) return;
  settle(where);
  if (where->kind == Kind::Truth && where->truth) where.reset();
  if (!where || where->kind != Kind::And) return;
  // Parenthesised conditions join those around them.
  std::vector<ExpressionPtr> flat;
  for (ExpressionPtr& operand : where->operands) {
    if (operand->kind != Kind::And) {
      flat.push_back(std::move(operand));
      continue;
    }
    for (ExpressionPtr& inner : operand->operands) flat.push_back(std::move(inner));
  }
  where->operands = std::move(flat);
}

}  // namespace ledgertree::tsql
