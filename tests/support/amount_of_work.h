#pragma once

#include <cstdlib>
#include <string_view>

namespace ledgertree::testing {

/// How much random work a run does: the environment variable `name`, or one of these defaults.
inline int amountOfWork(const char* name, int everyDay, int inALongRun) {
  if (const char* const text = std::getenv(name)) return std::atoi(text);
  const char* const isLong = std::getenv("LEDGERTREE_LONG");
  return isLong != nullptr && isLong == std::string_view("1") ? inALongRun : everyDay;
}

}  // namespace ledgertree::testing
