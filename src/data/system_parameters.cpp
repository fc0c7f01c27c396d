#include "data/system_parameters.h"

#include <stdexcept>
#include <string_view>

#include "data/ahead.h"
#include "data/data_error.h"
#include "data/dten.h"
#include "data/numbers.h"
#include "text/characters.h"

namespace ledgertree::data {
namespace {

constexpr std::string_view kCodeIsNumeric = "Select Value From tblTarvoSystemParameters Where ID = 301";
/// A parameter that is a switch: what asks whether it is on, and what asks for its row.
struct Switch {
  std::string_view isOn;
  std::string_view row;
};
constexpr Switch kMultiEntityMode{.isOn = "Select * From tblTarvoSystemParameters Where ID = 311 and Value=1",
                                  .row = "Select * From tblTarvoSystemParameters Where ID = 311"};
constexpr Switch kEditCodeAllowed{.isOn = "Select * From tblTarvoSystemParameters Where ID = 319 and Value=1",
                                  .row = "Select * From tblTarvoSystemParameters Where ID = 319"};
constexpr std::string_view kPositionInEntityTest =
    "Select Value From tblTarvoSystemParameters Where ID = 210";
constexpr std::string_view kCodingMode = "Select Value From tblTarvoSystemParameters Where ID = 307";
constexpr std::string_view kShowCompleteCode = "Select Value From tblTarvoSystemParameters Where ID = 302";
constexpr std::string_view kBasePath = "Select * From vwTarvoBasePath";

/// The first row's column of a statement; NULL where there is no row.
Value readFirst(RecordHandle& handle, std::string_view statement, std::string_view column) {
  handle.Source(std::string(statement));
  const OpenRows rows(handle);
  return rows->RecordCount() != 0 ? rows->Fields(column) : Value();
}

/// The number that the value begins with as text, since hosts keep the column as text or as a number; 0
/// without one.
std::int16_t asSetting(const Value& value, std::string_view parameter) {
  const std::string text = value.toText();
  try {
    return roundToInt16(leadingNumber(text));
  } catch (const std::range_error&) {
    throw std::range_error("مقدار پارامتر " + std::string(parameter) + " («" +
                           std::string(text::leftCharacters(text, 40)) +
                           "») در محدوده مجاز نيست. آن را در پارامترهاي سيستم اصلاح کنيد.");
  }
}

bool isOne(const Value& value) {
  const auto number = Money::parse(text::trimmed(value.toText()));
  return number == Money::fromTenThousandths(Money::kScale);
}

/// Whether a parameter that is a switch is on. A server compares the column as a number, in the other rows
/// too, and refuses where one is none ("yes"), by whatever number; then the row's value is read and judged
/// here.
bool isOn(RecordHandle& handle, const Switch& parameter) {
  try {
    handle.Source(std::string(parameter.isOn));
    const OpenRows rows(handle);
    return rows->RecordCount() != 0;
  } catch (const DataError& refusal) {
    using Reason = DataError::Reason;
    if (refusal.reason() != Reason::Statement && refusal.reason() != Reason::Constraint) throw;
  }
  return isOne(readFirst(handle, parameter.row, "Value"));
}

}  // namespace

std::vector<Command> systemParameterQuestions() {
  // In the order in which they are asked.
  return {{.statement = std::string(kCodeIsNumeric)},
          {.statement = std::string(kMultiEntityMode.isOn)},
          {.statement = std::string(kEditCodeAllowed.isOn)},
          {.statement = std::string(kPositionInEntityTest)},
          {.statement = std::string(kCodingMode)},
          {.statement = std::string(kShowCompleteCode)},
          {.statement = std::string(kBasePath)}};
}

SystemParameters readSystemParameters(DtEn& data) {
  const Ahead ahead(data.cnMainData, systemParameterQuestions());
  RecordHandle& config = data.rssqlKelmoSystemConfig;
  SystemParameters parameters;
  parameters.CodeIsNumeric = asSetting(readFirst(config, kCodeIsNumeric, "Value"), "301");
  parameters.MultiEntityMode = isOn(config, kMultiEntityMode);
  parameters.EditCodeAllowed = isOn(config, kEditCodeAllowed);
  parameters.PositionInEntityTest = asSetting(readFirst(config, kPositionInEntityTest, "Value"), "210");
  parameters.CodingMode = asSetting(readFirst(config, kCodingMode, "Value"), "307");

  config.Source(std::string(kShowCompleteCode));
  if (const OpenRows rows(config); rows->RecordCount() != 0) {
    parameters.ShowCompleteCode = isOne(rows->Fields("Value"));
  }
  parameters.BasePath = readFirst(data.rssqlTarvoBasePath, kBasePath, "BasePath").toText();
  return parameters;
}

}  // namespace ledgertree::data
