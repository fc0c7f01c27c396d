#pragma once

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "data/value.h"

namespace ledgertree::shell {

/// A failure concerning an outside component, with the number that callers expect.
class ComponentError : public std::runtime_error {
 public:
  static constexpr int kCannotCreate = 429;  ///< no component of that name is registered
  static constexpr int kNoSuchMember = 438;  ///< the component has no member of that name

  ComponentError(int number, const std::string& message) : std::runtime_error(message), number_(number) {}
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

/// A component that isn't part of this system, accessed by member names at run time. Every operation may
/// throw ComponentError(kNoSuchMember), or whatever fails inside the component.
class OutsideComponent {
 public:
  OutsideComponent() = default;
  OutsideComponent(const OutsideComponent&) = delete;
  OutsideComponent& operator=(const OutsideComponent&) = delete;
  virtual ~OutsideComponent() = default;

  virtual void set(std::string_view member, const data::Value& value) = 0;
  [[nodiscard]] virtual data::Value get(std::string_view member) = 0;
  /// Returns when the component has finished.
  virtual void call(std::string_view member, const std::vector<data::Value>& arguments) = 0;
};

/// The components of this process by name. A component is created for each use and dropped afterwards.
class OutsideComponents {
 public:
  using Factory = std::function<std::unique_ptr<OutsideComponent>()>;
  /// Runs a registration command line, which may or may not register a component.
  using Registrar = std::function<void(std::string_view commandLine)>;

  /// Names ignore letter case; a later registration replaces an earlier one.
  void add(std::string_view name, Factory factory);
  void remove(std::string_view name);
  [[nodiscard]] bool has(std::string_view name) const;
  /// Throws ComponentError(kCannotCreate) for an unregistered name.
  [[nodiscard]] std::unique_ptr<OutsideComponent> create(std::string_view name) const;

  void setRegistrar(Registrar registrar) { registrar_ = std::move(registrar); }
  /// Runs the command line that registers a missing component. Does nothing without a registrar.
  void runRegistration(std::string_view commandLine) const;

 private:
  std::map<std::string, Factory> factories_;
  Registrar registrar_;
};

}  // namespace ledgertree::shell
