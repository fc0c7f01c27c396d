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

/// A parsed registration command line.
struct Registration {
  std::filesystem::path system;  ///< the folder "System", relative if the base path is empty
  std::string plugin;            ///< "SheetKit" for the file SheetKit.ocx
  bool operator==(const Registration&) const = default;
};

/// Parses `Regsvr32 "<base path>System\<plug-in>.ocx" /s`; any number of blanks, and "/" separates like "\".
/// Nothing for any other text: another program or switch, a file that isn't directly in "System" or isn't a
/// plain name of letters, digits and "_", a folder "." or "..", a control character, a text that isn't UTF-8.
/// The base path comes from a row that anybody may have written.
[[nodiscard]] std::optional<Registration> readRegistration(std::string_view commandLine);

/// A plug-in that was found but not loaded.
struct RefusedPlugin {
  std::filesystem::path file;
  std::string reason;  ///< for the user, in Persian; not a full sentence
};

/// This platform's registrar: a component's file stands for the plug-in of that name.
///
/// The folder in a command comes from the database, and write access to one of its rows must not mean running
/// code here. So a plug-in is loaded only by an absolute path where nobody but the administrator and the user
/// may write, or below a folder that the host vouches for.
class ComponentPlugins {
 public:
  /// The platform port.
  struct Platform {
    /// The possible file names of a plug-in, preferred first.
    std::function<std::vector<std::string>(const std::string& plugin)> fileNames;
    /// Why an absolute path without links isn't trusted: the file or a parent folder belongs to someone other
    /// than the administrator and the user, or others may write to it. Empty if it is.
    std::function<std::string(const std::filesystem::path& file)> distrust;
    /// Loads a library until the process ends; null if it can't be loaded, or exports nothing.
    std::function<RegisterComponents(const std::filesystem::path& file)> load;
  };

  /// `components` outlives the object.
  ComponentPlugins(OutsideComponents& components, Platform platform)
      : components_(components), platform_(std::move(platform)) {}

  /// Where the package installed its plug-ins: searched after a command's folder, and trusted like the
  /// library they came with. Empty for none.
  void setInstalledFolder(std::filesystem::path folder) { installed_ = std::move(folder); }
  /// A folder whose plug-ins are loaded whoever may write to it.
  void trustBelow(std::filesystem::path folder) { trusted_.push_back(std::move(folder)); }
  /// Sets the listener for what a command found but didn't load, called after the command.
  void onRefused(std::function<void(const RefusedPlugin&)> listener) { refused_ = std::move(listener); }

  /// Runs a registration command line: uses the first plug-in that may be loaded and registers a component.
  /// Without one, or for a refused text, nothing happens.
  void carryOut(std::string_view commandLine) const;

 private:
  using Refusals = std::vector<RefusedPlugin>;
  /// True if a plug-in of the folder was registered.
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
