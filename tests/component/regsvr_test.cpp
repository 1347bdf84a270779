// The program orvane-regsvr as it is called from a shell.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "component/registry.h"
#include "tests/component/temporary_folder.h"
#include "tests/shell_command.h"

namespace orvane::component {
namespace {

using test::Fixture;
using test::TemporaryFolder;
using test::WriteText;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct Outcome {
  int nStatus = -1;
  std::string sOutput;
  std::string sErrors;
};

class RegsvrTest : public testing::Test {
 protected:
  RegsvrTest() {
    // Beside the one that was built lie the components that were built.
    std::filesystem::create_directories(m_folder / "program/bin");
    std::filesystem::copy_file(ORVANE_REGSVR, m_folder / "program/bin/orvane-regsvr");
  }

  // Data folders of the test's own, so that nothing of this machine is seen or changed.
  Outcome Run(const std::string& sArguments) {
    const std::string sErrors = m_folder / "errors";
    const std::string sCommand = "XDG_DATA_HOME='" + (m_folder / "user").string() +
                                 "' XDG_DATA_DIRS='" + (m_folder / "system").string() + "' '" +
                                 (m_folder / "program/bin/orvane-regsvr").string() + "' " +
                                 sArguments + " 2>'" + sErrors + "'";
    const auto ended = tests::RunInShell(sCommand);
    return {ended.nStatus, ended.sOutput, test::ReadText(sErrors)};
  }

  bool IsRegistered(const std::string& sFolder) {
    return Registry({m_folder / sFolder}).Find("Fixture.Note").has_value();
  }

  TemporaryFolder m_folder;
};

TEST_F(RegsvrTest, it_registers_for_the_user_and_takes_out_again) {
  const auto registered = Run(Fixture("good").string());
  EXPECT_EQ(registered.nStatus, 0);
  EXPECT_EQ(registered.sOutput, "Registered Fixture.Note.\n");
  EXPECT_EQ(registered.sErrors, "");
  EXPECT_TRUE(IsRegistered("user/orvane/components"));
  const auto unregistered = Run("-u " + Fixture("good").string());
  EXPECT_EQ(unregistered.nStatus, 0);
  EXPECT_EQ(unregistered.sOutput, "Unregistered Fixture.Note.\n");
  EXPECT_FALSE(IsRegistered("user/orvane/components"));
}

TEST_F(RegsvrTest, it_registers_for_the_system_or_in_a_folder) {
  EXPECT_EQ(Run("--system " + Fixture("good").string()).nStatus, 0);
  EXPECT_TRUE(IsRegistered("system/orvane/components"));
  EXPECT_EQ(
      Run("--registry '" + (m_folder / "own").string() + "' " + Fixture("good").string()).nStatus,
      0);
  EXPECT_TRUE(IsRegistered("own"));
  EXPECT_FALSE(IsRegistered("user/orvane/components"));
}

TEST_F(RegsvrTest, a_failure_is_one_sentence_and_status_1_and_the_others_are_registered) {
  const auto outcome = Run(Fixture("throws_RegisterServer").string() + " /nowhere/at/all.so " +
                           Fixture("good").string());
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_EQ(outcome.sOutput, "Registered Fixture.Note.\n");
  EXPECT_EQ(outcome.sErrors,
            "The component \"" +
                std::filesystem::canonical(Fixture("throws_RegisterServer")).string() +
                "\" broke off in DllRegisterServer (the fixture throws); ask its maker for a "
                "corrected one.\n"
                "The library \"/nowhere/at/all.so\" is missing; install its component again, or "
                "register the library where it is now.\n");
}

TEST_F(RegsvrTest, what_would_kill_or_hang_it_is_a_sentence_each) {
  const auto cut = m_folder / "cut.so";
  WriteText(cut, test::ReadText(Fixture("good")).substr(0, 8192));
  const auto pipe = m_folder / "pipe.so";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const char* sOption : {"", "-u "}) {
    const auto outcome = Run(sOption + cut.string() + " " + pipe.string());
    EXPECT_EQ(outcome.nStatus, 1);
    EXPECT_EQ(outcome.sErrors, "The library \"" + cut.string() +
                                   "\" is cut off or damaged; install its component again.\n"
                                   "The library \"" +
                                   pipe.string() +
                                   "\" is no file; name the component's library.\n");
  }
  std::filesystem::create_directories(m_folder / "user/orvane/components");
  ASSERT_EQ(mkfifo((m_folder / "user/orvane/components/a.json").c_str(), 0600), 0);
  EXPECT_THAT(Run("--list").sErrors, HasSubstr("a.json\" cannot be read"));
}

TEST_F(RegsvrTest, it_lists_what_is_registered_anywhere_or_in_one_place) {
  EXPECT_EQ(Run("--system " + Fixture("good").string()).nStatus, 0);
  const auto all = Run("--list");
  EXPECT_EQ(all.nStatus, 0);
  EXPECT_EQ(all.sOutput, "Fixture.Note\tObject\t1.0\t" +
                             std::filesystem::canonical(Fixture("good")).string() + "\n");
  EXPECT_EQ(Run("--list --user").sOutput, "");
}

TEST_F(RegsvrTest, a_damaged_file_is_told_beside_the_list) {
  EXPECT_EQ(Run(Fixture("good").string()).nStatus, 0);
  WriteText(m_folder / "user/orvane/components/bad.json", "{");
  const auto outcome = Run("--list");
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_THAT(outcome.sOutput, StartsWith("Fixture.Note\t"));
  EXPECT_THAT(outcome.sErrors, HasSubstr("bad.json\" is damaged; register"));
}

TEST_F(RegsvrTest, a_command_line_that_makes_no_sense_is_one_sentence_and_status_1) {
  for (const char* const sArguments :
       {"", "-u", "--user --system x.so", "--list x.so", "--list -u", "--what", "--registry"}) {
    const auto outcome = Run(sArguments);
    EXPECT_EQ(outcome.nStatus, 1) << sArguments;
    EXPECT_THAT(outcome.sErrors, EndsWith("; see orvane-regsvr --help.\n")) << sArguments;
    EXPECT_EQ(std::count(outcome.sErrors.begin(), outcome.sErrors.end(), '\n'), 1) << sArguments;
    EXPECT_THAT(outcome.sOutput, IsEmpty()) << sArguments;
  }
  EXPECT_EQ(Run("--what").sErrors,
            "The following argument was not expected: --what; see orvane-regsvr --help.\n");
  EXPECT_EQ(Run("").sErrors, "Name a library to register, or --list; see orvane-regsvr --help.\n");
}

TEST_F(RegsvrTest, help_and_version_are_no_failures) {
  EXPECT_EQ(Run("--help").nStatus, 0);
  EXPECT_THAT(Run("--help").sOutput, HasSubstr("LIBRARY"));
  EXPECT_EQ(Run("--version").nStatus, 0);
}

}  // namespace
}  // namespace orvane::component
