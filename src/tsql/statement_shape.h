#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tsql/tokens.h"

namespace ledgertree::tsql {

/// The form of a statement without its literals, found in one pass over the text: statements of one shape
/// mean the same for each outcome of their decisions (see decisions.h).
class StatementShape {
 public:
  /// Throws data::DataError(Statement) as Tokens does. The statement has to outlive the literals.
  void read(std::string_view statement);

  [[nodiscard]] std::string_view key() const { return key_; }
  [[nodiscard]] const std::vector<Literal>& literals() const { return literals_; }

 private:
  std::string key_;
  std::vector<Literal> literals_;
};

}  // namespace ledgertree::tsql
