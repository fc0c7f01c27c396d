#pragma once

#include <ledgertree/ledger_tree_control.h>

#include <QWidget>

/// Who is signed in: what the host knows of the person, and hands to the chart.
struct Identity {
  std::int16_t user = 0;
  std::int16_t position = 0;
  std::int16_t employee = 0;
};

/// The chart of accounts as a page of this host. The screen of the chart fills it while it is open. There is
/// one screen in a process, so a host has one such page.
class ChartPage : public QWidget {
  Q_DISABLE_COPY(ChartPage)

 public:
  ChartPage(const QString& connectionText, const Identity& identity, QWidget* parent);

  /// Open the chart for work, or one account to look at; both tell a person of what fails. False where the
  /// chart isn't open then: the person lacks the permission, or the database can't be reached.
  bool open();
  bool openAccount(int accountID);

 private:
  template <typename Command>
  bool opened(const Command& command);

  ledgertree::LedgerTreeControl chart_;
};
