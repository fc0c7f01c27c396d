#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
#include "ledgertree/ledger_tree_control.h"
#include "shell/control/ledger_tree_control_session.h"
#include "support/screen_walk.h"
#include "support/temporary_database.h"

namespace ledgertree::testing {

/// A host with its control, without a window: its own session on its own database, with user 1.
class ControlHouse : public ::testing::Test {
 protected:
  ControlHouse() {
    engines::sqlite::registerEmbedded(shell.providers);
    engines::odbc::registerOdbc(shell.providers);
    faults.putInto(shell.providers);
    control.OLEConnectionString(database.connectionText());
    control.UserID(1);
    desktop.patience = std::chrono::seconds(20);
    const auto number = [](const std::string& text) { return static_cast<std::int16_t>(std::stoi(text)); };
    person.acts["ClearShow"] = [this](auto&) { control.ClearShow(); };
    person.acts["View"] = [=, this](auto& account) { control.View(number(account)); };
    person.acts["UserID"] = [=, this](auto& user) { control.UserID(number(user)); };
    person.acts["PositionID"] = [=, this](auto& position) { control.PositionID(number(position)); };
    person.acts["EmployeeID"] = [=, this](auto& employee) { control.EmployeeID(number(employee)); };
    person.acts["AccPeriodSpecID"] = [=, this](auto& period) { control.AccPeriodSpecID(number(period)); };
    person.acts["sql"] = [this](auto& statement) { database.execute(statement); };
    person.acts["thrown"] = [this](auto& step) -> std::string {
      try {
        return person.act(step);
      } catch (const std::exception&) {
        return "thrown";
      }
    };
  }

  [[nodiscard]] mainform::FormMain& form() { return *session.form(); }

  TemporaryDatabase database;
  Faults faults;
  ControlSession session{std::make_unique<ScriptedDesktop>()};
  shell::Shell& shell = session.shell();
  ScriptedDesktop& desktop = static_cast<ScriptedDesktop&>(shell.desktop());
  ScriptedNotices notices{shell.components};
  LedgerTreeControl control = session.makeControl();
  /// Calls and settings of the host are steps, too; a leading "thrown" marks a call that fails.
  ScreenWalk person{desktop, notices, faults};
};

}  // namespace ledgertree::testing
