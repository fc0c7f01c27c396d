#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include "data/value.h"
#include "ledgertree/component.h"
#include "shell/outside_components.h"

/// Lets a plug-in be written as classes: a component derives from shell::OutsideComponent, and what it throws
/// becomes the result that the plug-in's functions give.
namespace ledgertree::components {

[[nodiscard]] data::Value fromHost(const LedgerTreeValue& value);

/// Gives a value back to the host; `keeper` holds its text as long as the component lives.
void toHost(const data::Value& value, std::string& keeper, LedgerTreeValue& result);

/// Fills the functions of a component with those of a class, and takes the object.
void hand(std::unique_ptr<shell::OutsideComponent> component, LedgerTreeComponent& to);

/// The maker of a component, for the registry.
template <typename Component>
std::int32_t create(LedgerTreeComponent* to) {
  try {
    hand(std::make_unique<Component>(), *to);
    return LEDGERTREE_DONE;
  } catch (const std::exception&) {
    return LEDGERTREE_FAILED;
  }
}

[[noreturn]] inline void refuseMember(std::string_view member) {
  throw shell::ComponentError(shell::ComponentError::kNoSuchMember, "no member " + std::string(member));
}

}  // namespace ledgertree::components
