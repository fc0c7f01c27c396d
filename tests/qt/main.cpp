#include <gtest/gtest.h>

#include <QApplication>

int main(int argumentCount, char** arguments) {
  testing::InitGoogleTest(&argumentCount, arguments);
  // The real display isn't needed, and would interfere with the focus.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argumentCount, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  const int failed = RUN_ALL_TESTS();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  return failed;
}
