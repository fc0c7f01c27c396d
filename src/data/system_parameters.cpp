#include "data/system_parameters.h"

#include <stdexcept>
#include <string_view>

#include "data/data_error.h"
#include "data/dten.h"
#include "data/numbers.h"
#include "text/characters.h"

namespace ledgertree::data {
namespace {

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
/// too, and refuses where one is none ("yes"); then the row's value is read and judged here.
bool isOn(RecordHandle& handle, int parameter) {
  const std::string row = "Select * From tblTarvoSystemParameters Where ID = " + std::to_string(parameter);
  try {
    handle.Source(row + " and Value=1");
    const OpenRows rows(handle);
    return rows->RecordCount() != 0;
  } catch (const DataError& refusal) {
    if (refusal.reason() != DataError::Reason::Statement) throw;
  }
  return isOne(readFirst(handle, row, "Value"));
}

}  // namespace

SystemParameters readSystemParameters(DtEn& data) {
  RecordHandle& config = data.rssqlKelmoSystemConfig;
  SystemParameters parameters;
  parameters.CodeIsNumeric = asSetting(
      readFirst(config, "Select Value From tblTarvoSystemParameters Where ID = 301", "Value"), "301");
  parameters.MultiEntityMode = isOn(config, 311);
  parameters.EditCodeAllowed = isOn(config, 319);
  parameters.PositionInEntityTest = asSetting(
      readFirst(config, "Select Value From tblTarvoSystemParameters Where ID = 210", "Value"), "210");
  parameters.CodingMode = asSetting(
      readFirst(config, "Select Value From tblTarvoSystemParameters Where ID = 307", "Value"), "307");

  config.Source("Select Value From tblTarvoSystemParameters Where ID = 302");
  if (const OpenRows rows(config); rows->RecordCount() != 0) {
    parameters.ShowCompleteCode = isOne(rows->Fields("Value"));
  }
  parameters.BasePath =
      readFirst(data.rssqlTarvoBasePath, "Select * From vwTarvoBasePath", "BasePath").toText();
  return parameters;
}

}  // namespace ledgertree::data
