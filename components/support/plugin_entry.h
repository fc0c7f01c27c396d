#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>

#include "data/value.h"
#include "ledgertree/component.h"
#include "shell/outside_components.h"

/// Lets a plug-in be written as classes: a component derives from shell::OutsideComponent, and its exceptions
/// become result codes of the plug-in's functions.
namespace ledgertree::components {

[[nodiscard]] data::Value fromHost(const LedgerTreeValue& value);

/// Returns a value to the host; `keeper` holds its text for the component's lifetime.
void toHost(const data::Value& value, std::string& keeper, LedgerTreeValue& result);

/// Fills in a component's functions with those of a class, and takes ownership of the object.
void hand(std::unique_ptr<shell::OutsideComponent> component, LedgerTreeComponent& to);

/// The factory function of a component, for the registry.
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
