#include "engines/sqlite/file_identity.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace ledgertree::engines::sqlite {

std::optional<FileIdentity> fileIdentity(const std::string& path) {
#ifdef _WIN32
  static_cast<void>(path);
  return FileIdentity{};
#else
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
#endif
}

}  // namespace ledgertree::engines::sqlite
