#include "chart_page.h"

#include <ledgertree/screen_in_host.h>

#include <QMessageBox>
#include <exception>

ChartPage::ChartPage(const QString& connectionText, const Identity& identity, QWidget* parent)
    : QWidget(parent) {
  chart_.OLEConnectionString(connectionText.toStdString());
  chart_.UserID(identity.user);
  chart_.PositionID(identity.position);
  chart_.EmployeeID(identity.employee);
  ledgertree::placeScreen(this);
}

bool ChartPage::open() {
  return opened([this] { chart_.ClearShow(); });
}

bool ChartPage::openAccount(int accountID) {
  return opened([this, accountID] { chart_.View(std::int32_t{accountID}); });
}

template <typename Command>
bool ChartPage::opened(const Command& command) {
  try {
    command();
  } catch (const std::exception& failure) {
    // The message is for the user: the database can't be reached, or isn't a chart of accounts.
    QMessageBox::critical(window(), tr("Chart of accounts"), QString::fromUtf8(failure.what()));
  }
  // A missing permission has been reported by the chart itself.
  return ledgertree::screenIsOpen();
}
