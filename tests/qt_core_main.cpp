// Runs the tests of a program that has an event loop and no windows.
#include <gmock/gmock.h>

#include <QCoreApplication>

#include "tests/own_folders.h"

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const orvane::tests::OwnFolders folders;
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
