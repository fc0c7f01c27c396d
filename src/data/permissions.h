#pragma once

#include <cstdint>
#include <string_view>

#include "data/packet.h"

namespace ledgertree::data {

class DtEn;

/// The operations that require a right, by the numbers under which the database stores the rights. Any other
/// operation is allowed to everybody who has the chart open.
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

/// What a user without the right is told, for any operation.
inline constexpr std::string_view kNotPermitted = "شما به انجام اين عمليات مجاز نيستيد.";
/// Its title.
[[nodiscard]] std::string_view refusalTitle(Permission permission);

/// Queries the database every time. A failure is thrown, so that
/// an operation never runs without a definite answer.
[[nodiscard]] bool isPermitted(DtEn& data, std::int32_t userID, Permission permission);
/// The command that isPermitted will run, for announcing it (see Ahead).
[[nodiscard]] Command permissionQuestion(std::int32_t userID, Permission permission);

}  // namespace ledgertree::data
