#pragma once

#include <cstdlib>
#include <string_view>

namespace ledgertree::testing {

/// How much of a random work a run does: what the environment says under `name`, or one of these two.
inline int amountOfWork(const char* name, int everyDay, int inALongRun) {
  if (const char* const text = std::getenv(name)) return std::atoi(text);
  const char* const isLong = std::getenv("LEDGERTREE_LONG");
  return isLong != nullptr && isLong == std::string_view("1") ? inALongRun : everyDay;
}

}  // namespace ledgertree::testing
