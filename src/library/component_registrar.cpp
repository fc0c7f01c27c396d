#include "component_registrar.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "ledgertree/component_folder.h"
#include "shell/components/component_plugins.h"
#include "shell/components/own_folder.h"
#include "shell/components/plugin_library.h"

namespace ledgertree {

namespace {

using RefusalListener = std::function<void(const std::string& file, const std::string& reason)>;

std::unique_ptr<shell::ComponentPlugins>& registrar() {
  static std::unique_ptr<shell::ComponentPlugins> plugins;
  return plugins;
}

RefusalListener& refusalListener() {
  static RefusalListener listener;
  return listener;
}

shell::ComponentPlugins& required() {
  if (!registrar()) throw std::logic_error("install a desktop before registering components");
  return *registrar();
}

std::filesystem::path absoluteFolder(const std::string& folder) {
  std::filesystem::path path(std::u8string(folder.begin(), folder.end()));
  if (!path.is_absolute()) throw std::invalid_argument("the folder of components must be an absolute path");
  return path;
}

void tellRefusal(shell::Shell& shell, const shell::RefusedPlugin& refused) {
  const std::u8string name = refused.file.u8string();
  const std::string file(name.begin(), name.end());
  shell.showErrorNotice(shell::kTitleProblem, "افزونه «" + file + "» بارگذاري نشد، زيرا " + refused.reason +
                                                  ". مدير سيستم را آگاه نماييد.");
  // A copy: the host may set another listener while this one runs.
  if (const RefusalListener listener = refusalListener()) listener(file, refused.reason);
}

}  // namespace

void installComponentRegistrar(shell::Shell& shell) {
  registrar() = std::make_unique<shell::ComponentPlugins>(shell.components, shell::pluginLibraries());
  if (const std::filesystem::path own = shell::ownFolder(); !own.empty())
    registrar()->setInstalledFolder(own / "ledgertree" / "components");
  registrar()->onRefused([&shell](const shell::RefusedPlugin& refused) { tellRefusal(shell, refused); });
  shell.components.setRegistrar([](std::string_view commandLine) { registrar()->carryOut(commandLine); });
}

void useComponentFolder(const std::string& folder) { required().setInstalledFolder(absoluteFolder(folder)); }

void trustComponentsBelow(const std::string& folder) { required().trustBelow(absoluteFolder(folder)); }

void onComponentRefused(RefusalListener listener) {
  static_cast<void>(required());
  refusalListener() = std::move(listener);
}

}  // namespace ledgertree
