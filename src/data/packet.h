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

/// The most commands that one packet carries.
inline constexpr std::size_t kMostTogether = 100;

/// One command of a packet: a statement, or the call of a procedure whose parameters are all whole numbers.
struct Command {
  std::string statement = {};            ///< in the dialect of SQL Server; empty where a procedure is called
  const Procedure* procedure = nullptr;  ///< outlives the command
  std::vector<Value> values = {};        ///< of the procedure's parameters

  bool operator==(const Command&) const = default;
};

/// What a command of a packet gave.
struct Answer {
  std::optional<Rows> rows;  ///< of a statement that gives rows
  std::int32_t result = 0;   ///< of a procedure
};

/// What a packet gave: its commands up to the first failure.
struct Answers {
  std::vector<Answer> ran;     ///< of the commands that ran, in their order
  std::exception_ptr failure;  ///< of the command behind them; null where all of them ran
};

}  // namespace ledgertree::data
