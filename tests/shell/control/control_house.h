#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
#include "ledgertree/ledger_tree_control.h"
#include "shell/control/ledger_tree_control_session.h"
#include "support/faulty_connection.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"
#include "support/temporary_database.h"

namespace ledgertree::testing {

/// A host with its control, without a window: a session of its own on a database of its own, and user 1 at
/// work.
class ControlHouse : public ::testing::Test {
 protected:
  ControlHouse() {
    engines::sqlite::registerEmbedded(shell.providers);
    engines::odbc::registerOdbc(shell.providers);
    faults.putInto(shell.providers);
    control.OLEConnectionString(database.connectionText());
    control.UserID(1);
  }

  [[nodiscard]] mainform::FormMain& form() { return *session.form(); }

  TemporaryDatabase database;
  Faults faults;
  ControlSession session{std::make_unique<ScriptedDesktop>()};
  shell::Shell& shell = session.shell();
  ScriptedDesktop& desktop = static_cast<ScriptedDesktop&>(shell.desktop());
  ScriptedNotices notices{shell.components};
  LedgerTreeControl control{session};
};

}  // namespace ledgertree::testing
