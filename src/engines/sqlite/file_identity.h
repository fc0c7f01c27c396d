#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ledgertree::engines::sqlite {

/// Which file stands under a path, whatever it is called.
struct FileIdentity {
  std::uint64_t volume = 0;
  std::uint64_t file = 0;

  bool operator==(const FileIdentity&) const = default;
};

/// Nothing where no file can be reached under the path. On a platform that keeps an open file from being
/// deleted or replaced it is always the same.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(const std::string& path);

}  // namespace ledgertree::engines::sqlite
