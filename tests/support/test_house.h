#pragma once

#include <gtest/gtest.h>

#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
#include "shell/shell.h"
#include "support/faulty_connection.h"
#include "support/screen_walk.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"
#include "support/temporary_database.h"
#include "ui/lookup_field.h"

namespace ledgertree::testing {

/// The house without a window; the desktop and the notices play the user. Every story must end with all
/// handles closed, the default mouse pointer, and no unexpected output.
class TestHouse : public ::testing::Test {
 protected:
  TestHouse() {
    engines::sqlite::registerEmbedded(shell.providers);
    engines::odbc::registerOdbc(shell.providers);
    shell.clock = [] { return data::DateTime{.year = 2026, .month = 11, .day = 22}; };
    shell.context.gConnectionString = database.connectionText();
    shell.context.gUserID = 1;
    desktop.patience = std::chrono::seconds(20);
    shell.resetDataConnection();
  }

  void TearDown() override {
    if (shell.hasDtEn()) {
      for (const data::RecordHandle* handle : shell.dtEn()->handles())
        EXPECT_EQ(handle->State(), 0) << handle->name() << " was left open";
    }
    EXPECT_EQ(desktop.cursor, ui::CursorShape::Default);
    EXPECT_EQ(desktop.surprises(), std::vector<std::string>());
  }

  /// In the demo chart, user 1 has all rights, 2 may not change, 3 may not see the chart.
  void useDemoChart() { database.fillWithDemoChart(); }

  /// The user's actions in the next modal screen of that name.
  template <typename Screen>
  void inScreen(const std::string& name, const std::function<void(Screen&)>& act) {
    desktop.inModal(name, [act](ui::Form& form) { act(dynamic_cast<Screen&>(form)); });
  }
  /// Presses something; returns what the user is told.
  template <typename Command>
  std::string toldBy(Command& command) {
    command.click();
    return notices.taken();
  }
  /// A command must not accept text typed into a look-up without a choice.
  template <typename Command>
  void expectUnchosen(ui::LookupField& field, Command& command) {
    field.type("نيم");
    EXPECT_EQ(toldBy(command), "اشکال|در خانه «" + field.accessibleName() +
                                   "» متني نوشته شده ولي رديفي از فهرست انتخاب نشده است. رديفي را انتخاب "
                                   "کنيد يا نوشته را پاک کنيد.");
    EXPECT_TRUE(field.hasFocus() && field.typing());
    field.press(ui::Key::Escape);
  }

  TemporaryDatabase database;
  ScriptedDesktop desktop;
  shell::Shell shell{desktop};
  ScriptedNotices notices{shell.components};
};

/// A house whose commands can fail, with a user at its
/// screens; the user's "sql" steps run in another program.
class FaultyHouse : public TestHouse {
 protected:
  FaultyHouse() {
    faults.putInto(shell.providers);
    shell.resetDataConnection();
    person.acts["sql"] = [this](auto& statements) { database.execute(statements); };
  }

  Faults faults;
  ScreenWalk person{desktop, notices, faults};
};

}  // namespace ledgertree::testing
