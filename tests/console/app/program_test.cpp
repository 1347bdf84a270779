// The program orvane-console as a user starts it: its command line, and what it says when it cannot
// begin.
#include <gmock/gmock.h>

#include "component/version_section.h"
#include "tests/console/app/program_fixture.h"

namespace orvane::console {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

TEST(program_files, carry_version_1_0_0_1_as_file_and_product_version) {
  for (const char* sFile : {ORVANE_CONSOLE, ORVANE_SNAP_IN, ORVANE_CONTROLS, ORVANE_PROVIDER}) {
    const auto info = component::ReadVersionSection(std::filesystem::path(sFile));
    ASSERT_TRUE(info) << sFile;
    // Major and minor in the upper number, build and revision in the lower one.
    EXPECT_EQ(info->dwFileVersionMS, 0x0001'0000U) << sFile;
    EXPECT_EQ(info->dwFileVersionLS, 0x0000'0001U) << sFile;
    EXPECT_EQ(info->dwProductVersionMS, 0x0001'0000U) << sFile;
    EXPECT_EQ(info->dwProductVersionLS, 0x0000'0001U) << sFile;
  }
}

TEST_F(ProgramTest, version_and_help_need_no_window_system) {
  m_environment.insert("QT_QPA_PLATFORM", "no such platform");
  auto outcome = Run(ORVANE_CONSOLE, {"--version"});
  EXPECT_EQ(outcome.iExit, 0);
  EXPECT_EQ(outcome.sOut, std::string("orvane-console ") + ORVANE_VERSION + "\n");
  outcome = Run(ORVANE_CONSOLE, {"--help"});
  EXPECT_EQ(outcome.iExit, 0);
  EXPECT_THAT(outcome.sOut, HasSubstr("--registry"));
}

TEST_F(ProgramTest, unknown_option_is_one_sentence_and_status_1) {
  for (const auto& arguments : {QStringList{"--no-such-option"}, QStringList{"--registry"},
                                QStringList{"one.orvc", "two.orvc"}}) {
    const auto outcome = Run(ORVANE_CONSOLE, arguments);
    EXPECT_EQ(outcome.iExit, 1);
    EXPECT_EQ(outcome.sOut, "");
    EXPECT_THAT(LastLine(outcome.sError), StartsWith("orvane-console: "));
    EXPECT_THAT(outcome.sError, EndsWith("; see orvane-console --help.\n"));
  }
  m_environment.insert("QT_QPA_PLATFORM", "no such platform");
  EXPECT_EQ(Run(ORVANE_CONSOLE, {"--no-such-option"}).sError,
            "orvane-console: The following argument was not expected: --no-such-option; see "
            "orvane-console --help.\n");
}

TEST_F(ProgramTest, options_of_the_toolkit_are_left_to_it) {
  for (const auto& arguments : {QStringList{"-platform", "offscreen", "missing.orvc"},
                                QStringList{"missing.orvc", "--style=fusion"}}) {
    EXPECT_THAT(LastLine(RunConsole(arguments).sError),
                StartsWith("orvane-console: There is no document missing.orvc"));
  }
}

TEST_F(ProgramTest, missing_document_is_one_sentence_and_status_1) {
  const auto outcome = RunConsole({"missing.orvc"});
  EXPECT_EQ(outcome.iExit, 1);
  EXPECT_EQ(outcome.sOut, "");
  EXPECT_EQ(LastLine(outcome.sError),
            "orvane-console: There is no document missing.orvc; check its name, or start "
            "without one.\n");
}

TEST_F(ProgramTest, display_that_cannot_be_used_ends_with_one_sentence_and_a_status_of_its_own) {
  m_environment.insert("QT_QPA_PLATFORM", "xcb");
  m_environment.insert("DISPLAY", ":987");
  m_environment.remove("WAYLAND_DISPLAY");
  auto outcome = RunConsole({});
  EXPECT_EQ(outcome.iExit, 69);
  EXPECT_EQ(outcome.sOut, "");
  EXPECT_EQ(outcome.sError,
            "orvane-console: the display \":987\" cannot be used; start the program on a desktop "
            "that runs, or use orvane-tour, which needs none.\n");
  m_environment.remove("DISPLAY");
  outcome = RunConsole({});
  EXPECT_EQ(outcome.iExit, 69);
  EXPECT_EQ(outcome.sError,
            "orvane-console: there is no display to show a window on; start it on a desktop, or "
            "use orvane-tour, which needs none.\n");
}

}  // namespace
}  // namespace orvane::console
