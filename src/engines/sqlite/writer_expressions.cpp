#include <algorithm>

#include "engines/sqlite/sum.h"
#include "engines/sqlite/writer.h"

namespace ledgertree::engines::sqlite {

using tsql::Expression;
using tsql::ExpressionPtr;
using tsql::ValueType;
using Kind = Expression::Kind;

bool isMadeText(const Expression& value) {
  return value.type == ValueType::Unknown || (value.type == ValueType::Text && value.kind != Kind::Column);
}

void Writer::expression(const Expression& expression) {
  if (expression.isCondition()) return condition(expression);
  switch (expression.kind) {
    case Kind::Null:
      sql() += "NULL";
      return;
    case Kind::Number:
    case Kind::Text:
      return literal(expression, false);
    case Kind::Call:
      return call(expression);
    case Kind::Arithmetic:
      return arithmetic(expression);
    case Kind::Negative:
      // The blank prevents a comment if a negative literal follows.
      return operand("(- ", expression, ")");
    case Kind::ScalarSelect:
      return nested(*expression.select);
    default:
      return column(expression);
  }
}

void Writer::condition(const Expression& condition) {
  switch (condition.kind) {
    case Kind::Compare:
      return compare(condition);
    case Kind::IsNull:
      return operand("", condition, condition.negated ? " IS NOT NULL" : " IS NULL");
    case Kind::Between:
      return between(condition);
    case Kind::InList:
      return inList(condition);
    case Kind::InSelect:
      return inSelect(condition);
    case Kind::Exists:
      sql() += "EXISTS ";
      return nested(*condition.select);
    case Kind::Not:
      return operand("NOT (", condition, ")");
    case Kind::And:
      return joined(condition, " AND ");
    case Kind::Or:
      return joined(condition, " OR ");
    default:
      sql() += condition.truth ? "1" : "0";
  }
}

void Writer::operand(std::string_view ahead, const Expression& whole, std::string_view behind) {
  sql() += ahead;
  expression(*whole.operands.front());
  sql() += behind;
}

void Writer::column(const Expression& expression) {
  if (!expression.qualifier.empty()) {
    name(expression.qualifier);
    sql() += ".";
  }
  if (expression.kind == Kind::All) {
    sql() += "*";
  } else {
    name(expression.name);
  }
}

void Writer::joined(const Expression& expression, std::string_view op) {
  sql() += "(";
  for (std::size_t place = 0; place < expression.operands.size(); ++place) {
    if (place != 0) sql() += op;
    this->expression(*expression.operands[place]);
  }
  sql() += ")";
}

void Writer::arithmetic(const Expression& expression) {
  const bool undecided = expression.type == ValueType::Unknown;
  if (undecided) sql() += kSumFunction;
  sql() += "(";
  this->expression(*expression.operands[0]);
  sql() += " ";
  sql() += undecided ? "," : expression.type == ValueType::Text ? "||" : expression.op;
  sql() += " ";
  this->expression(*expression.operands[1]);
  sql() += ")";
}

void Writer::call(const Expression& expression) {
  const Expression& first = *expression.operands.front();
  const bool left = expression.name == "left";
  if (!left && expression.name != "right") {
    sql() += expression.name == "isnull" ? "ifnull" : expression.name;
    sql() += "(";
    list(expression.operands, [this](const ExpressionPtr& operand) { this->expression(*operand); });
    sql() += ")";
    return;
  }
  // substr(x, -0) would be the whole text.
  const std::string& count = expression.operands.back()->name;
  sql() += "substr(";
  this->expression(first);
  sql() += left || count == "0" ? ", 1, " : ", -";
  sql() += count;
  sql() += ")";
}

void Writer::compare(const Expression& expression) {
  const Expression& left = *expression.operands[0];
  const Expression& right = *expression.operands[1];
  if (right.kind == Kind::Text) return compareText(left, expression.op, right);
  if (left.kind == Kind::Text) {
    // 'a' < x is x > 'a'.
    std::string mirrored(expression.op);
    if (mirrored != "<>") {
      std::replace_if(
          mirrored.begin(), mirrored.end(), [](char c) { return c == '<' || c == '>'; },
          mirrored.front() == '<' ? '>' : '<');
    }
    return compareText(right, mirrored, left);
  }
  number(left, right);
  sql() += " ";
  sql() += expression.op;
  sql() += " ";
  number(right, left);
  if (isMadeText(left) && isMadeText(right)) sql() += " COLLATE NOCASE";
}

/// A side of a numeric comparison: text is converted to a number.
void Writer::number(const Expression& side, const Expression& other) {
  const bool reads = other.kind == Kind::Number && side.type != ValueType::Number;
  if (reads) sql() += "CAST(";
  expression(side);
  if (reads) sql() += " AS NUMERIC)";
}

/// Trailing blanks in the column don't count either. The range before the exact test is for the index: '!' is
/// the character after the blank.
void Writer::compareText(const Expression& side, std::string_view op, const Expression& text) {
  sql() += "(";
  if (side.kind == Kind::Column && !text.pinned && op != "<>") {
    if (op.front() != '<') {
      expression(side);
      sql() += op == ">" ? " COLLATE NOCASE > " : " COLLATE NOCASE >= ";
      literal(text, true);
      sql() += " AND ";
    }
    if (op.front() != '>') {
      expression(side);
      sql() += " COLLATE NOCASE < ";
      literal(text, true);
      sql() += op == "<" ? " AND " : " || '!' AND ";
    }
  }
  sql() += "rtrim(";
  expression(side);
  sql() += ") ";
  sql() += op;
  sql() += " ";
  literal(text, true);
  sql() += " COLLATE NOCASE)";
}

/// A value that is compared with others, which are texts if `texts`.
void Writer::comparing(const Expression& value, bool texts) {
  if (texts) sql() += "rtrim(";
  expression(value);
  if (texts) sql() += ")";
  if (texts || isMadeText(value)) sql() += " COLLATE NOCASE";
}

void Writer::between(const Expression& expression) {
  const bool text = expression.operands[1]->kind == Kind::Text || expression.operands[2]->kind == Kind::Text;
  sql() += "(";
  comparing(*expression.operands[0], text);
  sql() += expression.negated ? " NOT BETWEEN " : " BETWEEN ";
  compared(*expression.operands[1]);
  sql() += " AND ";
  compared(*expression.operands[2]);
  sql() += ")";
}

void Writer::inList(const Expression& expression) {
  const bool text = std::any_of(expression.operands.begin() + 1, expression.operands.end(),
                                [](const ExpressionPtr& operand) { return operand->kind == Kind::Text; });
  comparing(*expression.operands.front(), text);
  sql() += expression.negated ? " NOT IN (" : " IN (";
  for (std::size_t place = 1; place < expression.operands.size(); ++place) {
    if (place != 1) sql() += ", ";
    compared(*expression.operands[place]);
  }
  sql() += ")";
}

void Writer::inSelect(const Expression& expression) {
  const Expression& member = *expression.operands.front();
  this->expression(member);
  const auto& items = expression.select->cores.front().items;
  if (isMadeText(member) && isMadeText(*items.front().value)) sql() += " COLLATE NOCASE";
  sql() += expression.negated ? " NOT IN " : " IN ";
  nested(*expression.select);
}

void Writer::compared(const Expression& bound) {
  if (bound.kind == Kind::Text) {
    literal(bound, true);
  } else {
    expression(bound);
  }
}

}  // namespace ledgertree::engines::sqlite
