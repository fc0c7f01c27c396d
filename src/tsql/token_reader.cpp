#include "tsql/token_reader.h"

#include "text/characters.h"

namespace ledgertree::tsql {
namespace {

constexpr std::size_t kMostTokens = 20000;

/// Reserved words: they are names only in brackets.
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

bool isReserved(std::string_view word) {
  return std::any_of(std::begin(kReserved), std::end(kReserved),
                     [word](std::string_view reserved) { return text::equalsIgnoringCase(reserved, word); });
}

}  // namespace

TokenReader::TokenReader(std::string_view statement) : statement_(statement) {
  Tokens source(statement);
  do {
    if (tokens_.size() == kMostTokens) refuse(statement, 0, "too many words");
    tokens_.push_back(source.next());
    literalIndices_.push_back(literals_.size());
    if (tokens_.back().kind == Token::Kind::Literal) literals_.push_back(tokens_.back().literal);
  } while (tokens_.back().kind != Token::Kind::End);
}

Token TokenReader::take() {
  Token token = peek();
  if (token.kind != Token::Kind::End) ++place_;
  return token;
}

bool TokenReader::atWord(std::string_view word, std::size_t ahead) const {
  return peek(ahead).kind == Token::Kind::Word && text::equalsIgnoringCase(peek(ahead).text, word);
}

bool TokenReader::atSymbol(std::string_view symbol, std::size_t ahead) const {
  return peek(ahead).kind == Token::Kind::Symbol && peek(ahead).text == symbol;
}

bool TokenReader::takeWord(std::string_view word) {
  if (!atWord(word)) return false;
  ++place_;
  return true;
}

bool TokenReader::takeSymbol(std::string_view symbol) {
  if (!atSymbol(symbol)) return false;
  ++place_;
  return true;
}

void TokenReader::requireWord(std::string_view word) {
  if (!takeWord(word)) refuseHere();
}

void TokenReader::requireSymbol(std::string_view symbol) {
  if (!takeSymbol(symbol)) refuseHere();
}

bool TokenReader::atName() const {
  const Token& token = peek();
  return token.kind == Token::Kind::QuotedName ||
         (token.kind == Token::Kind::Word && !isReserved(token.text));
}

std::string TokenReader::name() {
  if (!atName()) refuseHere();
  return std::string(take().text);
}

std::string TokenReader::tableName() {
  std::string last = name();
  for (int dots = 0; dots < 2 && takeSymbol("."); ++dots) last = name();
  return last;
}

void TokenReader::refuseAt(const Token& at) const {
  if (at.kind == Token::Kind::End) refuse(statement_, at.begin, "it ends too early");
  std::string word(statement_.substr(at.begin, at.end - at.begin));
  if (word.size() > 60) word = std::string(text::leftCharacters(word, 30)) + "...";
  refuse(statement_, at.begin, "\"" + word + "\" isn't understood");
}

}  // namespace ledgertree::tsql
