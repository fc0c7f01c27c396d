#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/components/plugin_component.h"
#include "shell/outside_components.h"

namespace ledgertree::shell {

/// What a registration command line asks for.
struct Registration {
  std::filesystem::path system;  ///< the folder "System", relative where the base path is empty
  std::string plugin;            ///< "SheetKit" for the file SheetKit.ocx
  bool operator==(const Registration&) const = default;
};

/// Reads `Regsvr32  "<base path>System\<plug-in>.ocx" /s`; blanks may be more or fewer, and "/" separates as
/// "\" does. Nothing for any other text: another program or switch, a file that doesn't stand right below
/// "System" or isn't a plain name of letters, digits and "_", a folder "." or "..", a control character, a
/// text that isn't UTF-8. The base path comes from a row that anybody may have written.
[[nodiscard]] std::optional<Registration> readRegistration(std::string_view commandLine);

/// A plug-in that stands where it was looked for and isn't loaded.
struct RefusedPlugin {
  std::filesystem::path file;
  std::string reason;  ///< for the person, in Persian; no sentence of its own
};

/// The registrar of this platform: a component's file stands for the plug-in of its name.
///
/// The folder that a command names comes from the database, and whoever may write a row of it is not the one
/// who may run code here. So a plug-in is loaded only by an absolute path where nobody but the administrator
/// and the person may write, or below a folder that the host answers for.
class ComponentPlugins {
 public:
  /// The port to the platform.
  struct Platform {
    /// The file names that a plug-in may have, the first one first.
    std::function<std::vector<std::string>(const std::string& plugin)> fileNames;
    /// Why an absolute path without links isn't to be trusted: the file or a folder above it belongs to
    /// somebody else than the administrator and the person, or others may write to it. Empty where it is.
    std::function<std::string(const std::filesystem::path& file)> distrust;
    /// Loads a library for the life of the process; null where it can't be, or exports nothing.
    std::function<RegisterComponents(const std::filesystem::path& file)> load;
  };

  /// `components` outlives the object.
  ComponentPlugins(OutsideComponents& components, Platform platform)
      : components_(components), platform_(std::move(platform)) {}

  /// Where the package installed its plug-ins: looked through behind the folder that a command names, and
  /// trusted as the library is that came with them. Empty for none.
  void setInstalledFolder(std::filesystem::path folder) { installed_ = std::move(folder); }
  /// A folder whose plug-ins are loaded whoever may write to it.
  void trustBelow(std::filesystem::path folder) { trusted_.push_back(std::move(folder)); }
  /// Told of what a command found and didn't load, when the command has been carried out.
  void onRefused(std::function<void(const RefusedPlugin&)> listener) { refused_ = std::move(listener); }

  /// Carries out a registration command line: the first plug-in that may be loaded and registers a component
  /// serves. Without one, or for a text that is refused, nothing happens.
  void carryOut(std::string_view commandLine) const;

 private:
  using Refusals = std::vector<RefusedPlugin>;
  /// True where a plug-in of the folder serves.
  [[nodiscard]] bool loadFrom(const std::filesystem::path& folder, const std::string& plugin,
                              Refusals& refused) const;
  [[nodiscard]] std::string distrust(const std::filesystem::path& folder,
                                     const std::filesystem::path& file) const;

  OutsideComponents& components_;
  Platform platform_;
  std::filesystem::path installed_;
  std::vector<std::filesystem::path> trusted_;
  std::function<void(const RefusedPlugin&)> refused_;
};

}  // namespace ledgertree::shell
