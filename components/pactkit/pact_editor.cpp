#include "pactkit/pact_editor.h"

#include <exception>

#include "pactkit/cost_centers.h"
#include "qt/notice_dialog.h"
#include "qt/qt_desktop.h"
#include "support/plugin_entry.h"

namespace ledgertree::pactkit {

void PactEditor::set(std::string_view member, const data::Value& value) {
  if (!given_.set(member, value)) components::refuseMember(member);
}

data::Value PactEditor::get(std::string_view member) { components::refuseMember(member); }

void PactEditor::call(std::string_view member, const std::vector<data::Value>& arguments) {
  if (member != "ClearShow" || !arguments.empty()) components::refuseMember(member);
  clearShow();
}

void PactEditor::clearShow() const {
  qt::QtDesktop desktop;
  shell::Shell shell(desktop);
  qt::registerNoticeDialog(shell.components);
  shell.providers = components::engines();
  shell.context.gConnectionString = given_.OLEConnectionString;
  shell.context.gUserID = given_.UserID;
  shell.resetDataConnection();
  try {
    CostCenters form(shell);
    form.open();
    desktop.showModal(form);
  } catch (const std::exception& failure) {
    shell.reportFailure(failure);
  }
}

}  // namespace ledgertree::pactkit
