#include "batch/hand_over.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

#include "data/numbers.h"
#include "data/permissions.h"

namespace ledgertree::batch {

namespace {

using shell::ComponentError;
using shell::OutsideComponent;

/// The chart's screen among those of the host product.
constexpr std::int32_t kFormTypeID = 301;

constexpr std::string_view kExportStatement =
    "Select Code As 'كدحساب',Title As 'شرح حساب',AccGroup as 'گروه حساب',AccountStatus As 'ماهيت "
    "حساب',AccountType As 'حساب',RemainedType As 'وضعيت حساب',AccContract As 'مركز هزينه',NoLevel As "
    "'سطح',Notes As 'ملاحظات' From vwAccount Order By Code,NoLevel";

template <typename Step>
void skippingFailure(const Step& step) {
  try {
    step();
  } catch (const std::exception&) {
    return;  // the next step runs anyway
  }
}

enum class Creation { Made, Unknown, Failed };

Creation create(shell::Shell& shell, std::string_view name, std::unique_ptr<OutsideComponent>& component) {
  try {
    component = shell.components.create(name);
    return Creation::Made;
  } catch (const ComponentError& failure) {
    return failure.number() == ComponentError::kCannotCreate ? Creation::Unknown : Creation::Failed;
  } catch (const std::exception&) {
    return Creation::Failed;
  }
}

/// "SheetKit.SheetWriter" is in the file SheetKit.ocx.
std::string registrationOf(std::string_view name, std::string_view basePath) {
  return std::string("Regsvr32 ")
      .append(" \"")
      .append(basePath)
      .append("System\\")
      .append(name.substr(0, name.find('.')))
      .append(".ocx\" /s");
}

/// Null if there is no component; the user has been told if it is unknown.
std::unique_ptr<OutsideComponent> createRegistering(shell::Shell& shell, std::string_view name,
                                                    std::string_view basePath) {
  std::unique_ptr<OutsideComponent> component;
  if (create(shell, name, component) != Creation::Unknown) return component;
  skippingFailure([&] { shell.components.runRegistration(registrationOf(name, basePath)); });
  if (create(shell, name, component) == Creation::Unknown)
    shell.showErrorNotice(shell::kTitleError, data::kNotPermitted);
  return component;
}

void introduce(const shell::HostContext& context, OutsideComponent& component) {
  skippingFailure([&] { component.set("UserID", context.gUserID); });
  skippingFailure([&] { component.set("PositionID", std::int32_t{data::toInt16(context.gPositionID)}); });
  skippingFailure([&] { component.set("EmployeeID", std::int32_t{data::toInt16(context.gEmployeeID)}); });
  skippingFailure([&] { component.set("OLEConnectionString", context.gConnectionString); });
}

}  // namespace

void exportChart(shell::Shell& shell, std::string_view basePath) {
  const auto component = createRegistering(shell, "SheetKit.SheetWriter", basePath);
  if (!component) return;
  introduce(shell.context, *component);
  skippingFailure([&] { component->set("FormTypeID", kFormTypeID); });
  skippingFailure([&] { component->call("ExportToExcel", {data::Value(kExportStatement)}); });
  // A component that failed may have left the hourglass cursor.
  shell.desktop().setCursor(ui::CursorShape::Default);
}

void exportRows(shell::Shell& shell, std::string_view basePath,
                const std::vector<std::vector<std::string>>& rows) {
  const auto component = createRegistering(shell, "SheetKit.SheetWriter", basePath);
  if (!component) return;
  introduce(shell.context, *component);
  skippingFailure([&] {
    for (const std::vector<std::string>& row : rows)
      component->call("AddRow", std::vector<data::Value>(row.begin(), row.end()));
    component->call("ExportRows", {});
  });
  shell.desktop().setCursor(ui::CursorShape::Default);
}

void editCostCenters(shell::Shell& shell, std::string_view basePath) {
  const auto component = createRegistering(shell, "PactKit.PactEditor", basePath);
  if (!component) return;
  introduce(shell.context, *component);
  shell.waits.noteWrite();
  skippingFailure([&] { component->call("ClearShow", {}); });
  shell.desktop().setCursor(ui::CursorShape::Default);
}

}  // namespace ledgertree::batch
