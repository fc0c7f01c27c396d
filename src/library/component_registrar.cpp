#include "component_registrar.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "ledgertree/component_folder.h"
#include "shell/components/component_plugins.h"
#include "shell/components/own_folder.h"
#include "shell/components/plugin_library.h"

namespace ledgertree {

namespace {

std::unique_ptr<shell::ComponentPlugins>& registrar() {
  static std::unique_ptr<shell::ComponentPlugins> plugins;
  return plugins;
}

}  // namespace

void installComponentRegistrar(shell::Shell& shell) {
  registrar() = std::make_unique<shell::ComponentPlugins>(shell.components, shell::pluginLibraries());
  if (const std::filesystem::path own = shell::ownFolder(); !own.empty())
    registrar()->setInstalledFolder(own / "ledgertree" / "components");
  shell.components.setRegistrar([](std::string_view commandLine) { registrar()->carryOut(commandLine); });
}

void useComponentFolder(const std::string& folder) {
  if (!registrar()) throw std::logic_error("install a desktop before the folder of the components is named");
  registrar()->setInstalledFolder(std::filesystem::path(std::u8string(folder.begin(), folder.end())));
}

}  // namespace ledgertree
