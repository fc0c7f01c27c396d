#pragma once

#include <string_view>
#include <vector>

#include "tsql/decisions.h"
#include "tsql/syntax.h"
#include "tsql/tokens.h"

namespace ledgertree::tsql {

struct ParsedStatement {
  Statement statement;
  std::vector<Literal> literals;  ///< in text order; views of the text
  std::vector<Decision> decisions;
};

/// Parses one statement. Throws data::DataError(Statement) naming the word that it doesn't understand: for
/// several statements in one text, for nesting deeper than any screen's, and for every part of the language
/// that no statement of the system uses.
[[nodiscard]] ParsedStatement parseStatement(std::string_view text);

}  // namespace ledgertree::tsql
