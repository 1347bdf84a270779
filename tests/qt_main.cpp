// Runs the tests of a program with windows: one QApplication around all of them, settings and data
// in a folder of their own, so that no test reads or leaves anything in the user's.
#include <gmock/gmock.h>

#include <QApplication>
#include <QStandardPaths>

#include "console/app/threads_end.h"

int main(int argc, char** argv) {
  // Windows are drawn offscreen, also while the cases are only listed, unless told otherwise.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleMock(&argc, argv);
  QStandardPaths::setTestModeEnabled(true);
  const orvane::console::ThreadsEnd threadsEnd;
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
