#include "data/embedded/parser.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "data/characters.h"

namespace ledgertree::data::embedded {
namespace {

using Kind = Expression::Kind;

constexpr std::size_t kMostTokens = 20000;
constexpr int kDeepestNesting = 32;
constexpr int kMostSigns = 100;

/// The words that are no names unless they stand in brackets.
constexpr std::string_view kReserved[] = {
    "all",       "alter",  "and",    "as",    "asc",      "begin",  "between", "by",       "case",
    "close",     "commit", "create", "cross", "declare",  "delete", "desc",    "distinct", "drop",
    "else",      "end",    "except", "exec",  "execute",  "exists", "fetch",   "for",      "from",
    "full",      "go",     "grant",  "group", "having",   "if",     "in",      "inner",    "insert",
    "intersect", "into",   "is",     "join",  "left",     "like",   "merge",   "not",      "null",
    "on",        "open",   "or",     "order", "outer",    "print",  "return",  "revoke",   "right",
    "rollback",  "save",   "select", "set",   "shutdown", "then",   "top",     "truncate", "union",
    "update",    "use",    "values", "when",  "where",    "while",  "with",
};

constexpr std::string_view kComparisons[] = {"=", "<>", "!=", "<=", ">=", "<", ">"};
constexpr std::string_view kSums[] = {"+", "-"};
constexpr std::string_view kProducts[] = {"*", "/", "%"};

struct Function {
  std::string_view name;
  std::size_t operands;
};
constexpr Function kFunctions[] = {{"isnull", 2}, {"left", 2}, {"right", 2}, {"count", 1},
                                   {"max", 1},    {"min", 1},  {"sum", 1}};

bool isReserved(std::string_view word) {
  return std::any_of(std::begin(kReserved), std::end(kReserved),
                     [word](std::string_view reserved) { return equalsIgnoringCase(reserved, word); });
}

class Parser {
 public:
  explicit Parser(std::string_view text);
  ParsedStatement parse();

 private:
  // The statements.
  void parseInsert();
  void parseUpdate();
  void parseDelete();
  std::vector<ExpressionPtr> valueRow();
  std::unique_ptr<Select> selectStatement();
  SelectCore selectCore();
  Item item();
  void sources(SelectCore& core);
  Source source();
  ExpressionPtr optionalWhere();
  std::vector<OrderTerm> order();

  // The expressions, from the loosest sign to the tightest.
  ExpressionPtr condition();
  ExpressionPtr disjunction();
  ExpressionPtr conjunction();
  ExpressionPtr negation();
  ExpressionPtr predicate();
  ExpressionPtr comparison(ExpressionPtr left);
  ExpressionPtr membership(ExpressionPtr left, bool negated);
  ExpressionPtr between(ExpressionPtr left, bool negated);
  ExpressionPtr value();
  ExpressionPtr sum();
  ExpressionPtr product();
  ExpressionPtr arithmetic(ExpressionPtr left, std::string_view sign, ExpressionPtr right);
  ExpressionPtr signedValue();
  ExpressionPtr primary();
  ExpressionPtr parenthesis();
  ExpressionPtr literalValue();
  ExpressionPtr columnOrCall();
  ExpressionPtr call(const Token& word);

  // The tokens.
  const Token& peek(std::size_t ahead = 0) const {
    return tokens_[std::min(place_ + ahead, tokens_.size() - 1)];
  }
  Token take();
  bool atWord(std::string_view word, std::size_t ahead = 0) const;
  bool atSymbol(std::string_view symbol, std::size_t ahead = 0) const;
  bool takeWord(std::string_view word);
  bool takeSymbol(std::string_view symbol);
  void requireWord(std::string_view word);
  void requireSymbol(std::string_view symbol);
  template <std::size_t Count>
  std::optional<std::string_view> takeOneOf(const std::string_view (&symbols)[Count]);
  bool atName() const;
  std::string name();
  std::string tableName();
  std::string pin(std::size_t literal);
  ExpressionPtr requireValue(ExpressionPtr found, const Token& at) const;
  ExpressionPtr requireCondition(ExpressionPtr found, const Token& at) const;
  [[noreturn]] void refuseHere(const Token& at) const;

  /// Counts the nesting while it stands, and refuses one that is too deep.
  class Deeper {
   public:
    explicit Deeper(Parser& parser) : parser_(parser) {
      if (++parser_.depth_ > kDeepestNesting)
        refuse(parser_.text_, parser_.peek().begin, "nested too deeply");
    }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;
    ~Deeper() { --parser_.depth_; }

   private:
    Parser& parser_;
  };

  std::string_view text_;
  std::vector<Token> tokens_;
  std::vector<std::size_t> literalOf_;  ///< for each token its place among the literals
  std::size_t place_ = 0;
  int depth_ = 0;
  int callDepth_ = 0;
  int signs_ = 0;
  ParsedStatement result_;
};

Parser::Parser(std::string_view text) : text_(text) {
  Tokens source(text);
  do {
    if (tokens_.size() == kMostTokens) refuse(text, 0, "it has too many words");
    tokens_.push_back(source.next());
    literalOf_.push_back(result_.literals.size());
    if (tokens_.back().kind == Token::Kind::Literal) result_.literals.push_back(tokens_.back().literal);
  } while (tokens_.back().kind != Token::Kind::End);
}

ParsedStatement Parser::parse() {
  if (atWord("select")) {
    result_.statement.kind = Statement::Kind::Select;
    result_.statement.select = selectStatement();
  } else if (takeWord("insert")) {
    parseInsert();
  } else if (takeWord("update")) {
    parseUpdate();
  } else if (takeWord("delete")) {
    parseDelete();
  } else {
    refuseHere(peek());
  }
  takeSymbol(";");
  if (peek().kind != Token::Kind::End) refuseHere(peek());
  return std::move(result_);
}

void Parser::parseInsert() {
  Statement& statement = result_.statement;
  statement.kind = Statement::Kind::Insert;
  takeWord("into");
  statement.table = tableName();
  if (atSymbol("(") && !atWord("select", 1)) {
    requireSymbol("(");
    do statement.columns.push_back(name());
    while (takeSymbol(","));
    requireSymbol(")");
  }
  if (takeWord("values")) {
    do statement.values.push_back(valueRow());
    while (takeSymbol(","));
    return;
  }
  const bool parentheses = takeSymbol("(");
  statement.select = selectStatement();
  if (parentheses) requireSymbol(")");
}

std::vector<ExpressionPtr> Parser::valueRow() {
  std::vector<ExpressionPtr> row;
  requireSymbol("(");
  do row.push_back(value());
  while (takeSymbol(","));
  requireSymbol(")");
  return row;
}

void Parser::parseUpdate() {
  Statement& statement = result_.statement;
  statement.kind = Statement::Kind::Update;
  statement.table = tableName();
  requireWord("set");
  statement.values.emplace_back();
  do {
    statement.columns.push_back(name());
    requireSymbol("=");
    statement.values.front().push_back(value());
  } while (takeSymbol(","));
  statement.where = optionalWhere();
}

void Parser::parseDelete() {
  Statement& statement = result_.statement;
  statement.kind = Statement::Kind::Delete;
  takeWord("from");
  statement.table = tableName();
  statement.where = optionalWhere();
}

std::unique_ptr<Select> Parser::selectStatement() {
  const Deeper deeper(*this);
  auto select = std::make_unique<Select>();
  select->cores.push_back(selectCore());
  while (takeWord("union")) {
    select->keepsRepeats.push_back(takeWord("all"));
    select->cores.push_back(selectCore());
  }
  select->order = order();
  return select;
}

SelectCore Parser::selectCore() {
  SelectCore core;
  requireWord("select");
  if (takeWord("top")) {
    const Token count = peek();
    if (count.kind != Token::Kind::Literal || count.literal.kind != Literal::Kind::Integer) refuseHere(count);
    core.top = pin(literalOf_[place_]);
    take();
  }
  do core.items.push_back(item());
  while (takeSymbol(","));
  if (takeWord("from")) sources(core);
  core.where = optionalWhere();
  return core;
}

Item Parser::item() {
  if (takeSymbol("*")) return {makeExpression(Kind::All), {}};
  Item item{value(), {}};
  if (item.value->kind == Kind::All) return item;
  const bool announced = takeWord("as");
  const Token& alias = peek();
  if (alias.kind == Token::Kind::Literal && alias.literal.kind == Literal::Kind::Text) {
    item.alias = alias.literal.plainText();
    if (item.alias.empty()) refuseHere(alias);
    pin(literalOf_[place_]);
    take();
  } else if (announced || atName()) {
    item.alias = name();
  }
  return item;
}

void Parser::sources(SelectCore& core) {
  core.sources.push_back(source());
  while (true) {
    if (takeSymbol(",")) {
      core.sources.push_back(source());
    } else if (atWord("inner") || atWord("join")) {
      takeWord("inner");
      requireWord("join");
      core.sources.push_back(source());
      requireWord("on");
      core.sources.back().on = condition();
    } else {
      return;
    }
  }
}

Source Parser::source() {
  Source source;
  source.table = tableName();
  if (takeWord("as") || atName()) source.alias = name();
  return source;
}

ExpressionPtr Parser::optionalWhere() { return takeWord("where") ? condition() : nullptr; }

std::vector<OrderTerm> Parser::order() {
  std::vector<OrderTerm> terms;
  if (!takeWord("order")) return terms;
  requireWord("by");
  do {
    const Token& at = peek();
    OrderTerm term{value(), false};
    // A number would be the place of a column, and an order by text that is the same for all rows is none.
    if (term.value->kind == Kind::Number || term.value->kind == Kind::Text) refuseHere(at);
    term.descending = takeWord("desc");
    if (!term.descending) takeWord("asc");
    terms.push_back(std::move(term));
  } while (takeSymbol(","));
  return terms;
}

ExpressionPtr Parser::condition() {
  const Token at = peek();
  return requireCondition(disjunction(), at);
}

ExpressionPtr Parser::disjunction() {
  const Token at = peek();
  ExpressionPtr first = conjunction();
  if (!atWord("or")) return first;
  ExpressionPtr all = makeExpression(Kind::Or);
  all->operands.push_back(requireCondition(std::move(first), at));
  while (takeWord("or")) {
    const Token next = peek();
    all->operands.push_back(requireCondition(conjunction(), next));
  }
  return all;
}

ExpressionPtr Parser::conjunction() {
  const Token at = peek();
  ExpressionPtr first = negation();
  if (!atWord("and")) return first;
  ExpressionPtr all = makeExpression(Kind::And);
  all->operands.push_back(requireCondition(std::move(first), at));
  while (takeWord("and")) {
    const Token next = peek();
    all->operands.push_back(requireCondition(negation(), next));
  }
  return all;
}

ExpressionPtr Parser::negation() {
  if (!takeWord("not")) return predicate();
  const Deeper deeper(*this);
  const Token at = peek();
  ExpressionPtr whole = makeExpression(Kind::Not);
  whole->operands.push_back(requireCondition(negation(), at));
  return whole;
}

ExpressionPtr Parser::predicate() {
  const Token at = peek();
  if (takeWord("exists")) {
    requireSymbol("(");
    ExpressionPtr whole = makeExpression(Kind::Exists);
    whole->select = selectStatement();
    requireSymbol(")");
    return whole;
  }
  ExpressionPtr left = sum();
  const bool negated = atWord("not") && (atWord("in", 1) || atWord("between", 1));
  if (atWord("like")) refuseHere(peek());
  const bool compares =
      peek().kind == Token::Kind::Symbol &&
      std::find(std::begin(kComparisons), std::end(kComparisons), peek().text) != std::end(kComparisons);
  if (!negated && !compares && !atWord("in") && !atWord("between") && !atWord("is")) return left;
  left = requireValue(std::move(left), at);
  if (compares) return comparison(std::move(left));
  if (negated) take();
  if (takeWord("in")) return membership(std::move(left), negated);
  if (takeWord("between")) return between(std::move(left), negated);
  requireWord("is");
  ExpressionPtr whole = makeExpression(Kind::IsNull);
  whole->negated = takeWord("not");
  requireWord("null");
  whole->operands.push_back(std::move(left));
  return whole;
}

bool holds(std::string_view sign, int order) {
  if (sign == "=") return order == 0;
  if (sign == "<>" || sign == "!=") return order != 0;
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

bool outcome(const Decision& decision, const std::vector<Literal>& literals) {
  return holds(decision.sign, orderOf(literals[decision.literal], decision.negated, literals[decision.other],
                                      decision.otherNegated));
}

ExpressionPtr Parser::comparison(ExpressionPtr left) {
  const std::string_view sign = *takeOneOf(kComparisons);
  ExpressionPtr right = value();
  if (left->kind != Kind::Number || right->kind != Kind::Number || left->pinned || right->pinned) {
    return makeCompare(std::move(left), sign, std::move(right));
  }
  const Decision decision{true, left->literal, left->negated, sign, right->literal, right->negated};
  result_.decisions.push_back(decision);
  ExpressionPtr whole = makeExpression(Kind::Truth);
  whole->truth = outcome(decision, result_.literals);
  return whole;
}

ExpressionPtr Parser::membership(ExpressionPtr left, bool negated) {
  requireSymbol("(");
  ExpressionPtr whole = makeExpression(atWord("select") ? Kind::InSelect : Kind::InList);
  whole->negated = negated;
  whole->operands.push_back(std::move(left));
  if (whole->kind == Kind::InSelect) {
    whole->select = selectStatement();
  } else {
    do whole->operands.push_back(value());
    while (takeSymbol(","));
  }
  requireSymbol(")");
  return whole;
}

ExpressionPtr Parser::between(ExpressionPtr left, bool negated) {
  ExpressionPtr whole = makeExpression(Kind::Between);
  whole->negated = negated;
  whole->operands.push_back(std::move(left));
  whole->operands.push_back(value());
  requireWord("and");
  whole->operands.push_back(value());
  return whole;
}

ExpressionPtr Parser::value() {
  const Token at = peek();
  return requireValue(sum(), at);
}

ExpressionPtr Parser::sum() {
  const Token at = peek();
  ExpressionPtr left = product();
  while (const auto sign = takeOneOf(kSums)) {
    left = requireValue(std::move(left), at);
    const Token next = peek();
    left = arithmetic(std::move(left), *sign, requireValue(product(), next));
  }
  return left;
}

ExpressionPtr Parser::product() {
  const Token at = peek();
  ExpressionPtr left = signedValue();
  while (const auto sign = takeOneOf(kProducts)) {
    left = requireValue(std::move(left), at);
    const Token next = peek();
    left = arithmetic(std::move(left), *sign, requireValue(signedValue(), next));
  }
  return left;
}

/// Long sums nest on their left, where no parenthesis counts them.
ExpressionPtr Parser::arithmetic(ExpressionPtr left, std::string_view sign, ExpressionPtr right) {
  if (++signs_ > kMostSigns) refuse(text_, peek().begin, "it reckons too much");
  ExpressionPtr whole = makeExpression(Kind::Arithmetic);
  whole->sign = sign;
  whole->operands.push_back(std::move(left));
  whole->operands.push_back(std::move(right));
  return whole;
}

ExpressionPtr Parser::signedValue() {
  while (takeSymbol("+")) continue;
  if (!takeSymbol("-")) return primary();
  const Deeper deeper(*this);
  const Token at = peek();
  ExpressionPtr operand = requireValue(signedValue(), at);
  if (operand->kind == Kind::Number && !operand->negated) {
    operand->negated = true;
    return operand;
  }
  ExpressionPtr whole = makeExpression(Kind::Negative);
  whole->operands.push_back(std::move(operand));
  return whole;
}

ExpressionPtr Parser::primary() {
  if (peek().kind == Token::Kind::Literal) return literalValue();
  if (atSymbol("(")) return parenthesis();
  if (takeWord("null")) return makeExpression(Kind::Null);
  return columnOrCall();
}

ExpressionPtr Parser::parenthesis() {
  const Deeper deeper(*this);
  requireSymbol("(");
  ExpressionPtr inner;
  if (atWord("select")) {
    inner = makeExpression(Kind::ScalarSelect);
    inner->select = selectStatement();
  } else {
    inner = disjunction();
  }
  requireSymbol(")");
  return inner;
}

ExpressionPtr Parser::literalValue() {
  const Token& token = peek();
  const std::size_t literal = literalOf_[place_];
  ExpressionPtr found = makeExpression(token.literal.kind == Literal::Kind::Text ? Kind::Text : Kind::Number);
  found->literal = literal;
  found->pinned = callDepth_ != 0;
  if (found->pinned) found->name = pin(literal);
  take();
  return found;
}

ExpressionPtr Parser::columnOrCall() {
  if (peek().kind == Token::Kind::Word && atSymbol("(", 1)) {
    const Token word = take();
    return call(word);
  }
  std::string qualifier;
  std::string last = name();
  // What stands ahead of a table is a schema, which a file of SQLite hasn't.
  for (int dots = 0; dots < 2 && takeSymbol("."); ++dots) {
    qualifier = std::move(last);
    if (takeSymbol("*")) {
      ExpressionPtr all = makeExpression(Kind::All);
      all->qualifier = std::move(qualifier);
      return all;
    }
    last = name();
  }
  return makeColumn(std::move(qualifier), std::move(last));
}

ExpressionPtr Parser::call(const Token& word) {
  const auto* function =
      std::find_if(std::begin(kFunctions), std::end(kFunctions),
                   [&word](const Function& known) { return equalsIgnoringCase(known.name, word.text); });
  if (function == std::end(kFunctions)) refuseHere(word);
  ExpressionPtr whole = makeExpression(Kind::Call);
  whole->name = std::string(function->name);
  requireSymbol("(");
  const Deeper deeper(*this);
  ++callDepth_;
  if (function->name == "count" && takeSymbol("*")) {
    whole->operands.push_back(makeExpression(Kind::All));
  } else {
    do whole->operands.push_back(value());
    while (takeSymbol(","));
  }
  --callDepth_;
  requireSymbol(")");
  if (whole->operands.size() != function->operands) refuseHere(word);
  const bool cuts = function->name == "left" || function->name == "right";
  const Expression& last = *whole->operands.back();
  if (cuts && (last.kind != Kind::Number || last.negated)) refuseHere(word);
  return whole;
}

Token Parser::take() {
  Token token = peek();
  if (token.kind != Token::Kind::End) ++place_;
  return token;
}

bool Parser::atWord(std::string_view word, std::size_t ahead) const {
  return peek(ahead).kind == Token::Kind::Word && equalsIgnoringCase(peek(ahead).text, word);
}

bool Parser::atSymbol(std::string_view symbol, std::size_t ahead) const {
  return peek(ahead).kind == Token::Kind::Symbol && peek(ahead).text == symbol;
}

bool Parser::takeWord(std::string_view word) {
  if (!atWord(word)) return false;
  ++place_;
  return true;
}

bool Parser::takeSymbol(std::string_view symbol) {
  if (!atSymbol(symbol)) return false;
  ++place_;
  return true;
}

void Parser::requireWord(std::string_view word) {
  if (!takeWord(word)) refuseHere(peek());
}

void Parser::requireSymbol(std::string_view symbol) {
  if (!takeSymbol(symbol)) refuseHere(peek());
}

template <std::size_t Count>
std::optional<std::string_view> Parser::takeOneOf(const std::string_view (&symbols)[Count]) {
  for (const std::string_view symbol : symbols) {
    if (takeSymbol(symbol)) return symbol;
  }
  return std::nullopt;
}

bool Parser::atName() const {
  const Token& token = peek();
  return token.kind == Token::Kind::QuotedName ||
         (token.kind == Token::Kind::Word && !isReserved(token.text));
}

std::string Parser::name() {
  if (!atName()) refuseHere(peek());
  return std::string(take().text);
}

std::string Parser::tableName() {
  std::string last = name();
  if (takeSymbol(".")) last = name();
  return last;
}

/// Keeps a literal in the text, and gives it as SQLite reads it.
std::string Parser::pin(std::size_t literal) {
  Decision decision;
  decision.literal = literal;
  result_.decisions.push_back(decision);
  const Literal& found = result_.literals[literal];
  if (found.kind == Literal::Kind::Text) return std::string("'").append(found.text).append("'");
  if (found.kind == Literal::Kind::Integer) return std::to_string(found.integer);
  return std::string(found.text);
}

ExpressionPtr Parser::requireValue(ExpressionPtr found, const Token& at) const {
  if (found->isCondition()) refuseHere(at);
  return found;
}

ExpressionPtr Parser::requireCondition(ExpressionPtr found, const Token& at) const {
  if (!found->isCondition()) refuseHere(at);
  return found;
}

void Parser::refuseHere(const Token& at) const {
  if (at.kind == Token::Kind::End) refuse(text_, at.begin, "it ends too early");
  std::string word(text_.substr(at.begin, at.end - at.begin));
  if (word.size() > 60) word = std::string(leftCharacters(word, 30)) + "...";
  refuse(text_, at.begin, "\"" + word + "\" isn't understood");
}

}  // namespace

void appendOutcome(const std::vector<Decision>& decisions, const std::vector<Literal>& literals,
                   std::string& result) {
  for (const Decision& decision : decisions) {
    if (decision.folded) {
      result += outcome(decision, literals) ? 'T' : 'F';
      continue;
    }
    const Literal& literal = literals[decision.literal];
    if (literal.kind == Literal::Kind::Integer) {
      char digits[24];
      std::int64_t rest = literal.integer;
      std::size_t count = 0;
      do digits[count++] = static_cast<char>('0' + rest % 10);
      while ((rest /= 10) != 0);
      result.append(digits, count);
    } else {
      result += literal.text;
    }
    // Ends a literal, since no statement holds it.
    result += '\0';
  }
}

ParsedStatement parseStatement(std::string_view text) { return Parser(text).parse(); }

}  // namespace ledgertree::data::embedded
