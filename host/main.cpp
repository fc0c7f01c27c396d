// A small host application: it sets the control's properties and opens the chart, as an accounting product
// would.

#include <QApplication>
#include <QCommandLineParser>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTextEdit>
#include <QTextStream>
#include <QTimer>
#include <exception>

#include "ledgertree/demo_chart.h"
#include "ledgertree/ledger_tree_control.h"
#include "ledgertree/offers.h"
#include "ledgertree/pictures.h"
#include "ledgertree/qt_desktop.h"
#include "ledgertree/screen_in_host.h"
#include "ledgertree/version.h"

namespace {

struct Options {
  QString connection;
  QString chart;
  QString pictures;
  QString view;
  std::int16_t user = 1;
  std::int16_t position = 0;
  std::int16_t employee = 0;
  std::int16_t period = 0;
  bool modal = false;
  bool exports = true;
};

std::int16_t smallNumber(const QCommandLineParser& parser, const QString& option) {
  bool isNumber = false;
  const short number = parser.value(option).toShort(&isNumber);
  if (!isNumber)
    throw std::runtime_error("--" + option.toStdString() + " takes a whole number from -32768 to 32767");
  return number;
}

Options readOptions(const QCoreApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Opens the chart of accounts of a database, as a host application does.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions({
      {"connection", "The OLE DB connection text of the database; without it, the file of --chart.", "text"},
      {"chart",
       "An embedded database, created with the demo chart if it doesn't exist; without it, one in the "
       "user's data folder.",
       "file"},
      {"user", "The ID of the user (demo: 1 all rights, 2 may not change, 3 may not see the chart).", "ID",
       "1"},
      {"position", "The ID of the user's position.", "ID", "0"},
      {"employee", "The ID of the employee.", "ID", "0"},
      {"period", "The ID of the current fiscal period; 0 asks the database for the user's.", "ID", "0"},
      {"view", "Opens the screen on one account, read-only.", "ID"},
      {"modal", "Accepts only modal forms, as some hosts do."},
      {"no-export", "Doesn't offer the export to a spreadsheet, as a host may."},
      {"pictures", "The folder for pictures of the screen on a machine without a display.", "folder", "."},
  });
  parser.process(application);
  return {.connection = parser.value("connection"),
          .chart = parser.value("chart"),
          .pictures = parser.value("pictures"),
          .view = parser.value("view"),
          .user = smallNumber(parser, "user"),
          .position = smallNumber(parser, "position"),
          .employee = smallNumber(parser, "employee"),
          .period = smallNumber(parser, "period"),
          .modal = parser.isSet("modal"),
          .exports = !parser.isSet("no-export")};
}

/// A path as a value of a connection text, in which quotes are doubled.
QString quoted(QString value) { return '"' + value.replace('"', "\"\"") + '"'; }

QString ownChart() {
  const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation));
  if (!folder.mkpath(".")) throw std::runtime_error("can't create the folder " + folder.path().toStdString());
  return folder.filePath("chart.db");
}

QString connectionText(const Options& options) {
  if (!options.connection.isEmpty()) return options.connection;
  const QFileInfo chart(options.chart.isEmpty() ? ownChart() : options.chart);
  if (!chart.exists()) ledgertree::createDemoChart(chart.absoluteFilePath().toStdString());
  return "Provider=SQLite;Data Source=" + quoted(chart.absoluteFilePath());
}

/// Without a display nobody can answer a notice: it is written to standard error and closed unanswered.
class NoticesPrinted : public QObject {
 protected:
  bool eventFilter(QObject* shown, QEvent* event) override {
    auto* const notice = event->type() == QEvent::Show ? qobject_cast<QDialog*>(shown) : nullptr;
    if (notice != nullptr) {
      const auto* const message = notice->findChild<QTextEdit*>();
      QTextStream(stderr) << notice->windowTitle() << ": " << (message ? message->toPlainText() : QString())
                          << '\n';
      QTimer::singleShot(0, notice, &QDialog::reject);
    }
    return false;
  }
};

/// Without a display nobody can leave the screen: it is saved as pictures instead.
int drawInstead(const Options& options) {
  QTextStream out(stdout);
  for (const std::string& picture : ledgertree::drawScreens(options.pictures.toStdString()))
    out << "picture: " << QString::fromStdString(picture) << '\n';
  out << QString::fromStdString(ledgertree::treeAsText(2));
  return 0;
}

int openChart(const Options& options, bool display) {
  ledgertree::installQtDesktop({.modelessForms = !options.modal || !display});
  auto offers = ledgertree::everyOffer();
  if (!options.exports) offers.erase(ledgertree::Offer::Export);
  ledgertree::offer(offers);
  ledgertree::LedgerTreeControl control;
  control.OLEConnectionString(connectionText(options).toStdString());
  control.UserID(options.user);
  control.PositionID(options.position);
  control.EmployeeID(options.employee);
  control.AccPeriodSpecID(options.period);
  if (options.view.isEmpty()) {
    control.ClearShow();
  } else {
    control.View(options.view.toStdString());
  }
  if (!display) return ledgertree::screenIsOpen() ? drawInstead(options) : 1;
  // If the screen isn't open, the user has been told why, or has already left it.
  return ledgertree::screenIsOpen() ? QApplication::exec() : 0;
}

/// Pictures and --help work without a display too.
void doWithoutDisplay() {
#ifdef Q_OS_LINUX
  for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    if (!qEnvironmentVariableIsEmpty(variable)) return;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

}  // namespace

int main(int argumentCount, char** arguments) {
  doWithoutDisplay();
  const QApplication application(argumentCount, arguments);
  QApplication::setApplicationName("ledgertree-demo");
  QApplication::setApplicationVersion(LEDGERTREE_VERSION);
  QGuiApplication::setDesktopFileName("ledgertree-demo");
  const bool display = QGuiApplication::platformName() != "offscreen";
  NoticesPrinted notices;
  if (!display) QApplication::instance()->installEventFilter(&notices);
  try {
    return openChart(readOptions(application), display);
  } catch (const std::exception& failure) {
    if (display) {
      QMessageBox::critical(nullptr, QString(), QString::fromUtf8(failure.what()));
    } else {
      QTextStream(stderr) << QString::fromUtf8(failure.what()) << '\n';
    }
    return 1;
  }
}
