#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "data/value.h"

namespace ledgertree::components {

/// What the chart tells every component: who works, and on which database. A component uses nothing else.
struct Given {
  std::int32_t UserID = 0;
  std::int32_t PositionID = 0;
  std::int32_t EmployeeID = 0;
  std::string OLEConnectionString;

  /// False for a name that isn't one of these. Throws where the value doesn't fit the member.
  [[nodiscard]] bool set(std::string_view member, const data::Value& value);
};

/// The engines that a component can reach. A component works on the database of the chart that calls it, so
/// none of them makes a database file: one that isn't there fails the first use of its connection.
[[nodiscard]] data::Providers engines();

}  // namespace ledgertree::components
