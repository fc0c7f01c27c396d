#pragma once

#include <ledgertree/ledger_tree_control.h>

#include <QWidget>

/// Who is signed in: what the host knows of the user and passes to the chart.
struct Identity {
  std::int16_t user = 0;
  std::int16_t position = 0;
  std::int16_t employee = 0;
};

/// The chart of accounts as a page of this host. The chart's screen fills it while open. There is one screen
/// per process, so a host has one such page.
class ChartPage : public QWidget {
  Q_DISABLE_COPY(ChartPage)

 public:
  ChartPage(const QString& connectionText, const Identity& identity, QWidget* parent);

  /// Open the chart for work, or one account to look at; both report failures to the user. False if the chart
  /// isn't open afterwards: a missing permission, or a database that can't be reached.
  bool open();
  bool openAccount(int accountID);

 private:
  template <typename Command>
  bool opened(const Command& command);

  ledgertree::LedgerTreeControl chart_;
};
