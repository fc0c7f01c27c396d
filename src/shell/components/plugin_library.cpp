#include "shell/components/plugin_library.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace ledgertree::shell {

namespace {

constexpr const char* kEntry = "ledgertree_register_components";

#ifdef _WIN32

std::vector<std::string> fileNames(const std::string& plugin) { return {plugin + ".dll"}; }

RegisterComponents load(const std::filesystem::path& file) {
  // The plug-in's own folder serves for what it needs, and the current folder doesn't.
  HMODULE library = LoadLibraryExW(file.c_str(), nullptr,
                                   LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<RegisterComponents>(GetProcAddress(library, kEntry));
}

#else

std::vector<std::string> fileNames(const std::string& plugin) {
  return {"lib" + plugin + ".so", plugin + ".so"};
}

RegisterComponents load(const std::filesystem::path& file) {
  // Local: two plug-ins may each bring a version of what both are built on.
  void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<RegisterComponents>(dlsym(library, kEntry));
}

#endif

}  // namespace

ComponentPlugins::Platform pluginLibraries() { return {.fileNames = fileNames, .load = load}; }

}  // namespace ledgertree::shell
