#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/tokens.h"

namespace ledgertree::tsql {

/// The form of a statement without its literals, found in one pass over the text: statements of one shape
/// mean the same for each outcome of their decisions (see decisions.h).
///
/// A walk asks the same for one number after the other. So a statement that is one of the last few but for
/// the last number in it is only compared with that one.
class StatementShape {
 public:
  /// Throws data::DataError(Statement) as Tokens does. The literals stand until the next call, as long as
  /// the statement does.
  void read(std::string_view statement);

  [[nodiscard]] std::string_view key() const { return recent_[current_].key; }
  [[nodiscard]] const std::vector<Literal>& literals() const { return recent_[current_].literals; }

 private:
  struct Recent {
    std::string statement;
    std::string key;
    std::vector<Literal> literals;  ///< views of `statement`, but for the last number
    std::size_t numberBegin = 0;    ///< where the last literal stands, if it is a whole number
    std::size_t numberEnd = 0;      ///< 0: it isn't

    void read(std::string_view text);
    /// Takes the number of a statement that is the same but for that; false for any other.
    [[nodiscard]] bool takeNumber(std::string_view text);
  };
  std::array<Recent, 4> recent_;
  std::size_t current_ = 0;
  std::size_t oldest_ = 0;
};

}  // namespace ledgertree::tsql
