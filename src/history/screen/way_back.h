#pragma once

#include <cstdint>

#include "shell/shell.h"

namespace ledgertree::history {

inline constexpr const char* kTitleTakeBack = "برگرداندن عمليات";

/// Asks the person, with what will happen, and takes an operation back; what stands in the way is told by
/// account, and a missing right as everywhere. True where it was taken back: what is on the screens is old
/// then, and the host has news. Throws data::DataError.
[[nodiscard]] bool takeBackAsked(shell::Shell& shell, std::int64_t operation);

}  // namespace ledgertree::history
