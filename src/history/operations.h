#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "history/history.h"

// Whole operations in the memory of the chart. Every function throws data::DataError.
namespace ledgertree::history {

/// An operation, and how much it changed.
struct OperationKept {
  data::OperationKind kind = data::OperationKind::Other;
  std::optional<std::int32_t> userID = {};  ///< nothing: another program, nobody knows who
  data::DateTime moment = {};               ///< of its first change, UTC
  std::int64_t accounts = 0;
  std::int64_t changes = 0;  ///< rows of any table
};

/// Nothing where the memory has no such operation.
[[nodiscard]] std::optional<OperationKept> operationKept(data::DtEn& data, std::int64_t operation);

/// The number of the newest operation; 0 where there is none, or no memory.
[[nodiscard]] std::int64_t newestOperation(data::DtEn& data);

/// Who has changed anything, by their numbers.
[[nodiscard]] std::vector<std::int32_t> usersOfMemory(data::DtEn& data);

/// An account whose own row, or whose entity, an operation has changed.
struct Touched {
  std::int32_t accountID;
  Event event;
};
/// In the order in which they were changed; an account may stand there more than once.
[[nodiscard]] std::vector<Touched> touchedBy(data::DtEn& data, std::int64_t operation);

}  // namespace ledgertree::history
