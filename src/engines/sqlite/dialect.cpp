#include "engines/sqlite/dialect.h"

#include <utility>

#include "engines/sqlite/rewrites.h"
#include "engines/sqlite/writer.h"

namespace ledgertree::engines::sqlite {

Translation translate(std::string_view statement, Tables& tables, Form form) {
  tsql::ParsedStatement parsed = tsql::parseStatement(statement);
  tsql::tellTypes(parsed.statement, tables);
  if (form == Form::Fast) rewriteForLookUps(parsed.statement, tables);
  Translation translation = Writer().write(parsed.statement);
  translation.decisions = std::move(parsed.decisions);
  return translation;
}

}  // namespace ledgertree::engines::sqlite
