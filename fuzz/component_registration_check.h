#pragma once

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "shell/components/component_plugins.h"

namespace ledgertree::fuzz {

/// Reads any text as a registration command. Whatever the text is, what is accepted names a plain file right
/// below a folder "System" that no step leads out of. A fault throws std::logic_error.
inline void checkComponentRegistration(std::string_view text) {
  const auto registration = shell::readRegistration(text);
  if (!registration) return;
  const auto require = [](bool holds, const char* fault) {
    if (!holds) throw std::logic_error(fault);
  };
  require(registration->system.filename() == "System", "a folder of another name");
  const bool strays = std::any_of(registration->system.begin(), registration->system.end(),
                                  [](const auto& folder) { return folder == ".." || folder == "."; });
  require(!strays, "a folder that leads elsewhere");
  require(!registration->plugin.empty() && registration->plugin.find_first_of("/\\. ") == std::string::npos,
          "a plug-in that is a path");
  const std::string again =
      "Regsvr32  \"" + registration->system.string() + "\\" + registration->plugin + ".ocx\" /s";
  require(shell::readRegistration(again) == registration, "a command that changes on its way");
}

}  // namespace ledgertree::fuzz
