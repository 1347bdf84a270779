// Runs the tests of a program with windows: one QApplication around all of them, on the smallest
// screen that the program is made for; settings and data in a folder of their own, so that no test
// reads or leaves anything in the user's.
#include <gmock/gmock.h>

#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryFile>

#include "console/app/threads_end.h"
#include "tests/own_folders.h"

namespace {

/// Windows are drawn offscreen, also while the cases are only listed, unless told otherwise.
void ChooseScreen(QTemporaryFile& description) {
  const auto sPlatform = qEnvironmentVariable("QT_QPA_PLATFORM", "offscreen");
  if (sPlatform != "offscreen" || !description.open()) return;
  description.write(R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": 1366, "height": 768,
                                     "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
  description.close();
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + description.fileName().toUtf8());
}

}  // namespace

int main(int argc, char** argv) {
  QTemporaryFile screen;
  ChooseScreen(screen);
  testing::InitGoogleMock(&argc, argv);
  const orvane::tests::OwnFolders folders;
  QStandardPaths::setTestModeEnabled(true);
  const orvane::console::ThreadsEnd threadsEnd;
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
