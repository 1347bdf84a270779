// Runs the tests of a program with windows: one QApplication around all of them, settings and data
// in a folder of their own, so that no test reads or leaves anything in the user's.
#include <gmock/gmock.h>

#include <QApplication>
#include <QStandardPaths>

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  QStandardPaths::setTestModeEnabled(true);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
