#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>
#include <ledgertree/component_folder.h>
#include <ledgertree/demo_chart.h>
#include <ledgertree/ledger_tree_control.h>
#include <ledgertree/pictures.h>
#include <ledgertree/qt_desktop.h>
#include <ledgertree/screen_in_host.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>

namespace ledgertree {
namespace {

constexpr const char* kModalHost = "LEDGERTREE_TEST_MODAL_HOST";

/// A host: a window with a field above the chart's page and one below, and a shortcut that the chart has too.
class HostStory : public ::testing::Test {
 protected:
  HostStory() {
    createDemoChart(folder.filePath("chart.db").toStdString());
    control.OLEConnectionString("Provider=SQLite;Data Source=" + folder.filePath("chart.db").toStdString());
    control.UserID(1);
    window.setCentralWidget(new QWidget);
    auto* column = new QVBoxLayout(window.centralWidget());
    above = new QLineEdit;
    page = new QWidget;
    below = new QLineEdit;
    for (QWidget* part : {static_cast<QWidget*>(above), page, static_cast<QWidget*>(below)})
      column->addWidget(part, part == page ? 1 : 0);
    auto* note = new QAction(&window);
    note->setShortcut(QKeySequence("Ctrl+N"));
    QObject::connect(note, &QAction::triggered, [this] { ++notes; });
    window.addAction(note);
    window.resize(1200, 700);
    window.show();
    window.activateWindow();
    placeScreen(page);
    onScreenLeft([this] { ++left; });
  }
  ~HostStory() override {
    onScreenLeft({});
    answering(Qt::Key_Return, [] { EXPECT_TRUE(leaveScreen()); });
    placeScreen(nullptr);
    settle();
  }

  [[nodiscard]] QWidget* screen() { return window.findChild<QWidget*>("FormMain"); }
  [[nodiscard]] QWidget& part(const char* name) { return *screen()->findChild<QWidget*>(name); }
  [[nodiscard]] bool inScreen(QWidget* widget) {
    return screen() != nullptr && screen()->isAncestorOf(widget);
  }
  /// Runs `act`, and answers each question that appears meanwhile by pressing a key on its first button or
  /// its frame.
  static void answering(Qt::Key key, const std::function<void()>& act) {
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [key] {
      QWidget* question = QApplication::activeModalWidget();
      if (question == nullptr) return;
      // The focus is on "no": Tab moves it to "yes".
      if (key == Qt::Key_Return) QTest::keyClick(question->focusWidget(), Qt::Key_Tab);
      QTest::keyClick(question->focusWidget(), key == Qt::Key_Return ? Qt::Key_Space : key);
    });
    answer.start(1);
    act();
  }
  static void settle() { QTest::qWait(1); }

  QTemporaryDir folder;
  QMainWindow window;
  QLineEdit* above;
  QWidget* page;
  QLineEdit* below;
  LedgerTreeControl control;
  int notes = 0;
  int left = 0;
};

TEST_F(HostStory, TheScreenLivesInAPageOfTheHostsWindow) {
  control.ClearShow();
  settle();
  ASSERT_TRUE(screenIsOpen());
  EXPECT_EQ(screen()->parentWidget(), page);
  EXPECT_EQ(screen()->size(), page->size());
  EXPECT_EQ(QApplication::topLevelWidgets().count(&window), 1);
  EXPECT_FALSE(screen()->isWindow());
  EXPECT_THROW(createDemoChart(folder.filePath("chart.db").toStdString()), std::runtime_error)
      << "a chart is there";

  const int width = part("treeAccount").width();
  window.resize(1500, 900);
  settle();
  EXPECT_EQ(screen()->size(), page->size());
  EXPECT_GT(part("treeAccount").width(), width);

  // Tab goes through the host's window: into the screen, through it, and out.
  above->setFocus();
  QTest::keyClick(above, Qt::Key_Tab);
  EXPECT_TRUE(inScreen(QApplication::focusWidget()));
  int steps = 0;
  while (inScreen(QApplication::focusWidget()) && ++steps < 100)
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), below);
  QTest::keyClick(below, Qt::Key_Backtab);
  EXPECT_TRUE(inScreen(QApplication::focusWidget()));

  // A shortcut that both have belongs to the focused part.
  QTest::keyClick(below, Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(notes, 1);
  part("treeAccount").setFocus();
  QTest::keyClick(&part("treeAccount"), Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(notes, 1);
  EXPECT_TRUE(part("cmdSave").isEnabled());
}

TEST_F(HostStory, AHostThatClosesAsksTheScreenFirst) {
  EXPECT_TRUE(leaveScreen()) << "nothing is open";
  control.ClearShow();
  part("cmdNew").setFocus();
  QTest::mouseClick(&part("cmdNew"), Qt::LeftButton);
  answering(Qt::Key_Escape, [] { EXPECT_FALSE(leaveScreen()); });
  EXPECT_TRUE(screenIsOpen());
  settle();
  EXPECT_EQ(left, 0);

  answering(Qt::Key_Return, [] { EXPECT_TRUE(leaveScreen()); });
  EXPECT_FALSE(screenIsOpen());
  EXPECT_EQ(screen(), nullptr);
  settle();
  EXPECT_EQ(left, 1);

  // The user leaves the screen, and the host opens it again at once: the page is still needed.
  control.View(std::int32_t{1});
  QTest::mouseClick(&part("cmdExit"), Qt::LeftButton);
  control.ClearShow();
  settle();
  EXPECT_TRUE(screenIsOpen());
  EXPECT_EQ(left, 1);
}

TEST_F(HostStory, WhatDoesNotOpenLeavesThePageEmpty) {
  control.UserID(3);
  answering(Qt::Key_Escape, [this] { control.ClearShow(); });
  EXPECT_FALSE(screenIsOpen());
  control.UserID(1);
  control.OLEConnectionString("Provider=SQLite;Data Source=" +
                              folder.filePath("nowhere/chart.db").toStdString());
  EXPECT_THROW(control.ClearShow(), std::runtime_error);
  EXPECT_FALSE(screenIsOpen());
  EXPECT_EQ(screen(), nullptr);
  settle();
  EXPECT_EQ(left, 0);
}

TEST_F(HostStory, TheScreenIsDrawnIntoFiles) {
  control.ClearShow();
  const std::vector<std::string> drawn = drawScreens(folder.filePath("pictures").toStdString());
  ASSERT_EQ(drawn.size(), 4U);
  for (const std::string& picture : drawn) EXPECT_FALSE(QImage(picture.c_str()).isNull()) << picture;
}

TEST_F(HostStory, AScreenWhosePageIsGoneComesUpInTheNextOne) {
  control.ClearShow();
  delete page;
  settle();
  EXPECT_FALSE(screenIsOpen());
  page = new QWidget;
  window.centralWidget()->layout()->addWidget(page);
  placeScreen(page);
  control.ClearShow();
  settle();
  EXPECT_TRUE(screenIsOpen());
  EXPECT_EQ(screen()->parentWidget(), page);
}

TEST_F(HostStory, AHostWithoutModelessFormsGetsItsCallBackWhenTheScreenIsLeft) {
  if (!qEnvironmentVariableIsSet(kModalHost)) {
    // A process has one desktop, so this host runs in another one.
    qputenv(kModalHost, "1");
    EXPECT_EQ(
        QProcess::execute(QApplication::applicationFilePath(), {"--gtest_filter=*WithoutModelessForms*"}), 0);
    qunsetenv(kModalHost);
    return;
  }
  placeScreen(nullptr);
  QTimer::singleShot(0, [this] {
    EXPECT_TRUE(screenIsOpen());
    ++notes;
    EXPECT_TRUE(leaveScreen());
  });
  control.ClearShow();
  EXPECT_EQ(notes, 1);
  EXPECT_FALSE(screenIsOpen());
}

TEST_F(HostStory, APlugInThatOthersMayChangeIsToldOfAndTheInstalledOneServes) {
  const QString system = folder.filePath("System");
  EXPECT_TRUE(QDir().mkdir(system) && QFile(system + "/libPactKit.so").open(QFile::WriteOnly));
  QFile::setPermissions(system, QFile::Permissions(0x7777));
  SQLite::Database(folder.filePath("chart.db").toStdString(), SQLite::OPEN_READWRITE)
      .exec("update tblTarvoBasePath set BasePath = '" + folder.path().toStdString() + "/'");
  std::string told;
  onComponentRefused(
      [&](const std::string& file, const std::string& reason) { told = file + ", " + reason; });
  control.ClearShow();
  QStringList seen;
  QTimer person;
  QObject::connect(&person, &QTimer::timeout, [&] {
    if (QWidget* dialog = QApplication::activeModalWidget(); dialog != nullptr) {
      seen += dialog->objectName() + " " + dialog->windowTitle();
      dialog->close();
    }
  });
  person.start(1);
  screen()->findChild<QAction*>("mnuFonc5")->trigger();
  onComponentRefused({});
  EXPECT_EQ(told.find(system.toStdString() + "/libPactKit.so, ديگران اجازه نوشتن در «"), 0U) << told;
  EXPECT_EQ(seen.join('|').toStdString(), "NoticeDialog اشکال|frmCostCenters مراكز هزينه");
  EXPECT_THROW(trustComponentsBelow("System"), std::invalid_argument);
}

}  // namespace
}  // namespace ledgertree

int main(int argumentCount, char** arguments) {
  testing::InitGoogleTest(&argumentCount, arguments);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argumentCount, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  ledgertree::QtDesktopOptions options;
  if (qEnvironmentVariableIsSet(ledgertree::kModalHost)) options.modelessForms = false;
  ledgertree::installQtDesktop(options);
  return RUN_ALL_TESTS();
}
