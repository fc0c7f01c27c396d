#pragma once

#include <QMainWindow>

#include "chart_page.h"

class QTabWidget;

/// The host's window: its own menus, and documents in tabs, one of which is the chart of accounts.
class OfficeWindow : public QMainWindow {
  Q_DISABLE_COPY(OfficeWindow)

 public:
  OfficeWindow(QString connectionText, const Identity& identity);

  void showChart();
  void showAccount(int accountID);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void fillMenus();
  void askForAccount();
  /// Brings the chart's page to the front, creating it if needed.
  ChartPage& bringUpPage();
  void settle(bool open);
  void removePage();
  void closeTab(int index);

  QString connectionText_;
  Identity identity_;
  QTabWidget* documents_;
  ChartPage* page_ = nullptr;
};
