#include "tsql/statement_shape.h"

#include <charconv>

namespace ledgertree::tsql {

void StatementShape::read(std::string_view statement) {
  for (std::size_t place = 0; place < recent_.size(); ++place) {
    if (!recent_[place].takeNumber(statement)) continue;
    current_ = place;
    return;
  }
  current_ = oldest_;
  oldest_ = (oldest_ + 1) % recent_.size();
  recent_[current_].read(statement);
}

void StatementShape::Recent::read(std::string_view text) {
  // A statement refused halfway can't be compared with.
  numberEnd = 0;
  statement = text;
  key.clear();
  literals.clear();
  Tokens tokens(statement);
  std::size_t copied = 0;
  std::size_t begin = 0;
  for (Token token = tokens.next(); token.kind != Token::Kind::End; token = tokens.next()) {
    if (token.kind != Token::Kind::Literal) continue;
    key.append(statement, copied, token.begin - copied);
    // Control characters, which no statement contains outside its texts.
    key += static_cast<char>(1 + static_cast<int>(token.literal.kind));
    literals.push_back(token.literal);
    begin = token.begin;
    copied = token.end;
  }
  key.append(statement, copied);
  if (literals.empty() || literals.back().kind != Literal::Kind::Integer) return;
  numberBegin = begin;
  numberEnd = copied;
}

bool StatementShape::Recent::takeNumber(std::string_view text) {
  if (numberEnd == 0) return false;
  const std::string_view known(statement);
  const std::string_view tail = known.substr(numberEnd);
  if (text.size() <= numberBegin + tail.size() || !text.ends_with(tail) ||
      text.substr(0, numberBegin) != known.substr(0, numberBegin))
    return false;
  const std::string_view digits = text.substr(numberBegin, text.size() - tail.size() - numberBegin);
  if (digits.find_first_not_of("0123456789") != std::string_view::npos) return false;
  Literal& number = literals.back();
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number.integer);
  number.text = digits;
  return read.ec == std::errc{};
}

}  // namespace ledgertree::tsql
