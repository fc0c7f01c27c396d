#pragma once

#include <cstdint>
#include <string_view>

#include "data/packet.h"

namespace ledgertree::data {

class DtEn;

/// The operations that a user needs a right for, by the numbers under which the database keeps the rights.
/// What isn't here is free for everybody who has the chart on the screen.
enum class Permission : std::int32_t {
  ShowChart = 301,
  NewAccount = 30101,
  EditAccount = 30102,
  DeleteAccount = 30103,
  RecodeAccounts = 30105,
  DeleteInBatch = 30108,
  PeriodsOfAccount = 30110,
  CopyPeriod = 30111,
  HidePeriod = 30112,
};

/// What a person without the right is told, whatever the operation.
inline constexpr std::string_view kNotPermitted = "شما به انجام اين عمليات مجاز نيستيد.";
/// The title above it.
[[nodiscard]] std::string_view refusalTitle(Permission permission);

/// Asks the database, anew each time. A failure of the question goes to the caller, so that an operation
/// never runs on an answer that there wasn't.
[[nodiscard]] bool isPermitted(DtEn& data, std::int32_t userID, Permission permission);
/// What that asks, for who knows beforehand that it will.
[[nodiscard]] Command permissionQuestion(std::int32_t userID, Permission permission);

}  // namespace ledgertree::data
