#include <memory>

#include "component_registrar.h"
#include "data/embedded/embedded_engine.h"
#include "data/odbc/odbc_engine.h"
#include "ledgertree/qt_desktop.h"
#include "qt/guide_window.h"
#include "qt/notice_dialog.h"
#include "qt/qt_desktop.h"
#include "shell/ledger_tree_control_session.h"

namespace ledgertree {

void installQtDesktop(const QtDesktopOptions& options) {
  auto desktop = std::make_unique<qt::QtDesktop>();
  desktop->setModelessAllowed(options.modelessForms);
  if (options.container != nullptr) desktop->embed("FormMain", options.container);
  shell::Shell& shell = ControlSession::install(std::move(desktop)).shell();
  data::embedded::registerEmbedded(shell.providers);
  data::odbc::registerOdbc(shell.providers);
  qt::registerNoticeDialog(shell.components);
  qt::installGuide();
  installComponentRegistrar(shell);
}

}  // namespace ledgertree
