#include <memory>

#include "component_registrar.h"
#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
#include "ledgertree/qt_desktop.h"
#include "qt/guide/guide_window.h"
#include "qt/notice_dialog.h"
#include "qt/qt_desktop.h"
#include "shell/control/ledger_tree_control_session.h"

namespace ledgertree {

void installQtDesktop(const QtDesktopOptions& options) {
  auto desktop = std::make_unique<qt::QtDesktop>();
  desktop->setModelessAllowed(options.modelessForms);
  shell::Shell& shell = ControlSession::install(std::move(desktop)).shell();
  engines::sqlite::registerEmbedded(shell.providers);
  engines::odbc::registerOdbc(shell.providers);
  qt::registerNoticeDialog(shell.components);
  qt::installGuide();
  installComponentRegistrar(shell);
}

}  // namespace ledgertree
