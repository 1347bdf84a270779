// Runs the whole job on a screen of its own: an X server, a window manager, settings and data in
// folders that nobody else uses.
#include <gmock/gmock.h>

#include <QApplication>
#include <QTemporaryDir>
#include <iostream>

#include "console/app/appearance.h"
#include "console/app/threads_end.h"
#include "tests/console/whole_job/new_user.h"
#include "tests/console/whole_job/x_screen.h"

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  // Listing the cases needs no screen.
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  const QTemporaryDir folder;
  orvane::console::BeginAsNewUser(folder.path().toStdString());
  try {
    const orvane::console::XScreen screen;
    const orvane::console::ThreadsEnd threadsEnd;
    QApplication application(argc, argv);
    orvane::console::PrepareApplication(application);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
  } catch (const std::exception& e) {
    std::cerr << e.what() << '\n';
    return 1;
  }
}
