#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/tokens.h"

namespace ledgertree::tsql {

/// The shape of a statement without its literals, found in one pass over the text: statements of one shape
/// mean the same for each outcome of their decisions (see decisions.h).
///
/// A walk runs the same query for one number after another. So a statement that differs from one of the last
/// few only in its last number is just compared with that one.
class StatementShape {
 public:
  /// Throws data::DataError(Statement) as Tokens does. The literals are valid
  /// until the next call, and as long as the statement.
  void read(std::string_view statement);

  [[nodiscard]] std::string_view key() const { return recent_[current_].key; }
  [[nodiscard]] const std::vector<Literal>& literals() const { return recent_[current_].literals; }

 private:
  struct Recent {
    std::string statement;
    std::string key;
    std::vector<Literal> literals;  ///< views of `statement`, except for the last number
    std::size_t numberBegin = 0;    ///< the position of the last literal, if it is a whole number
    std::size_t numberEnd = 0;      ///< 0: it isn't one

    void read(std::string_view text);
    /// Takes over the number of a statement that only differs in it; false for any other.
    [[nodiscard]] bool takeNumber(std::string_view text);
  };
  std::array<Recent, 4> recent_;
  std::size_t current_ = 0;
  std::size_t oldest_ = 0;
};

}  // namespace ledgertree::tsql
