#include "periods/period_forms.h"

#include <utility>

namespace ledgertree::periods {

void bind(shell::Selector& selector, const shell::HostContext& context, std::string majorView,
          std::string minorView) {
  selector.setConnectionText(context.gConnectionString);
  selector.setMajorView(std::move(majorView));
  selector.setMinorView(std::move(minorView));
}

void bindToPeriods(shell::Selector& selector, const shell::HostContext& context) {
  bind(selector, context, "vwAccountPeriodMajor", "vwAccountPeriodMinor");
}

void execute(shell::Shell& shell, data::DtEn& gateway, const std::string& statement) {
  const shell::Hourglass hourglass(shell.desktop());
  gateway.rssqlAccCostCenter.Open(statement);
}

std::optional<Dependency> findDependency(shell::Shell& shell, data::DtEn& gateway, const std::string& test) {
  const shell::Hourglass hourglass(shell.desktop());
  const data::OpenRows documents(gateway.rssqlAccCostCenter, test);
  if (documents->RecordCount() < 1) return std::nullopt;
  return Dependency{.documents = documents->RecordCount(), .example = documents->Fields("ID").toText()};
}

}  // namespace ledgertree::periods
