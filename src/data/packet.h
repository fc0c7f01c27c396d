#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "data/rows.h"
#include "data/value.h"

namespace ledgertree::data {

struct Procedure;

/// The most commands in one packet.
inline constexpr std::size_t kMostTogether = 100;

/// One command of a packet: a statement, or a call of a procedure whose parameters are all integers.
struct Command {
  std::string statement = {};            ///< in SQL Server's dialect; empty for a procedure call
  const Procedure* procedure = nullptr;  ///< outlives the command
  std::vector<Value> values = {};        ///< the procedure's arguments

  bool operator==(const Command&) const = default;
};

/// The result of one command.
struct Answer {
  std::optional<Rows> rows;  ///< of a statement that returns rows
  std::int32_t result = 0;   ///< of a procedure
};

/// The results of a packet, up to the first failure.
struct Answers {
  std::vector<Answer> ran;     ///< of the commands that ran, in order
  std::exception_ptr failure;  ///< of the command after them; null if all of them ran
};

}  // namespace ledgertree::data
