#include "platform/console_version.h"

#include <gtest/gtest.h>

#include "tests/fakes/file_version.h"

namespace orvane::platform {
namespace {

using fakes::FakeFileVersion;

bool AtLeast51(std::uint32_t dwMajor, std::uint32_t dwMinor, std::uint32_t dwBuild,
               std::uint32_t dwRevision) {
  FakeFileVersion functions;
  functions.info = FakeFileVersion::Product(dwMajor, dwMinor, dwBuild, dwRevision);
  return IsConsoleAtLeast51(ReadConsoleVersion(functions));
}

TEST(console_version, is_the_product_version_of_the_main_executable) {
  FakeFileVersion functions;
  functions.info = FakeFileVersion::Product(5, 1, 2600, 7);
  const ConsoleVersion version = ReadConsoleVersion(functions);
  EXPECT_EQ(version.Major, 5);
  EXPECT_EQ(version.Minor, 1);
  EXPECT_EQ(version.Build, 2600);
  EXPECT_EQ(version.Revision, 7);
  EXPECT_TRUE(functions.bAskedForMain);
  EXPECT_EQ(functions.dwPathSize, 260U);
  EXPECT_EQ(functions.sPathAsked, "/opt/console");
  EXPECT_EQ(functions.sSubBlockAsked, "\\");
  EXPECT_EQ(functions.nMoved, 52U);
}

TEST(console_version, of_the_components_own_record_is_1_0_0_1) {
  FakeFileVersion functions;
  functions.info = FakeFileVersion::Product(1, 0, 0, 1);
  EXPECT_EQ(ReadConsoleVersion(functions),
            (ConsoleVersion{.Minor = 0, .Major = 1, .Revision = 1, .Build = 0}));
}

TEST(console_version, is_zero_when_the_path_is_empty) {
  FakeFileVersion functions;
  functions.sPath.clear();
  EXPECT_EQ(ReadConsoleVersion(functions), ConsoleVersion{});
  EXPECT_EQ(functions.sPathAsked, "") << "nothing further is asked";
}

TEST(console_version, of_a_very_long_path_is_asked_with_the_path_cut_to_fit) {
  FakeFileVersion functions;
  functions.sPath = std::string(400, 'x');
  ReadConsoleVersion(functions);
  EXPECT_EQ(functions.sPathAsked, std::string(259, 'x'));
}

TEST(console_version, is_zero_without_a_version_resource) {
  FakeFileVersion functions;
  functions.dwBlockSize = 0;
  EXPECT_EQ(ReadConsoleVersion(functions), ConsoleVersion{});
  EXPECT_FALSE(IsConsoleAtLeast51(ConsoleVersion{}));
}

TEST(console_version, is_zero_when_the_block_cannot_be_had) {
  FakeFileVersion functions;
  functions.bFailBlock = true;
  EXPECT_EQ(ReadConsoleVersion(functions), ConsoleVersion{});
}

TEST(console_version, is_zero_when_the_record_cannot_be_had) {
  FakeFileVersion functions;
  functions.bFailQuery = true;
  EXPECT_EQ(ReadConsoleVersion(functions), ConsoleVersion{});
}

TEST(console_version, is_zero_when_the_record_is_too_short) {
  FakeFileVersion functions;
  functions.dwValueLength = 51;
  EXPECT_EQ(ReadConsoleVersion(functions), ConsoleVersion{});
  EXPECT_EQ(functions.nMoved, 0U);
}

TEST(console_version, at_least_51_begins_with_5_1_2600_0) {
  EXPECT_TRUE(AtLeast51(5, 1, 2600, 0));
  EXPECT_TRUE(AtLeast51(5, 1, 2600, 1));
  EXPECT_TRUE(AtLeast51(5, 1, 2601, 0));
  EXPECT_FALSE(AtLeast51(5, 1, 2599, 0));
  EXPECT_FALSE(AtLeast51(5, 1, 2599, 9999));
  EXPECT_FALSE(AtLeast51(5, 0, 9999, 0));
  EXPECT_TRUE(AtLeast51(5, 2, 0, 0));
  EXPECT_TRUE(AtLeast51(6, 0, 0, 0));
  EXPECT_TRUE(AtLeast51(7, 0, 0, 0));
  EXPECT_FALSE(AtLeast51(4, 9, 9999, 0));
  EXPECT_FALSE(AtLeast51(0, 0, 0, 0));
}

TEST(console_version, at_least_51_reads_its_parts_as_signed) {
  EXPECT_TRUE(AtLeast51(5, 1, 2600, 32767));
  EXPECT_FALSE(AtLeast51(5, 1, 2600, 32768));
  EXPECT_TRUE(AtLeast51(5, 1, 2601, 32768));
  EXPECT_TRUE(AtLeast51(5, 1, 32767, 0));
  EXPECT_FALSE(AtLeast51(5, 1, 32768, 0));
  EXPECT_FALSE(AtLeast51(5, 32768, 0, 0));
  EXPECT_FALSE(AtLeast51(32768, 0, 0, 0));
}

}  // namespace
}  // namespace orvane::platform
