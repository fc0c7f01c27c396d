#pragma once

#include <string>

#include "ledgertree/export.h"

namespace ledgertree {

/// Creates a new embedded database with a demo chart: accounts on five levels, four fiscal periods,
/// documents, and three users (1 with all rights, 2 without the right to change, 3 without the right to see
/// the chart). Throws std::runtime_error if the file exists already or can't be written.
LEDGERTREE_API void createDemoChart(const std::string& file);

}  // namespace ledgertree
