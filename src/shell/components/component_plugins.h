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

/// The registrar of this platform: a component's file stands for the plug-in of its name.
class ComponentPlugins {
 public:
  /// The port to the platform.
  struct Platform {
    /// The file names that a plug-in may have, the first one first.
    std::function<std::vector<std::string>(const std::string& plugin)> fileNames;
    /// Loads a library for the life of the process; null where it can't be, or exports nothing.
    std::function<RegisterComponents(const std::filesystem::path& file)> load;
  };

  /// `components` outlives the object.
  ComponentPlugins(OutsideComponents& components, Platform platform)
      : components_(components), platform_(std::move(platform)) {}

  /// Where the package installed its plug-ins: looked through behind the folder that a command names. Empty
  /// for none.
  void setInstalledFolder(std::filesystem::path folder) { installed_ = std::move(folder); }

  /// Carries out a registration command line. Without a plug-in that can be loaded, or for a text that is
  /// refused, nothing happens.
  void carryOut(std::string_view commandLine) const;

 private:
  /// True where a plug-in of the folder was loaded.
  [[nodiscard]] bool loadFrom(const std::filesystem::path& folder, const std::string& plugin) const;

  OutsideComponents& components_;
  Platform platform_;
  std::filesystem::path installed_;
};

}  // namespace ledgertree::shell
