#include "data/catalogue.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <variant>

#include "data/account.h"
#include "data/data_error.h"
#include "text/characters.h"

namespace ledgertree::data {
namespace {

using enum ParameterType;

constexpr Parameter kHasPermission[] = {{"@UserID", Int}, {"@FormPermissionID", Int}};

constexpr Parameter kGetCurrentUserPeriod[] = {{"@UserID", Int}};

template <AccountCall call>
constexpr auto parametersOf() {
  constexpr auto kTakes = [](const AccountField& field) { return field.by(call) != kNotTaken; };
  std::array<Parameter, std::count_if(std::begin(kAccountFields), std::end(kAccountFields), kTakes)>
      parameters{};
  auto parameter = parameters.begin();
  for (const AccountField& field : kAccountFields)
    if (kTakes(field)) *parameter++ = {field.parameter, field.type(), field.by(call)};
  return parameters;
}

constexpr auto kInsertAccount = parametersOf<AccountCall::Insert>();
constexpr auto kUpdateAccounts = parametersOf<AccountCall::Update>();

constexpr Parameter kInsertRelatedObject[] = {
    {"@AccountID", Int}, {"@AccountGroupID", Int}, {"@RelatedClassID", Int}, {"@RelatedObjectID", Int}};

constexpr Parameter kDeleteAccount[] = {{"@ID_1", Int}};

bool fits(const Parameter& parameter, const Value& value) {
  const Value::Variant& held = value.variant();
  switch (parameter.type) {
    case Int: {
      const auto* number = std::get_if<std::int64_t>(&held);
      return number != nullptr && *number >= std::numeric_limits<std::int32_t>::min() &&
             *number <= std::numeric_limits<std::int32_t>::max();
    }
    case Money:
      return std::holds_alternative<data::Money>(held);
    case DateTime: {
      const auto* time = std::get_if<data::DateTime>(&held);
      return time != nullptr && time->valid();
    }
    case Text: {
      const auto* text = std::get_if<std::string>(&held);
      return text != nullptr && text::isCleanText(*text);
    }
  }
  return false;
}

[[noreturn]] void refuse(DataError::Reason reason, const Procedure& procedure, const std::string& message) {
  throw DataError(reason, 0, message, std::string(procedure.name));
}

}  // namespace

namespace procedures {
const Procedure spTarvoHasPermission{"spTarvoHasPermission", kHasPermission, true};
const Procedure spAccountGetCurrentUserPeriod{"spAccountGetCurrentUserPeriod", kGetCurrentUserPeriod, true};
const Procedure spAccountInsertAccount{"spAccountInsertAccount", kInsertAccount};
const Procedure spAccountUpdateAccounts{"spAccountUpdateAccounts", kUpdateAccounts};
const Procedure spAccountInsertRelatedObject{"spAccountInsertRelatedObject", kInsertRelatedObject};
const Procedure spAccountDeleteAccount{"spAccountDeleteAccount", kDeleteAccount};
}  // namespace procedures

void checkArguments(const Procedure& procedure, std::span<const Value> values) {
  if (values.size() != procedure.parameters.size()) {
    refuse(DataError::Reason::Misuse, procedure,
           std::string(procedure.name) + " takes " + std::to_string(procedure.parameters.size()) +
               " values, not " + std::to_string(values.size()));
  }
  for (std::size_t place = 0; place < values.size(); ++place) {
    const Parameter& parameter = procedure.parameters[place];
    const Value& value = values[place];
    if (value.isNull()) continue;
    const std::string name(parameter.name);
    if (!fits(parameter, value)) {
      refuse(DataError::Reason::Misuse, procedure, "مقدار " + name + " پذيرفتني نيست. آن را اصلاح کنيد.");
    }
    const auto* text = std::get_if<std::string>(&value.variant());
    if (text != nullptr && text::characterCount(*text) > static_cast<std::size_t>(parameter.width)) {
      refuse(DataError::Reason::TooLong, procedure,
             "متن " + name + " از " + std::to_string(parameter.width) +
                 " نويسه بلندتر است. آن را کوتاه کنيد و دوباره ثبت کنيد.");
    }
  }
}

}  // namespace ledgertree::data
