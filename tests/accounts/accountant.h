#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "mainform/form/form_main.h"
#include "support/test_house.h"

namespace ledgertree::testing {

/// An accountant with their own desktop and screen, on a chart that others have open too.
class Accountant {
 public:
  explicit Accountant(const std::string& connectionText) {
    engines::sqlite::registerEmbedded(shell.providers);
    engines::odbc::registerOdbc(shell.providers);
    shell.clock = [] { return data::DateTime{.year = 2026, .month = 11, .day = 22}; };
    shell.context.gConnectionString = connectionText;
    shell.context.gUserID = 1;
    faults.putInto(shell.providers);
    // On a server, look-ups run on a thread of their own.
    desktop.patience = std::chrono::seconds(20);
    shell.resetDataConnection();
    form = std::make_unique<mainform::FormMain>(shell);
    form->load();
    desktop.show(*form);
  }

  ScriptedDesktop desktop;
  shell::Shell shell{desktop};
  ScriptedNotices notices{shell.components};
  Faults faults;
  std::unique_ptr<mainform::FormMain> form;
};

}  // namespace ledgertree::testing
