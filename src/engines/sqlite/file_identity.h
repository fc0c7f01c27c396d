#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ledgertree::engines::sqlite {

/// Identifies the file at a path, whatever it is called.
struct FileIdentity {
  std::uint64_t volume = 0;
  std::uint64_t file = 0;

  bool operator==(const FileIdentity&) const = default;
};

/// Nothing if no file can be reached at the path. Constant on platforms that
/// prevent an open file from being deleted or replaced.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(const std::string& path);

}  // namespace ledgertree::engines::sqlite
