#pragma once

#include <filesystem>

namespace ledgertree::shell {

/// The folder of the library that contains this code, so that files installed next to it are found wherever
/// the package is. Empty if unknown.
[[nodiscard]] std::filesystem::path ownFolder();

}  // namespace ledgertree::shell
