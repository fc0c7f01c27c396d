#include "tsql/decisions.h"

#include <array>
#include <charconv>

namespace ledgertree::tsql {
namespace {

bool holds(std::string_view op, int order) {
  if (op == "=") return order == 0;
  if (op == "<>") return order != 0;
  if (op == "<") return order < 0;
  if (op == "<=") return order <= 0;
  if (op == ">") return order > 0;
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
  return holds(decision.op, orderOf(literals[decision.literal], decision.negated, literals[decision.other],
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
      std::array<char, 20> digits{};
      const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), literal.integer);
      outcome.append(digits.data(), written.ptr);
    } else {
      outcome += literal.text;
    }
    // Terminates a literal: no statement contains it.
    outcome += '\0';
  }
}

}  // namespace ledgertree::tsql
