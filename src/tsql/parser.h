#pragma once

#include <string_view>
#include <vector>

#include "tsql/decisions.h"
#include "tsql/syntax.h"
#include "tsql/tokens.h"

namespace ledgertree::tsql {

struct ParsedStatement {
  Statement statement;
  std::vector<Literal> literals;  ///< in the order of the text, which they are views of
  std::vector<Decision> decisions;
};

/// Reads one statement. Throws data::DataError(Statement) that names the word which it doesn't understand;
/// that is one for several statements in one text, for a nesting deeper than any screen's, and for every part
/// of the language that no statement of the system uses.
[[nodiscard]] ParsedStatement parseStatement(std::string_view text);

}  // namespace ledgertree::tsql
