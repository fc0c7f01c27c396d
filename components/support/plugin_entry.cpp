#include "support/plugin_entry.h"

#include <string>

namespace ledgertree::components {

namespace {

struct State {
  std::unique_ptr<shell::OutsideComponent> component;
  std::string keeper;
};

/// No exception may pass through the host.
template <typename Use>
std::int32_t use(void* state, const Use& procedure) {
  try {
    procedure(*static_cast<State*>(state));
    return LEDGERTREE_DONE;
  } catch (const shell::ComponentError& failure) {
    return failure.number() == shell::ComponentError::kNoSuchMember ? LEDGERTREE_NO_SUCH_MEMBER
                                                                    : LEDGERTREE_FAILED;
  } catch (const std::exception&) {
    return LEDGERTREE_FAILED;
  }
}

std::int32_t set(void* state, const char* member, const LedgerTreeValue* value) {
  return use(state, [&](State& own) { own.component->set(member, fromHost(*value)); });
}

std::int32_t get(void* state, const char* member, LedgerTreeValue* value) {
  return use(state, [&](State& own) { toHost(own.component->get(member), own.keeper, *value); });
}

std::int32_t call(void* state, const char* member, const LedgerTreeValue* arguments, size_t count) {
  return use(state, [&](State& own) {
    std::vector<data::Value> values;
    for (size_t place = 0; place < count; ++place) values.push_back(fromHost(arguments[place]));
    own.component->call(member, values);
  });
}

void release(void* state) { delete static_cast<State*>(state); }

}  // namespace

data::Value fromHost(const LedgerTreeValue& value) {
  if (value.kind == LEDGERTREE_INTEGER) return value.integer;
  if (value.kind == LEDGERTREE_REAL) return value.real;
  if (value.kind == LEDGERTREE_TEXT) return std::string_view(value.text, value.length);
  return {};
}

void toHost(const data::Value& value, std::string& keeper, LedgerTreeValue& result) {
  result.kind = LEDGERTREE_NOTHING;
  if (value.isNull()) return;
  if (const auto* number = std::get_if<std::int64_t>(&value.variant())) {
    result.kind = LEDGERTREE_INTEGER;
    result.integer = *number;
    return;
  }
  keeper = value.toText();
  result.kind = LEDGERTREE_TEXT;
  result.text = keeper.data();
  result.length = keeper.size();
}

void hand(std::unique_ptr<shell::OutsideComponent> component, LedgerTreeComponent& to) {
  auto state = std::make_unique<State>();
  state->component = std::move(component);
  to.state = state.release();
  to.set = &set;
  to.get = &get;
  to.call = &call;
  to.release = &release;
}

}  // namespace ledgertree::components
