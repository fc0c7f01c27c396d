#include "shell/components/plugin_library.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <string_view>
#endif

namespace ledgertree::shell {

namespace {

constexpr const char* kEntry = "ledgertree_register_components";

std::string cannotTell(const std::filesystem::path& place) {
  return "اجازه هاي «" + place.string() + "» را نميتوان بررسي کرد";
}

#ifdef _WIN32

std::vector<std::string> fileNames(const std::string& plugin) { return {plugin + ".dll"}; }

RegisterComponents load(const std::filesystem::path& file) {
  // Searches dependencies in the plug-in's own folder, not in the current one.
  HMODULE library = LoadLibraryExW(file.c_str(), nullptr,
                                   LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<RegisterComponents>(reinterpret_cast<void*>(GetProcAddress(library, kEntry)));
}

/// Permissions aren't checked here: only what the host vouches for is loaded.
std::string distrust(const std::filesystem::path& file) { return cannotTell(file); }

#else

/// POSIX access lists show in the mode, whose group bits are the most that any entry grants. Those of network
/// file systems don't, and a Windows share has no mode of its own.
bool hasOtherRules(const std::filesystem::path& place) {
  constexpr std::array<std::uint32_t, 3> kShares = {0x517B, 0xFE534D42, 0xFF534D42};
  struct statfs system {};
  if (::statfs(place.c_str(), &system) != 0) return true;
  const auto kind = static_cast<std::uint32_t>(system.f_type);
  if (std::find(kShares.begin(), kShares.end(), kind) != kShares.end()) return true;
  std::array<char, 65536> names{};
  const ssize_t size = ::llistxattr(place.c_str(), names.data(), names.size());
  if (size < 0) return errno != ENOTSUP;
  std::string_view rest(names.data(), static_cast<std::size_t>(size));
  while (!rest.empty()) {
    const std::string_view name = rest.substr(0, rest.find('\0'));
    if (name.starts_with("system.") && !name.starts_with("system.posix_acl_")) return true;
    rest.remove_prefix(std::min(name.size() + 1, rest.size()));
  }
  return false;
}

/// From the root down, so that nothing already checked can be replaced by others meanwhile: that would need
/// write access to a folder that was found to be closed to them.
std::string distrust(const std::filesystem::path& file) {
  std::filesystem::path place;
  for (const std::filesystem::path& step : file) {
    place /= step;
    struct stat about {};
    const bool known = ::lstat(place.c_str(), &about) == 0 && !S_ISLNK(about.st_mode);
    if (!known || hasOtherRules(place)) return cannotTell(place);
    if (about.st_uid != 0 && about.st_uid != ::geteuid())
      return "«" + place.string() + "» از آن شما يا مدير سيستم نيست";
    if ((about.st_mode & (S_IWGRP | S_IWOTH)) != 0)
      return "ديگران اجازه نوشتن در «" + place.string() + "» را دارند";
  }
  return {};
}

std::vector<std::string> fileNames(const std::string& plugin) {
  return {"lib" + plugin + ".so", plugin + ".so"};
}

RegisterComponents load(const std::filesystem::path& file) {
  // Local: two plug-ins may each bring a version of a shared dependency.
  void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<RegisterComponents>(dlsym(library, kEntry));
}

#endif

}  // namespace

ComponentPlugins::Platform pluginLibraries() {
  return {.fileNames = fileNames, .distrust = distrust, .load = load};
}

}  // namespace ledgertree::shell
