#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "engines/odbc/odbc_engine.h"
#include "engines/sqlite/embedded_engine.h"
#include "mainform/form/form_main.h"
#include "screen.h"
#include "support/temporary_database.h"

namespace ledgertree::test {

/// The main screen on the demo chart, drawn with Qt in a window of the given size.
class DemoChartScreen : public ::testing::Test, protected Desk {
 protected:
  explicit DemoChartScreen(QSize size) {
    engines::sqlite::registerEmbedded(shell.providers);
    engines::odbc::registerOdbc(shell.providers);
    shell.context.gConnectionString = database.connectionText();
    shell.context.gUserID = 1;
    shell.resetDataConnection();
    database.fillWithDemoChart();
    shell.offers = {Offer::EnterAsTab};
    form = std::make_unique<mainform::FormMain>(shell);
    form->load();
    form->onClosed = [this] { form.reset(); };
    desktop.show(*form);
    window().showNormal();
    window().resize(size);
    QTest::qWait(1);
  }

  [[nodiscard]] qt::FormWindow& window() const { return *desktop.windowOf(*form); }

  ::ledgertree::testing::TemporaryDatabase database;
  shell::Shell shell{desktop};
  std::unique_ptr<mainform::FormMain> form;
};

}  // namespace ledgertree::test
