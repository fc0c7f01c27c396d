#include "engines/sqlite/dialect.h"

#include <utility>

#include "engines/sqlite/rewrites.h"
#include "engines/sqlite/writer.h"

namespace ledgertree::engines::sqlite {

Translation translate(std::string_view statement) {
  tsql::ParsedStatement parsed = tsql::parseStatement(statement);
  rewriteForLookUps(parsed.statement);
  Translation translation = writeStatement(parsed.statement);
  translation.decisions = std::move(parsed.decisions);
  return translation;
}

void StatementShape::read(std::string_view statement) {
  key_.clear();
  literals_.clear();
  tsql::Tokens tokens(statement);
  std::size_t copied = 0;
  for (tsql::Token token = tokens.next(); token.kind != tsql::Token::Kind::End; token = tokens.next()) {
    if (token.kind != tsql::Token::Kind::Literal) continue;
    key_.append(statement, copied, token.begin - copied);
    // Control characters, which no statement holds outside its texts.
    key_ += static_cast<char>(1 + static_cast<int>(token.literal.kind));
    literals_.push_back(token.literal);
    copied = token.end;
  }
  key_.append(statement, copied);
}

}  // namespace ledgertree::engines::sqlite
