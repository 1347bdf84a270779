// Runs the tests of a program without an event loop.
#include <gtest/gtest.h>

#include "tests/own_folders.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const orvane::tests::OwnFolders folders;
  return RUN_ALL_TESTS();
}
