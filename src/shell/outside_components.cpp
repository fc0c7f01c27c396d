#include "shell/outside_components.h"

#include <algorithm>
#include <cctype>

namespace ledgertree::shell {

namespace {

std::string keyOf(std::string_view name) {
  std::string key(name);
  std::transform(key.begin(), key.end(), key.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return key;
}

}  // namespace

void OutsideComponents::add(std::string_view name, Factory factory) {
  factories_.insert_or_assign(keyOf(name), std::move(factory));
}

void OutsideComponents::remove(std::string_view name) { factories_.erase(keyOf(name)); }

bool OutsideComponents::has(std::string_view name) const { return factories_.contains(keyOf(name)); }

std::unique_ptr<OutsideComponent> OutsideComponents::create(std::string_view name) const {
  const auto found = factories_.find(keyOf(name));
  auto component = found == factories_.end() ? nullptr : found->second();
  if (!component)
    throw ComponentError(ComponentError::kCannotCreate, "no component is registered as " + std::string(name));
  return component;
}

void OutsideComponents::runRegistration(std::string_view commandLine) const {
  if (registrar_) registrar_(commandLine);
}

}  // namespace ledgertree::shell
