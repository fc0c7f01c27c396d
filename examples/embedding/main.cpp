// A host application that has the chart of accounts in a tab of its own window.

#include <ledgertree/demo_chart.h>
#include <ledgertree/qt_desktop.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QMessageBox>
#include <QTextStream>
#include <QTimer>
#include <exception>

#include "office_window.h"

namespace {

/// The connection text of an embedded database, which is created with a demo chart if it doesn't exist.
QString connectionTextOf(const QString& file) {
  const QString path = QFileInfo(file).absoluteFilePath();
  if (!QFileInfo::exists(path)) ledgertree::createDemoChart(path.toStdString());
  return "Provider=SQLite;Data Source=\"" + QString(path).replace('"', "\"\"") + '"';
}

int run(const QApplication& application) {
  QCommandLineParser options;
  options.setApplicationDescription("A host that has the chart of accounts in a tab of its own window.");
  options.addHelpOption();
  options.addOptions({
      {"connection", "The OLE DB connection text; without it, the file of --chart.", "text"},
      {"chart", "An embedded database; made with a demo chart where it isn't there.", "file", "office.db"},
      {"user", "Who is signed in (demo: 1 all rights, 2 may not change, 3 may not see).", "ID", "1"},
      {"account", "Opens the chart on one account, read-only.", "ID"},
      {"picture", "Opens the chart, draws the window into a PNG file, leaves the chart, and ends.", "file"},
  });
  options.process(application);

  // Once, after the QApplication and before the first control.
  ledgertree::installQtDesktop();
  const QString connection =
      options.isSet("connection") ? options.value("connection") : connectionTextOf(options.value("chart"));
  OfficeWindow office(connection, {options.value("user").toShort(), 0, 0});
  office.show();
  if (options.isSet("account")) {
    office.showAccount(options.value("account").toInt());
  } else {
    office.showChart();
  }
  if (options.isSet("picture")) {
    QTimer::singleShot(0, &office, [&] {
      const bool drawn = office.grab().save(options.value("picture"));
      office.close();
      QApplication::exit(drawn && !office.isVisible() ? 0 : 2);
    });
  }
  return QApplication::exec();
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const QApplication application(argumentCount, arguments);
  try {
    return run(application);
  } catch (const std::exception& failure) {
    // No window is shown yet.
    if (QApplication::platformName() == "offscreen") {
      QTextStream(stderr) << QString::fromUtf8(failure.what()) << '\n';
    } else {
      QMessageBox::critical(nullptr, "Ledger Office", QString::fromUtf8(failure.what()));
    }
    return 1;
  }
}
