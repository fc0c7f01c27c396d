#include "tsql/decisions.h"

namespace ledgertree::tsql {
namespace {

bool holds(std::string_view sign, int order) {
  if (sign == "=") return order == 0;
  if (sign == "<>") return order != 0;
  if (sign == "<") return order < 0;
  if (sign == "<=") return order <= 0;
  if (sign == ">") return order > 0;
  return order >= 0;
}

int orderOf(const Literal& left, bool leftNegated, const Literal& right, bool rightNegated) {
  if (left.kind == Literal::Kind::Integer && right.kind == Literal::Kind::Integer) {
    const std::int64_t a = leftNegated ? -left.integer : left.integer;
    const std::int64_t b = rightNegated ? -right.integer : right.integer;
    return a < b ? -1 : a > b ? 1 : 0;
  }
  const auto real = [](const Literal& literal, bool negated) {
    const double value =
        literal.kind == Literal::Kind::Integer ? static_cast<double>(literal.integer) : literal.decimal;
    return negated ? -value : value;
  };
  const double a = real(left, leftNegated);
  const double b = real(right, rightNegated);
  return a < b ? -1 : a > b ? 1 : 0;
}

}  // namespace

bool holdsFor(const Decision& decision, const std::vector<Literal>& literals) {
  return holds(decision.sign, orderOf(literals[decision.literal], decision.negated, literals[decision.other],
                                      decision.otherNegated));
}

void appendOutcome(const std::vector<Decision>& decisions, const std::vector<Literal>& literals,
                   std::string& outcome) {
  for (const Decision& decision : decisions) {
    if (decision.folded) {
      outcome += holdsFor(decision, literals) ? 'T' : 'F';
      continue;
    }
    const Literal& literal = literals[decision.literal];
    if (literal.kind == Literal::Kind::Integer) {
      char digits[24];
      std::int64_t rest = literal.integer;
      std::size_t count = 0;
      do digits[count++] = static_cast<char>('0' + rest % 10);
      while ((rest /= 10) != 0);
      outcome.append(digits, count);
    } else {
      outcome += literal.text;
    }
    // Terminates a literal: no statement contains it.
    outcome += '\0';
  }
}

}  // namespace ledgertree::tsql
