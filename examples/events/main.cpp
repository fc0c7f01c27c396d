// A host that follows what the user does in the chart: it keeps a log next to the chart, and its title shows
// unsaved work. Given a file and an account, it shows that account, prints the log, and ends.

#include <ledgertree/chart_events.h>
#include <ledgertree/demo_chart.h>
#include <ledgertree/ledger_tree_control.h>
#include <ledgertree/offers.h>
#include <ledgertree/qt_desktop.h>
#include <ledgertree/screen_in_host.h>
#include <ledgertree/version.h>

#include <QApplication>
#include <QFileInfo>
#include <QListWidget>
#include <QSplitter>
#include <QTextStream>
#include <QTimer>

QString diaryLine(const ledgertree::ChartEvent& event) {
  using Kind = ledgertree::ChartEvent::Kind;
  QString line;
  switch (event.kind) {
    case Kind::Created:
      line = "created";
      break;
    case Kind::Changed:
      line = "changed";
      break;
    case Kind::Deleted:
      line = "deleted";
      break;
    case Kind::Recoded:
      line = "recoded";
      break;
    case Kind::ChangedBelow:
      line = "changed what is below";
      break;
    case Kind::Shown:
      line = event.accounts.empty() ? "nothing is shown" : "shown";
      break;
  }
  for (const std::int32_t account : event.accounts) line += " " + QString::number(account);
  return line;
}

int main(int argumentCount, char** arguments) {
  const QApplication application(argumentCount, arguments);
  const QString file = QFileInfo(application.arguments().value(1, "events.db")).absoluteFilePath();
  if (!QFileInfo::exists(file)) ledgertree::createDemoChart(file.toStdString());
  ledgertree::installQtDesktop();
  ledgertree::offer(ledgertree::everyOffer());

  QSplitter window;
  auto* const diary = new QListWidget(&window);
  auto* const page = new QWidget(&window);
  ledgertree::placeScreen(page);
  ledgertree::onScreenLeft([] { QApplication::quit(); });
  ledgertree::onChartEvent([&](const ledgertree::ChartEvent& event) { diary->addItem(diaryLine(event)); });
  QTimer title;
  QObject::connect(&title, &QTimer::timeout, [&] {
    window.setWindowTitle(QString("Ledger " LEDGERTREE_VERSION ", account %1%2")
                              .arg(ledgertree::shownAccount())
                              .arg(ledgertree::hasUnsavedWork() ? ", not saved" : ""));
  });
  title.start(500);

  ledgertree::LedgerTreeControl chart;
  chart.OLEConnectionString("Provider=SQLite;Data Source=\"" + file.toStdString() + '"');
  chart.UserID(1);
  window.showMaximized();
  chart.ClearShow();
  if (argumentCount < 3) return QApplication::exec();
  chart.View(std::string(arguments[2]));
  QApplication::processEvents();
  for (int row = 0; row < diary->count(); ++row) QTextStream(stdout) << diary->item(row)->text() << '\n';
  return 0;
}
