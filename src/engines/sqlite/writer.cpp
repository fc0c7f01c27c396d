#include "engines/sqlite/writer.h"

#include <algorithm>
#include <utility>

#include "engines/sqlite/persian_order.h"
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

/// The value that an ORDER BY value refers to: it may name one of the selected values.
const Expression& ordered(const Expression& value, const Select& select) {
  const auto& items = select.cores.front().items;
  const auto named = std::find_if(items.begin(), items.end(), [&value](const Item& item) {
    return text::equalsIgnoringCase(item.alias, value.name);
  });
  const bool isName = value.kind == Kind::Column && value.qualifier.empty();
  return isName && named != items.end() ? *named->value : value;
}

/// Whether a value is a code or made from one. Codes are sorted by characters, so that equal beginnings are
/// adjacent and an index serves; every other text is taken for a name.
bool isCode(const Expression& value) {
  if (value.select) return isCode(*value.select->cores.front().items.front().value);
  const bool isColumn = value.kind == Kind::Column && text::equalsIgnoringCase(value.name, "Code");
  return isColumn || std::any_of(value.operands.begin(), value.operands.end(),
                                 [](const ExpressionPtr& operand) { return isCode(*operand); });
}

/// The collation for sorting by a value; empty for none.
std::string_view collationOf(const Expression& value) {
  if (value.type == ValueType::Number) return {};
  if (!isCode(value)) return kPersianOrder;
  return isMadeText(value) ? "NOCASE" : std::string_view();
}

}  // namespace

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
    // True is 1, and a negative limit is none: no row at all, or all of them.
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
    // SQLite would name an unnamed column by its expression; SQL Server leaves it unnamed.
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

}  // namespace ledgertree::engines::sqlite
