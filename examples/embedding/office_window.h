#pragma once

#include <QMainWindow>

#include "chart_page.h"

class QTabWidget;

/// The window of the host: menus of its own, and documents in tabs, of which the chart of accounts is one.
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
  /// The page of the chart in front, made where there is none.
  ChartPage& bringUpPage();
  void settle(bool open);
  void removePage();
  void closeTab(int index);

  QString connectionText_;
  Identity identity_;
  QTabWidget* documents_;
  ChartPage* page_ = nullptr;
};
