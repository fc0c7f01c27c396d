#include "tsql/statement_shape.h"

namespace ledgertree::tsql {

void StatementShape::read(std::string_view statement) {
  key_.clear();
  literals_.clear();
  Tokens tokens(statement);
  std::size_t copied = 0;
  for (Token token = tokens.next(); token.kind != Token::Kind::End; token = tokens.next()) {
    if (token.kind != Token::Kind::Literal) continue;
    key_.append(statement, copied, token.begin - copied);
    // Control characters, which no statement holds outside its texts.
    key_ += static_cast<char>(1 + static_cast<int>(token.literal.kind));
    literals_.push_back(token.literal);
    copied = token.end;
  }
  key_.append(statement, copied);
}

}  // namespace ledgertree::tsql
