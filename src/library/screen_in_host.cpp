#include "ledgertree/screen_in_host.h"

#include <utility>

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

bool leaveScreen() {
  const ControlSession& session = ControlSession::process();
  if (session.form() == nullptr) return true;
  if (session.form()->inAct()) return false;
  session.form()->cmdExit.click();
  return session.form() == nullptr;
}

void onScreenLeft(std::function<void()> listener) { ControlSession::process().onLeft = std::move(listener); }

}  // namespace ledgertree
