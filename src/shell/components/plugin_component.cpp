#include "shell/components/plugin_component.h"

#include <exception>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ledgertree::shell {

namespace {

constexpr LedgerTreeValue kNothing{
    .kind = LEDGERTREE_NOTHING, .integer = 0, .real = 0, .text = nullptr, .length = 0};

/// A value as passed to a plug-in; `keeper` holds the text.
LedgerTreeValue toPlugin(const data::Value& value, std::string& keeper) {
  LedgerTreeValue result = kNothing;
  if (value.isNull()) return result;
  if (const auto* number = std::get_if<std::int64_t>(&value.variant())) {
    result.kind = LEDGERTREE_INTEGER;
    result.integer = *number;
  } else if (const auto* real = std::get_if<double>(&value.variant())) {
    result.kind = LEDGERTREE_REAL;
    result.real = *real;
  } else {
    keeper = value.toText();
    result.kind = LEDGERTREE_TEXT;
    result.text = keeper.c_str();
    result.length = keeper.size();
  }
  return result;
}

data::Value fromPlugin(const LedgerTreeValue& value) {
  if (value.kind == LEDGERTREE_INTEGER) return value.integer;
  if (value.kind == LEDGERTREE_REAL) return value.real;
  if (value.kind == LEDGERTREE_TEXT && value.text != nullptr)
    return std::string_view(value.text, value.length);
  return {};
}

class PluginComponent : public OutsideComponent {
 public:
  PluginComponent(std::string name, const LedgerTreeComponent& component)
      : name_(std::move(name)), component_(component) {}
  PluginComponent(const PluginComponent&) = delete;
  PluginComponent& operator=(const PluginComponent&) = delete;
  ~PluginComponent() override { component_.release(component_.state); }

  void set(std::string_view member, const data::Value& value) override {
    std::string keeper;
    const LedgerTreeValue given = toPlugin(value, keeper);
    require(component_.set(component_.state, std::string(member).c_str(), &given), member);
  }

  data::Value get(std::string_view member) override {
    LedgerTreeValue value = kNothing;
    require(component_.get(component_.state, std::string(member).c_str(), &value), member);
    return fromPlugin(value);
  }

  void call(std::string_view member, const std::vector<data::Value>& arguments) override {
    std::vector<std::string> keepers(arguments.size());
    std::vector<LedgerTreeValue> given;
    for (std::size_t place = 0; place < arguments.size(); ++place)
      given.push_back(toPlugin(arguments[place], keepers[place]));
    require(component_.call(component_.state, std::string(member).c_str(), given.data(), given.size()),
            member);
  }

 private:
  void require(std::int32_t result, std::string_view member) const {
    if (result == LEDGERTREE_DONE) return;
    const bool missing = result == LEDGERTREE_NO_SUCH_MEMBER;
    throw ComponentError(missing ? ComponentError::kNoSuchMember : LEDGERTREE_FAILED,
                         name_ + (missing ? " has no member " : " failed in ") + std::string(member));
  }

  std::string name_;
  LedgerTreeComponent component_;
};

std::unique_ptr<OutsideComponent> make(const std::string& name, LedgerTreeCreate create) {
  LedgerTreeComponent component{
      .state = nullptr, .set = nullptr, .get = nullptr, .call = nullptr, .release = nullptr};
  const bool made = create(&component) == LEDGERTREE_DONE && component.set != nullptr &&
                    component.get != nullptr && component.call != nullptr && component.release != nullptr;
  if (!made) throw ComponentError(LEDGERTREE_FAILED, name + " can't be made");
  return std::make_unique<PluginComponent>(name, component);
}

/// The components that a plug-in registers, until it confirms them.
using Offered = std::vector<std::pair<std::string, LedgerTreeCreate>>;

void add(void* context, const char* name, LedgerTreeCreate create) {
  if (name == nullptr || create == nullptr) return;
  try {
    static_cast<Offered*>(context)->emplace_back(name, create);
  } catch (const std::exception&) {
    return;  // no exception may pass through the plug-in: the component stays unknown
  }
}

}  // namespace

bool registerPlugin(OutsideComponents& components, RegisterComponents plugin) {
  Offered offered;
  const LedgerTreeRegistry registry{
      .version = LEDGERTREE_COMPONENT_VERSION, .context = &offered, .add = &add};
  if (plugin(&registry) == 0 || offered.empty()) return false;
  for (const auto& [name, create] : offered)
    components.add(name, [own = name, creation = create] { return make(own, creation); });
  return true;
}

}  // namespace ledgertree::shell
