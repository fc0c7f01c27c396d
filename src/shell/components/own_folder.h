#pragma once

#include <filesystem>

namespace ledgertree::shell {

/// The folder of the library that this code was linked into, so that what is installed beside it is found
/// wherever the package was put. Empty where the system can't tell.
[[nodiscard]] std::filesystem::path ownFolder();

}  // namespace ledgertree::shell
