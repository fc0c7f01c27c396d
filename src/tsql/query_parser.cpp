#include "tsql/query_parser.h"

#include <algorithm>
#include <utility>

#include "text/characters.h"

namespace ledgertree::tsql {
namespace {

using Kind = Expression::Kind;

constexpr int kDeepestNesting = 32;
constexpr int kMostOperators = 100;

constexpr std::string_view kComparisons[] = {"=", "<>", "!=", "<=", ">=", "<", ">"};
constexpr std::string_view kSums[] = {"+", "-"};
constexpr std::string_view kProducts[] = {"*", "/", "%"};

struct Function {
  std::string_view name;
  std::size_t operands;
};
constexpr Function kFunctions[] = {{"isnull", 2}, {"left", 2}, {"right", 2}, {"count", 1},
                                   {"max", 1},    {"min", 1},  {"sum", 1}};

}  // namespace

/// Counts the nesting during its lifetime, and refuses to exceed the limit.
class QueryParser::Deeper {
 public:
  explicit Deeper(QueryParser& parser) : parser_(parser) {
    if (++parser_.depth_ > kDeepestNesting) {
      refuse(parser_.reader_.statement(), parser_.reader_.peek().begin, "nested too deeply");
    }
  }
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;
  ~Deeper() { --parser_.depth_; }

 private:
  QueryParser& parser_;
};

std::unique_ptr<Select> QueryParser::select() {
  const Deeper deeper(*this);
  const std::size_t begin = reader_.peek().begin;
  auto select = std::make_unique<Select>();
  select->cores.push_back(selectCore());
  while (reader_.takeWord("union")) {
    select->keepsRepeats.push_back(reader_.takeWord("all"));
    select->cores.push_back(selectCore());
  }
  // It would limit one part of the union, which not every engine supports; no statement of the system does.
  const bool limited = std::any_of(select->cores.begin(), select->cores.end(),
                                   [](const SelectCore& core) { return core.top.has_value(); });
  if (limited && select->cores.size() > 1) refuse(reader_.statement(), begin, "\"top\" in a union");
  select->order = order();
  return select;
}

SelectCore QueryParser::selectCore() {
  SelectCore core;
  reader_.requireWord("select");
  if (reader_.takeWord("top")) {
    const Token count = reader_.peek();
    if (count.kind != Token::Kind::Literal || count.literal.kind != Literal::Kind::Integer)
      reader_.refuseAt(count);
    core.top = pin(reader_.literalIndex());
    reader_.take();
  }
  do core.items.push_back(item());
  while (reader_.takeSymbol(","));
  if (reader_.takeWord("from")) sources(core);
  core.where = where();
  return core;
}

Item QueryParser::item() {
  if (reader_.takeSymbol("*")) return {makeExpression(Kind::All), {}};
  const Token at = reader_.peek();
  Item item{sum(), {}};
  if (item.value->kind == Kind::All) return item;
  item.value = requireValue(std::move(item.value), at);
  const bool announced = reader_.takeWord("as");
  const Token& alias = reader_.peek();
  if (alias.kind == Token::Kind::Literal && alias.literal.kind == Literal::Kind::Text) {
    item.alias = alias.literal.plainText();
    if (item.alias.empty()) reader_.refuseAt(alias);
    pin(reader_.literalIndex());
    reader_.take();
  } else if (announced || reader_.atName()) {
    item.alias = reader_.name();
  }
  return item;
}

void QueryParser::sources(SelectCore& core) {
  core.sources.push_back(source());
  while (true) {
    if (reader_.takeSymbol(",")) {
      core.sources.push_back(source());
    } else if (reader_.atWord("inner") || reader_.atWord("join")) {
      reader_.takeWord("inner");
      reader_.requireWord("join");
      core.sources.push_back(source());
      reader_.requireWord("on");
      core.sources.back().on = condition();
    } else {
      return;
    }
  }
}

Source QueryParser::source() {
  Source source;
  source.table = reader_.tableName();
  if (reader_.takeWord("as") || reader_.atName()) source.alias = reader_.name();
  return source;
}

ExpressionPtr QueryParser::where() { return reader_.takeWord("where") ? condition() : nullptr; }

std::vector<OrderTerm> QueryParser::order() {
  std::vector<OrderTerm> terms;
  if (!reader_.takeWord("order")) return terms;
  reader_.requireWord("by");
  do {
    const Token& at = reader_.peek();
    OrderTerm term{value(), false};
    // A number would be a column index, and ordering by a constant text is meaningless.
    if (term.value->kind == Kind::Number || term.value->kind == Kind::Text) reader_.refuseAt(at);
    term.descending = reader_.takeWord("desc");
    if (!term.descending) reader_.takeWord("asc");
    terms.push_back(std::move(term));
  } while (reader_.takeSymbol(","));
  return terms;
}

ExpressionPtr QueryParser::condition() {
  const Token at = reader_.peek();
  return requireCondition(disjunction(), at);
}

ExpressionPtr QueryParser::disjunction() {
  const Token at = reader_.peek();
  ExpressionPtr first = conjunction();
  if (!reader_.atWord("or")) return first;
  ExpressionPtr all = makeExpression(Kind::Or);
  all->operands.push_back(requireCondition(std::move(first), at));
  while (reader_.takeWord("or")) {
    const Token next = reader_.peek();
    all->operands.push_back(requireCondition(conjunction(), next));
  }
  return all;
}

ExpressionPtr QueryParser::conjunction() {
  const Token at = reader_.peek();
  ExpressionPtr first = negation();
  if (!reader_.atWord("and")) return first;
  ExpressionPtr all = makeExpression(Kind::And);
  all->operands.push_back(requireCondition(std::move(first), at));
  while (reader_.takeWord("and")) {
    const Token next = reader_.peek();
    all->operands.push_back(requireCondition(negation(), next));
  }
  return all;
}

ExpressionPtr QueryParser::negation() {
  if (!reader_.takeWord("not")) return predicate();
  const Deeper deeper(*this);
  const Token at = reader_.peek();
  ExpressionPtr whole = makeExpression(Kind::Not);
  whole->operands.push_back(requireCondition(negation(), at));
  return whole;
}

ExpressionPtr QueryParser::predicate() {
  const Token at = reader_.peek();
  if (reader_.takeWord("exists")) {
    reader_.requireSymbol("(");
    ExpressionPtr whole = makeExpression(Kind::Exists);
    whole->select = select();
    reader_.requireSymbol(")");
    return whole;
  }
  ExpressionPtr left = sum();
  const bool negated = reader_.atWord("not") && (reader_.atWord("in", 1) || reader_.atWord("between", 1));
  if (reader_.atWord("like")) reader_.refuseHere();
  const bool compares = reader_.peek().kind == Token::Kind::Symbol &&
                        std::find(std::begin(kComparisons), std::end(kComparisons), reader_.peek().text) !=
                            std::end(kComparisons);
  if (!negated && !compares && !reader_.atWord("in") && !reader_.atWord("between") && !reader_.atWord("is"))
    return left;
  left = requireValue(std::move(left), at);
  if (compares) return comparison(std::move(left));
  if (negated) reader_.take();
  if (reader_.takeWord("in")) return membership(std::move(left), negated);
  if (reader_.takeWord("between")) return between(std::move(left), negated);
  reader_.requireWord("is");
  ExpressionPtr whole = makeExpression(Kind::IsNull);
  whole->negated = reader_.takeWord("not");
  reader_.requireWord("null");
  whole->operands.push_back(std::move(left));
  return whole;
}

ExpressionPtr QueryParser::comparison(ExpressionPtr left) {
  const std::string_view taken = *reader_.takeOneOf(kComparisons);
  const std::string_view op = taken == "!=" ? "<>" : taken;
  ExpressionPtr right = value();
  if (left->kind != Kind::Number || right->kind != Kind::Number || left->pinned || right->pinned) {
    return makeCompare(std::move(left), op, std::move(right));
  }
  const Decision decision{true, left->literal, left->negated, op, right->literal, right->negated};
  decisions_.push_back(decision);
  ExpressionPtr whole = makeExpression(Kind::Truth);
  whole->truth = holdsFor(decision, reader_.literals());
  return whole;
}

ExpressionPtr QueryParser::membership(ExpressionPtr left, bool negated) {
  reader_.requireSymbol("(");
  ExpressionPtr whole = makeExpression(reader_.atWord("select") ? Kind::InSelect : Kind::InList);
  whole->negated = negated;
  whole->operands.push_back(std::move(left));
  if (whole->kind == Kind::InSelect) {
    whole->select = select();
  } else {
    do whole->operands.push_back(value());
    while (reader_.takeSymbol(","));
  }
  reader_.requireSymbol(")");
  return whole;
}

ExpressionPtr QueryParser::between(ExpressionPtr left, bool negated) {
  ExpressionPtr whole = makeExpression(Kind::Between);
  whole->negated = negated;
  whole->operands.push_back(std::move(left));
  whole->operands.push_back(value());
  reader_.requireWord("and");
  whole->operands.push_back(value());
  return whole;
}

ExpressionPtr QueryParser::value() {
  const Token at = reader_.peek();
  return requireValue(sum(), at);
}

ExpressionPtr QueryParser::sum() {
  const Token at = reader_.peek();
  ExpressionPtr left = product();
  while (const auto op = reader_.takeOneOf(kSums)) {
    left = requireValue(std::move(left), at);
    const Token next = reader_.peek();
    left = arithmetic(std::move(left), *op, requireValue(product(), next));
  }
  return left;
}

ExpressionPtr QueryParser::product() {
  const Token at = reader_.peek();
  ExpressionPtr left = signedValue();
  while (const auto op = reader_.takeOneOf(kProducts)) {
    left = requireValue(std::move(left), at);
    const Token next = reader_.peek();
    left = arithmetic(std::move(left), *op, requireValue(signedValue(), next));
  }
  return left;
}

/// Long sums nest on their left without parentheses, so they are counted here.
ExpressionPtr QueryParser::arithmetic(ExpressionPtr left, std::string_view op, ExpressionPtr right) {
  if (++operators_ > kMostOperators)
    refuse(reader_.statement(), reader_.peek().begin, "too many arithmetic operators");
  ExpressionPtr whole = makeExpression(Kind::Arithmetic);
  whole->op = op;
  whole->operands.push_back(std::move(left));
  whole->operands.push_back(std::move(right));
  return whole;
}

ExpressionPtr QueryParser::signedValue() {
  while (reader_.takeSymbol("+")) continue;
  if (!reader_.takeSymbol("-")) return primary();
  const Deeper deeper(*this);
  const Token at = reader_.peek();
  ExpressionPtr operand = requireValue(signedValue(), at);
  if (operand->kind == Kind::Number && !operand->negated) {
    operand->negated = true;
    return operand;
  }
  ExpressionPtr whole = makeExpression(Kind::Negative);
  whole->operands.push_back(std::move(operand));
  return whole;
}

ExpressionPtr QueryParser::primary() {
  if (reader_.peek().kind == Token::Kind::Literal) return literalValue();
  if (reader_.atSymbol("(")) return parenthesis();
  if (reader_.takeWord("null")) return makeExpression(Kind::Null);
  return columnOrCall();
}

ExpressionPtr QueryParser::parenthesis() {
  const Deeper deeper(*this);
  reader_.requireSymbol("(");
  ExpressionPtr inner;
  if (reader_.atWord("select")) {
    inner = makeExpression(Kind::ScalarSelect);
    inner->select = select();
  } else {
    inner = disjunction();
  }
  reader_.requireSymbol(")");
  return inner;
}

ExpressionPtr QueryParser::literalValue() {
  const Token& token = reader_.peek();
  const std::size_t literal = reader_.literalIndex();
  ExpressionPtr found = makeExpression(token.literal.kind == Literal::Kind::Text ? Kind::Text : Kind::Number);
  found->literal = literal;
  found->pinned = callDepth_ != 0;
  if (found->pinned) found->name = pin(literal);
  reader_.take();
  return found;
}

ExpressionPtr QueryParser::columnOrCall() {
  if (reader_.peek().kind == Token::Kind::Word && reader_.atSymbol("(", 1)) {
    const Token word = reader_.take();
    return call(word);
  }
  std::string qualifier;
  std::string last = reader_.name();
  // A table's prefix is a schema, perhaps with a database: the system uses just one.
  for (int dots = 0; dots < 3 && reader_.takeSymbol("."); ++dots) {
    qualifier = std::move(last);
    if (reader_.takeSymbol("*")) {
      ExpressionPtr all = makeExpression(Kind::All);
      all->qualifier = std::move(qualifier);
      return all;
    }
    last = reader_.name();
  }
  return makeColumn(std::move(qualifier), std::move(last));
}

ExpressionPtr QueryParser::call(const Token& word) {
  const auto* function = std::find_if(
      std::begin(kFunctions), std::end(kFunctions),
      [&word](const Function& known) { return text::equalsIgnoringCase(known.name, word.text); });
  if (function == std::end(kFunctions)) reader_.refuseAt(word);
  ExpressionPtr whole = makeExpression(Kind::Call);
  whole->name = std::string(function->name);
  reader_.requireSymbol("(");
  const Deeper deeper(*this);
  ++callDepth_;
  if (function->name == "count" && reader_.takeSymbol("*")) {
    whole->operands.push_back(makeExpression(Kind::All));
  } else {
    do whole->operands.push_back(value());
    while (reader_.takeSymbol(","));
  }
  --callDepth_;
  reader_.requireSymbol(")");
  if (whole->operands.size() != function->operands) reader_.refuseAt(word);
  const bool cuts = function->name == "left" || function->name == "right";
  const Expression& last = *whole->operands.back();
  if (cuts && (last.kind != Kind::Number || last.negated)) reader_.refuseAt(word);
  return whole;
}

/// Keeps a literal in the text, and returns it as written.
std::string QueryParser::pin(std::size_t literal) {
  Decision decision;
  decision.literal = literal;
  decisions_.push_back(decision);
  const Literal& found = reader_.literals()[literal];
  if (found.kind == Literal::Kind::Text) return std::string("'").append(found.text).append("'");
  if (found.kind == Literal::Kind::Integer) return std::to_string(found.integer);
  return std::string(found.text);
}

ExpressionPtr QueryParser::requireValue(ExpressionPtr found, const Token& at) const {
  if (found->isCondition() || found->kind == Kind::All) reader_.refuseAt(at);
  return found;
}

ExpressionPtr QueryParser::requireCondition(ExpressionPtr found, const Token& at) const {
  if (!found->isCondition()) reader_.refuseAt(at);
  return found;
}

}  // namespace ledgertree::tsql
