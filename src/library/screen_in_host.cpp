#include "ledgertree/screen_in_host.h"

#include <algorithm>
#include <utility>

#include "ledgertree/chart_events.h"
#include "qt/qt_desktop.h"
#include "shell/control/ledger_tree_control_session.h"

namespace ledgertree {

void placeScreen(QWidget* container) {
  auto& desktop = dynamic_cast<qt::QtDesktop&>(ControlSession::process().shell().desktop());
  desktop.embed("FormMain", container);
}

bool screenIsOpen() {
  const mainform::FormMain* form = ControlSession::process().form();
  return form != nullptr && form->isShown();
}

std::int32_t shownAccount() {
  const mainform::FormMain* form = ControlSession::process().form();
  return form == nullptr ? 0 : std::max(form->AccountOnRecord, 0);
}

bool hasUnsavedWork() {
  const mainform::FormMain* form = ControlSession::process().form();
  return form != nullptr && form->isTyping();
}

bool leaveScreen() {
  ControlSession& session = ControlSession::process();
  if (session.shell().desktop().waiting()) return false;
  if (session.form() == nullptr) return true;
  if (session.form()->inAct()) return false;
  session.form()->cmdExit.click();
  return session.form() == nullptr;
}

void onChartEvent(std::function<void(const ChartEvent&)> listener) {
  ControlSession::process().onEvent = std::move(listener);
}

void onScreenLeft(std::function<void()> listener) { ControlSession::process().onLeft = std::move(listener); }

}  // namespace ledgertree
