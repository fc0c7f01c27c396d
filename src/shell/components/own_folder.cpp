#include "shell/components/own_folder.h"

#include <system_error>

#ifdef _WIN32
#include <windows.h>

#include <array>
#else
#include <dlfcn.h>
#endif

namespace ledgertree::shell {

namespace {

#ifdef _WIN32

std::filesystem::path ownFile() {
  HMODULE library = nullptr;
  if (!GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<LPCWSTR>(&ownFolder), &library))
    return {};
  constexpr DWORD kLongestPath = 32768;
  static std::array<wchar_t, kLongestPath> path;
  const DWORD length = GetModuleFileNameW(library, path.data(), kLongestPath);
  return std::filesystem::path(path.data(), path.data() + length);
}

#else

std::filesystem::path ownFile() {
  Dl_info library{};
  if (dladdr(reinterpret_cast<const void*>(&ownFolder), &library) == 0 || library.dli_fname == nullptr)
    return {};
  return library.dli_fname;
}

#endif

}  // namespace

std::filesystem::path ownFolder() {
  std::error_code failure;
  const std::filesystem::path file = std::filesystem::canonical(ownFile(), failure);
  return failure ? std::filesystem::path() : file.parent_path();
}

}  // namespace ledgertree::shell
