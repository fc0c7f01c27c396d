#include "tsql/tokens.h"

#include <array>
#include <charconv>

#include "data/data_error.h"
#include "text/characters.h"

namespace ledgertree::tsql {
namespace {

enum class Class : std::uint8_t { Foreign, Blank, Letter, Digit, Symbol, Apostrophe, Bracket, DoubleQuote };

constexpr std::array<Class, 256> classes() {
  std::array<Class, 256> table{};
  for (const char blank : {' ', '\t', '\n', '\r'}) table[static_cast<unsigned char>(blank)] = Class::Blank;
  for (unsigned letter = 'a'; letter <= 'z'; ++letter)
    table[letter] = table[letter - 'a' + 'A'] = Class::Letter;
  for (unsigned byte = 0x80; byte <= 0xFF; ++byte) table[byte] = Class::Letter;
  table['_'] = table['$'] = Class::Letter;
  for (unsigned digit = '0'; digit <= '9'; ++digit) table[digit] = Class::Digit;
  for (const char symbol : std::string_view("()+-*/%=<>!,.;")) {
    table[static_cast<unsigned char>(symbol)] = Class::Symbol;
  }
  table['\''] = Class::Apostrophe;
  table['['] = Class::Bracket;
  table['"'] = Class::DoubleQuote;
  return table;
}

constexpr std::array<Class, 256> kClasses = classes();

Class classOf(char byte) { return kClasses[static_cast<unsigned char>(byte)]; }

bool continuesWord(char byte) {
  const Class found = classOf(byte);
  return found == Class::Letter || found == Class::Digit;
}

/// 128 characters of four bytes each.
constexpr std::size_t kLongestName = 512;

}  // namespace

std::string Literal::plainText() const {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t place = 0; place < text.size(); ++place) {
    plain += text[place];
    if (text[place] == '\'') ++place;
  }
  return plain;
}

Tokens::Tokens(std::string_view statement) : statement_(statement) {
  if (statement.size() > kMostBytes) refuse(statement.substr(0, 200), 0, "too long");
  unsigned char all = 0;
  bool nul = false;
  for (const char byte : statement) {
    all = static_cast<unsigned char>(all | static_cast<unsigned char>(byte));
    nul = nul || byte == '\0';
  }
  if (nul || (all >= 0x80 && !text::isCleanText(statement))) refuse(statement, 0, "not clean UTF-8 text");
}

Token Tokens::next() {
  while (place_ < statement_.size() && classOf(statement_[place_]) == Class::Blank) ++place_;
  if (place_ == statement_.size()) {
    Token end;
    end.begin = end.end = place_;
    return end;
  }
  switch (classOf(statement_[place_])) {
    case Class::Letter:
      return word();
    case Class::Digit:
      return number();
    case Class::Symbol:
      return symbol();
    case Class::Apostrophe:
      return text(place_);
    case Class::Bracket:
      return quotedName(']');
    case Class::DoubleQuote:
      return quotedName('"');
    case Class::Blank:
    case Class::Foreign:
      break;
  }
  refuse(statement_, place_, "an unknown character");
}

Token Tokens::word() {
  const std::size_t begin = place_;
  while (place_ < statement_.size() && continuesWord(statement_[place_])) ++place_;
  // N'...' is a Unicode text, as all texts are here.
  if (place_ - begin == 1 && place_ < statement_.size() && statement_[place_] == '\'' &&
      (statement_[begin] == 'N' || statement_[begin] == 'n')) {
    return text(begin);
  }
  if (place_ - begin > kLongestName) refuse(statement_, begin, "the name is too long");
  return {Token::Kind::Word, begin, place_, between(begin, place_), {}};
}

Token Tokens::number() {
  Token token{Token::Kind::Literal, place_, place_, {}, {}};
  const char* const last = statement_.data() + statement_.size();
  const auto whole = std::from_chars(statement_.data() + place_, last, token.literal.integer);
  bool fits = whole.ec == std::errc{};
  place_ = static_cast<std::size_t>(whole.ptr - statement_.data());
  const bool point = place_ + 1 < statement_.size() && statement_[place_] == '.' &&
                     classOf(statement_[place_ + 1]) == Class::Digit;
  if (point) {
    token.literal.kind = Literal::Kind::Decimal;
    const auto read = std::from_chars(statement_.data() + token.begin, last, token.literal.decimal,
                                      std::chars_format::fixed);
    fits = read.ec == std::errc{};
    place_ = static_cast<std::size_t>(read.ptr - statement_.data());
  }
  token.end = place_;
  token.text = token.literal.text = between(token.begin, place_);
  if (!fits) refuse(statement_, token.begin, "the number is out of range");
  if (place_ < statement_.size() && continuesWord(statement_[place_])) {
    refuse(statement_, token.begin, "letters after a number");
  }
  return token;
}

Token Tokens::text(std::size_t begin) {
  Token token{Token::Kind::Literal, begin, begin, {}, {}};
  token.literal.kind = Literal::Kind::Text;
  const std::size_t first = ++place_;
  while (true) {
    place_ = statement_.find('\'', place_);
    if (place_ == std::string_view::npos) refuse(statement_, begin, "a text without a closing apostrophe");
    if (place_ + 1 >= statement_.size() || statement_[place_ + 1] != '\'') break;
    token.literal.hasQuotes = true;
    place_ += 2;
  }
  token.literal.text = between(first, place_);
  token.end = ++place_;
  token.text = between(begin, place_);
  return token;
}

Token Tokens::quotedName(char closing) {
  const std::size_t begin = place_++;
  const std::size_t end = statement_.find(closing, place_);
  if (end == std::string_view::npos) refuse(statement_, begin, "a name without a closing bracket or quote");
  Token token{Token::Kind::QuotedName, begin, end + 1, between(place_, end), {}};
  place_ = end + 1;
  const bool doubled = place_ < statement_.size() && statement_[place_] == closing;
  if (doubled || token.text.empty() || token.text.size() > kLongestName) {
    refuse(statement_, begin, "not the name of a table or column");
  }
  return token;
}

Token Tokens::symbol() {
  const std::size_t begin = place_++;
  const std::string_view two = statement_.substr(begin, 2);
  if (two == "--" || two == "/*") refuse(statement_, begin, "a comment");
  if (two == "<>" || two == "<=" || two == ">=" || two == "!=") ++place_;
  return {Token::Kind::Symbol, begin, place_, between(begin, place_), {}};
}

void refuse(std::string_view statement, std::size_t place, const std::string& what) {
  const std::size_t character = text::characterCount(statement.substr(0, place)) + 1;
  const std::string where = " (" + what + " at character " + std::to_string(character) + ")";
  throw data::DataError(data::DataError::Reason::Statement, 0, data::kStatementRefused + where,
                        std::string(statement));
}

}  // namespace ledgertree::tsql
