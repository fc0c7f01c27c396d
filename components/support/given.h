#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "data/value.h"

namespace ledgertree::components {

/// What the chart passes to every component: the user and the database. Nothing else is used.
struct Given {
  std::int32_t UserID = 0;
  std::int32_t PositionID = 0;
  std::int32_t EmployeeID = 0;
  std::string OLEConnectionString;

  /// False for an unknown member. Throws if the value doesn't fit the member.
  [[nodiscard]] bool set(std::string_view member, const data::Value& value);
};

/// The engines available to a component. It works on the calling chart's database, so none of them creates a
/// database file: a missing one fails the connection's first use.
[[nodiscard]] data::Providers engines();

}  // namespace ledgertree::components
