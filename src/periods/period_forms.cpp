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

std::int64_t countOf(shell::Shell& shell, data::DtEn& gateway, const std::string& statement) {
  const shell::Hourglass hourglass(shell.desktop());
  const data::OpenRows rows(gateway.rssqlAccCostCenter, statement);
  return rows->Fields(0).toInt64();
}

Outlook::Outlook(ui::Form& form, shell::Shell& shell, ui::Size size, std::function<std::string()> tell)
    : cmdPreview(form, "cmdPreview", {225, size.height + 75, 1650, 405}, "پيش نمايش"),
      lblOutlook(form, "lblOutlook", {2025, size.height, size.width - 2250, kHeight - 75}) {
  lblOutlook.setWraps(true);
  for (ui::Control* control : std::initializer_list<ui::Control*>{&cmdPreview, &lblOutlook})
    control->setVisible(shell.isOffered(Offer::Preview));
  cmdPreview.onClick = [this, tell = std::move(tell)] { lblOutlook.setCaption(tell()); };
}

ui::Size Outlook::grown(const shell::Shell& shell, ui::Size size) {
  return {size.width, size.height + (shell.isOffered(Offer::Preview) ? kHeight : 0)};
}

}  // namespace ledgertree::periods
