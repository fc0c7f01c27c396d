#include "engines/sqlite/writer.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "engines/sqlite/persian_order.h"
#include "engines/sqlite/sum.h"
#include "text/characters.h"

namespace ledgertree::engines::sqlite {

using tsql::Expression;
using tsql::ExpressionPtr;
using tsql::Item;
using tsql::OrderTerm;
using tsql::Select;
using tsql::SelectCore;
using tsql::Source;
using tsql::Statement;
using tsql::ValueType;
namespace {

using Kind = Expression::Kind;

class Writer {
 public:
  Translation write(const Statement& statement);

 private:
  void insert(const Statement& statement);
  void update(const Statement& statement);
  void select(const Select& select, bool outermost);
  void core(const SelectCore& core, bool outermost);
  void item(const Item& item, bool outermost);
  void source(const Source& source);
  void order(const Select& select);
  void where(const ExpressionPtr& where);

  void expression(const Expression& expression);
  /// The only operand of an expression, or its first, between two texts.
  void operand(std::string_view ahead, const Expression& whole, std::string_view behind);
  void column(const Expression& expression);
  void joined(const Expression& expression, std::string_view sign);
  void arithmetic(const Expression& expression);
  void call(const Expression& expression);
  void compare(const Expression& expression);
  void compareText(const Expression& side, std::string_view sign, const Expression& text);
  void number(const Expression& side, const Expression& other);
  void between(const Expression& expression);
  void inList(const Expression& expression);
  void compared(const Expression& bound);
  void nested(const Select& inner);
  void literal(const Expression& expression, bool trimmed);

  void name(std::string_view name);
  template <typename Things, typename Write>
  void list(const Things& things, Write write) {
    bool first = true;
    for (const auto& thing : things) {
      if (!first) sql() += ", ";
      first = false;
      write(thing);
    }
  }
  std::string& sql() { return result_.sql; }

  Translation result_;
  /// The parameter for each literal, and for each literal trimmed; 0 where there is none yet.
  std::vector<std::size_t> numbers_;
};

Translation Writer::write(const Statement& statement) {
  switch (statement.kind) {
    case Statement::Kind::Select:
      select(*statement.select, true);
      break;
    case Statement::Kind::Insert:
      insert(statement);
      break;
    case Statement::Kind::Update:
      update(statement);
      break;
    case Statement::Kind::Delete:
      sql() += "DELETE FROM ";
      name(statement.table);
      where(statement.where);
      break;
  }
  return std::move(result_);
}

void Writer::insert(const Statement& statement) {
  sql() += "INSERT INTO ";
  name(statement.table);
  if (!statement.columns.empty()) {
    sql() += " (";
    list(statement.columns, [this](const std::string& column) { name(column); });
    sql() += ")";
  }
  if (statement.select) {
    sql() += " ";
    select(*statement.select, false);
    return;
  }
  sql() += " VALUES ";
  list(statement.values, [this](const std::vector<ExpressionPtr>& row) {
    sql() += "(";
    list(row, [this](const ExpressionPtr& value) { expression(*value); });
    sql() += ")";
  });
}

void Writer::update(const Statement& statement) {
  sql() += "UPDATE ";
  name(statement.table);
  sql() += " SET ";
  for (std::size_t place = 0; place < statement.columns.size(); ++place) {
    if (place != 0) sql() += ", ";
    name(statement.columns[place]);
    sql() += " = ";
    expression(*statement.values.front()[place]);
  }
  where(statement.where);
}

void Writer::select(const Select& select, bool outermost) {
  for (std::size_t place = 0; place < select.cores.size(); ++place) {
    if (place != 0) sql() += select.keepsRepeats[place - 1] ? " UNION ALL " : " UNION ";
    core(select.cores[place], outermost && place == 0);
  }
  order(select);
  const SelectCore& only = select.cores.front();
  if (only.top) sql().append(" LIMIT ").append(*only.top);
  if (only.gate) {
    // True is 1, and a limit below 0 is none: no row at all, or all of them.
    sql() += " LIMIT -(";
    expression(*only.gate);
    sql() += ")";
  }
}

void Writer::core(const SelectCore& core, bool outermost) {
  sql() += "SELECT ";
  list(core.items, [this, outermost](const Item& one) { item(one, outermost); });
  if (!core.sources.empty()) {
    sql() += " FROM ";
    for (std::size_t place = 0; place < core.sources.size(); ++place) {
      const bool inner = core.sources[place].on != nullptr;
      if (place != 0) sql() += inner ? " INNER JOIN " : ", ";
      source(core.sources[place]);
    }
  }
  where(core.where);
}

void Writer::item(const Item& item, bool outermost) {
  expression(*item.value);
  if (!item.alias.empty()) {
    sql() += " AS ";
    name(item.alias);
  } else if (outermost && item.value->kind != Kind::All) {
    // SQLite would name a column by its text; a value without a name has none on SQL Server.
    sql() += " AS ";
    name(item.value->kind == Kind::Column ? item.value->name : std::string_view());
  }
}

void Writer::source(const Source& source) {
  name(source.table);
  if (!source.alias.empty()) {
    sql() += " AS ";
    name(source.alias);
  }
  if (!source.on) return;
  sql() += " ON ";
  expression(*source.on);
}

/// Whether a comparison by this value needs to be told that letter case doesn't count: the columns of tables
/// know by themselves, what is made of them doesn't.
bool isMadeText(const Expression& value) {
  return value.type == ValueType::Unknown || (value.type == ValueType::Text && value.kind != Kind::Column);
}

/// What an order by this value means: it may name one of the values that are selected.
const Expression& ordered(const Expression& value, const Select& select) {
  const auto& items = select.cores.front().items;
  const auto named = std::find_if(items.begin(), items.end(), [&value](const Item& item) {
    return text::equalsIgnoringCase(item.alias, value.name);
  });
  const bool isName = value.kind == Kind::Column && value.qualifier.empty();
  return isName && named != items.end() ? *named->value : value;
}

/// Whether a value is a code or made of one. It keeps the order of its characters, in which codes that begin
/// alike stand together and an index has them; every other text is taken for a name.
bool isCode(const Expression& value) {
  if (value.select) return isCode(*value.select->cores.front().items.front().value);
  const bool isColumn = value.kind == Kind::Column && text::equalsIgnoringCase(value.name, "Code");
  return isColumn || std::any_of(value.operands.begin(), value.operands.end(),
                                 [](const ExpressionPtr& operand) { return isCode(*operand); });
}

/// How an order compares a value; empty for as it is stored.
std::string_view collationOf(const Expression& value) {
  if (value.type == ValueType::Number) return {};
  if (!isCode(value)) return kPersianOrder;
  return isMadeText(value) ? "NOCASE" : std::string_view();
}

void Writer::order(const Select& select) {
  if (select.order.empty()) return;
  sql() += " ORDER BY ";
  list(select.order, [this, &select](const OrderTerm& term) {
    expression(*term.value);
    const std::string_view collation = collationOf(ordered(*term.value, select));
    if (!collation.empty()) sql().append(" COLLATE ").append(collation);
    if (term.descending) sql() += " DESC";
  });
}

void Writer::where(const ExpressionPtr& where) {
  if (!where) return;
  sql() += " WHERE ";
  expression(*where);
}

void Writer::expression(const Expression& expression) {
  switch (expression.kind) {
    case Kind::Column:
    case Kind::All:
      return column(expression);
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
      // The blank keeps a literal's own sign from beginning a comment.
      return operand("(- ", expression, ")");
    case Kind::ScalarSelect:
      return nested(*expression.select);
    case Kind::Truth:
      sql() += expression.truth ? "1" : "0";
      return;
    case Kind::Compare:
      return compare(expression);
    case Kind::IsNull:
      return operand("", expression, expression.negated ? " IS NOT NULL" : " IS NULL");
    case Kind::Between:
      return between(expression);
    case Kind::InList:
      return inList(expression);
    case Kind::InSelect:
      operand("", expression, expression.negated ? " NOT IN " : " IN ");
      return nested(*expression.select);
    case Kind::Exists:
      sql() += "EXISTS ";
      return nested(*expression.select);
    case Kind::Not:
      return operand("NOT (", expression, ")");
    case Kind::And:
      return joined(expression, " AND ");
    case Kind::Or:
      return joined(expression, " OR ");
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

void Writer::joined(const Expression& expression, std::string_view sign) {
  sql() += "(";
  for (std::size_t place = 0; place < expression.operands.size(); ++place) {
    if (place != 0) sql() += sign;
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
  sql() += undecided ? "," : expression.type == ValueType::Text ? "||" : expression.sign;
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
  if (right.kind == Kind::Text) return compareText(left, expression.sign, right);
  if (left.kind == Kind::Text) {
    // 'a' < x is x > 'a'.
    std::string mirrored(expression.sign);
    if (mirrored != "<>") {
      std::replace_if(
          mirrored.begin(), mirrored.end(), [](char c) { return c == '<' || c == '>'; },
          mirrored.front() == '<' ? '>' : '<');
    }
    return compareText(right, mirrored, left);
  }
  number(left, right);
  sql() += " ";
  sql() += expression.sign;
  sql() += " ";
  number(right, left);
  if (isMadeText(left) && isMadeText(right)) sql() += " COLLATE NOCASE";
}

/// A side of a comparison with a number: text is read as one.
void Writer::number(const Expression& side, const Expression& other) {
  const bool reads = other.kind == Kind::Number && side.type != ValueType::Number;
  if (reads) sql() += "CAST(";
  expression(side);
  if (reads) sql() += " AS NUMERIC)";
}

/// Blanks at the end of the column don't count either. The range ahead of the exact test is what an index
/// serves: '!' is the character behind the blank.
void Writer::compareText(const Expression& side, std::string_view sign, const Expression& text) {
  sql() += "(";
  if (side.kind == Kind::Column && !text.pinned && sign != "<>") {
    if (sign.front() != '<') {
      expression(side);
      sql() += sign == ">" ? " COLLATE NOCASE > " : " COLLATE NOCASE >= ";
      literal(text, true);
      sql() += " AND ";
    }
    if (sign.front() != '>') {
      expression(side);
      sql() += " COLLATE NOCASE < ";
      literal(text, true);
      sql() += sign == "<" ? " AND " : " || '!' AND ";
    }
  }
  sql() += "rtrim(";
  expression(side);
  sql() += ") ";
  sql() += sign;
  sql() += " ";
  literal(text, true);
  sql() += " COLLATE NOCASE)";
}

void Writer::between(const Expression& expression) {
  const bool text = expression.operands[1]->kind == Kind::Text || expression.operands[2]->kind == Kind::Text;
  sql() += text ? "(rtrim(" : "(";
  this->expression(*expression.operands[0]);
  if (text) sql() += ") COLLATE NOCASE";
  sql() += expression.negated ? " NOT BETWEEN " : " BETWEEN ";
  compared(*expression.operands[1]);
  sql() += " AND ";
  compared(*expression.operands[2]);
  sql() += ")";
}

void Writer::inList(const Expression& expression) {
  const bool text = std::any_of(expression.operands.begin() + 1, expression.operands.end(),
                                [](const ExpressionPtr& operand) { return operand->kind == Kind::Text; });
  if (text) sql() += "rtrim(";
  this->expression(*expression.operands.front());
  if (text) sql() += ") COLLATE NOCASE";
  sql() += expression.negated ? " NOT IN (" : " IN (";
  for (std::size_t place = 1; place < expression.operands.size(); ++place) {
    if (place != 1) sql() += ", ";
    compared(*expression.operands[place]);
  }
  sql() += ")";
}

void Writer::compared(const Expression& bound) {
  if (bound.kind == Kind::Text) {
    literal(bound, true);
  } else {
    expression(bound);
  }
}

void Writer::nested(const Select& inner) {
  sql() += "(";
  select(inner, false);
  sql() += ")";
}

void Writer::literal(const Expression& expression, bool trimmed) {
  if (expression.pinned) {
    if (expression.negated) sql() += "-";
    sql() += expression.name;
    return;
  }
  const std::size_t place = 2 * expression.literal + (trimmed ? 1 : 0);
  if (numbers_.size() <= place) numbers_.resize(place + 1);
  if (numbers_[place] == 0) {
    result_.bindings.push_back({expression.literal, expression.negated, trimmed});
    numbers_[place] = result_.bindings.size();
  }
  sql() += '?';
  sql() += std::to_string(numbers_[place]);
}

void Writer::name(std::string_view name) {
  sql() += '"';
  for (const char letter : name) {
    sql() += letter;
    if (letter == '"') sql() += '"';
  }
  sql() += '"';
}

}  // namespace

Translation writeStatement(const Statement& statement) { return Writer().write(statement); }

}  // namespace ledgertree::engines::sqlite
