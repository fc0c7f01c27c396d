#pragma once

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "shell/components/component_plugins.h"

namespace ledgertree::fuzz {

/// Parses any text as a registration command. Whatever is accepted must name a plain file directly in a
/// folder "System", without any step that leads out of it. A fault throws std::logic_error.
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
  require(shell::readRegistration(again) == registration, "a command that doesn't survive a round trip");
}

}  // namespace ledgertree::fuzz
