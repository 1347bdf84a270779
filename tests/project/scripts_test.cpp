// What the scripts say when something does not go well, each run in a copy with tools that fail.
#include <gmock/gmock.h>

#include <fstream>

#include "tests/project/tree.h"
#include "tests/shell_command.h"

namespace orvane::project {
namespace {

namespace fs = std::filesystem;

class ScriptsTest : public testing::Test {
 protected:
  ScriptsTest() {
    std::string sTemplate = (fs::temp_directory_path() / "orvane-scripts-XXXXXX").string();
    m_folder = mkdtemp(sTemplate.data());
    fs::create_directory(m_folder / "tools");
    fs::copy(Root() / "scripts", m_folder / "scripts");
  }
  ~ScriptsTest() override { fs::remove_all(m_folder); }

  // A program that is found before the real one.
  void Stub(const std::string& sName, const std::string& sScript) const {
    const fs::path file = m_folder / "tools" / sName;
    std::ofstream(file) << "#!/bin/sh\n" << sScript;
    fs::permissions(file, fs::perms::owner_all);
  }
  tests::CommandOutcome Run(const std::string& sScript) const {
    return tests::RunInShell("PATH='" + (m_folder / "tools").string() + "':$PATH '" +
                             (m_folder / "scripts").string() + "/'" + sScript + " 2>&1");
  }

  fs::path m_folder;
};

TEST_F(ScriptsTest, a_failed_build_shows_its_first_error_and_ends_with_one_sentence) {
  Stub("cmake",
       "echo configured\n"
       "test \"$1\" = --build || exit 0\n"
       "echo '[1/9] a.cpp'\n"
       "echo 'a.cpp:3:5: error: this is wrong'\n"
       "for i in 1 2 3 4 5 6 7 8; do echo \"    3 | detail $i\"; done\n"
       "echo 'b.cpp:3:5: error: that is wrong as well'\n"
       "exit 1\n");
  const auto outcome = Run("build dev");
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_EQ(outcome.sOutput,
            "Building (dev)...\n"
            "a.cpp:3:5: error: this is wrong\n"
            "    3 | detail 1\n    3 | detail 2\n    3 | detail 3\n    3 | detail 4\n"
            "The build (dev) failed; above is its first error, and the whole log is in "
            "build/dev.log.\n");
  EXPECT_THAT(Content(m_folder / "build/dev.log"), testing::HasSubstr("that is wrong as well"));
}

TEST_F(ScriptsTest, a_build_that_fails_without_an_error_shows_the_end_of_its_log) {
  Stub("cmake", "for i in 1 2 3 4 5 6 7; do echo \"line $i\"; done\nexit 1\n");
  EXPECT_EQ(Run("build dev").sOutput,
            "Building (dev)...\nline 3\nline 4\nline 5\nline 6\nline 7\n"
            "The build (dev) failed; above is its first error, and the whole log is in "
            "build/dev.log.\n");
}

TEST_F(ScriptsTest, a_folder_of_another_build_program_is_configured_anew) {
  Stub("cmake",
       "echo \"$@\" >> said\n"
       "test \"$1\" = --preset || exit 0\n"
       "echo 'Error: generator : Ninja'\n"
       "echo 'Does not match the generator used previously: Unix Makefiles'\n"
       "exit 1\n");
  EXPECT_EQ(Run("build core").nStatus, 0);
  EXPECT_THAT(Lines(m_folder / "said"),
              testing::ElementsAre("--preset core", "--fresh --preset core",
                                   testing::StartsWith("--build --preset core")));
}

TEST_F(ScriptsTest, lines_of_the_toolkit_in_a_log_are_shown_and_fail) {
  const auto check = [&](const std::string& sLine) {
    const fs::path log = m_folder / "tour.log";
    std::ofstream(log) << "Toured 21 steps.\n" << sLine << "\nQueries of localhost\n";
    return Run("toolkit_lines '" + log.string() + "'");
  };
  const auto quiet = check("A quarter: 25 %");
  EXPECT_EQ(quiet.nStatus, 0);
  EXPECT_EQ(quiet.sOutput, "");
  for (const char* const sLine :
       {"qt.qpa.xcb: could not connect to display", "QObject::connect: No such signal",
        "QPainter::begin: Paint device returned engine == 0", "QWidget::setTabOrder: wrong",
        "QStandardPaths: XDG_RUNTIME_DIR not set", "QLayout: Attempting to add QLayout",
        "QFont::setPointSize: Point size <= 0 (0)", "QTreeView(0x1) has no model",
        "This plugin does not support propagateSizeHints()"}) {
    const auto outcome = check(sLine);
    EXPECT_EQ(outcome.nStatus, 1) << sLine;
    EXPECT_EQ(outcome.sOutput, "2:" + std::string(sLine) +
                                   "\nThe toolkit prints lines of its own into " +
                                   (m_folder / "tour.log").string() + "; they stand above.\n");
  }
  // Every stage that tours looks for them.
  EXPECT_THAT(Content(Root() / "test"),
              testing::HasSubstr("scripts/toolkit_lines build/tour.log\n"));
}

TEST_F(ScriptsTest, fuzzing_without_its_compiler_says_how_to_install_it) {
  Stub("clang++", "exit 127\n");
  const auto outcome = Run("fuzz 1");
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_EQ(outcome.sOutput,
            "Fuzzing needs clang with its own libraries, which are missing; install them with: "
            "apt-get install clang libclang-rt-dev\n");
}

// A copy of ./run with programs that only tell how they were called.
class RunScriptTest : public ScriptsTest {
 protected:
  RunScriptTest() {
    fs::copy(Root() / "run", m_folder / "run");
    fs::create_directories(m_folder / "packaging");
    std::ofstream(m_folder / "packaging/debian-packages.txt") << "# none\n";
    fs::create_directories(m_folder / "samples");
    std::ofstream(m_folder / "samples/Localhost.orvc") << "sample";
    std::ofstream(m_folder / "samples/Server.orvc") << "sample";
    fs::create_directories(m_folder / "build/release/bin");
    fs::create_directories(m_folder / "build/release/lib");
    Stub("cmake", "exit 0\n");
    for (const char* const sProgram :
         {"orvane-regsvr", "orvane-historian", "orvane-console", "orvane-tour"}) {
      Program(sProgram, "exit 0\n");
    }
  }
  void Program(const std::string& sName, const std::string& sScript) const {
    Stub(sName, "echo \"" + sName + " $1\" >> '" + (m_folder / "calls").string() + "'\n" + sScript);
    fs::rename(m_folder / "tools" / sName, m_folder / "build/release/bin" / sName);
  }
  /// A console that stays open until the recorder in the background has begun.
  void ConsoleBesideRecorder(const std::string& sScript = {}) const {
    Program("orvane-console", "until grep -qs 'orvane-historian record' '" +
                                  (m_folder / "calls").string() + "'; do sleep 0.01; done\n" +
                                  sScript);
  }
  tests::CommandOutcome Start(const std::string& sArguments = {}) const {
    return tests::RunInShell("cd '" + m_folder.string() + "' && DISPLAY=:7 XDG_DATA_HOME='" +
                             (m_folder / "data").string() + "' PATH='" +
                             (m_folder / "tools").string() + "':$PATH ./run " + sArguments +
                             " 2>&1");
  }
};

TEST_F(RunScriptTest, makes_no_historian_anew_and_opens_the_console_when_one_is_gone) {
  Program("orvane-historian", "echo 'It is gone.'\nexit 1\n");
  const auto outcome = Start();
  EXPECT_EQ(outcome.nStatus, 0) << outcome.sOutput;
  EXPECT_THAT(outcome.sOutput, testing::HasSubstr("It is gone."));
  const auto sCalls = Content(m_folder / "calls");
  EXPECT_THAT(sCalls, testing::HasSubstr("orvane-historian generate\norvane-console --registry\n"));
  EXPECT_THAT(sCalls, testing::Not(testing::HasSubstr("init")));
  EXPECT_THAT(sCalls, testing::Not(testing::HasSubstr("record")));
}

TEST_F(RunScriptTest, records_also_where_nothing_was_generated_into_a_catalog_of_the_user) {
  Program("orvane-historian", "[ \"$1\" != generate ] || { echo 'It is yours.'; exit 2; }\n");
  ConsoleBesideRecorder();
  const auto outcome = Start();
  EXPECT_EQ(outcome.nStatus, 0) << outcome.sOutput;
  EXPECT_THAT(outcome.sOutput, testing::HasSubstr("It is yours."));
  const auto sCalls = Content(m_folder / "calls");
  EXPECT_THAT(sCalls, testing::HasSubstr("orvane-historian record"));
  EXPECT_THAT(sCalls, testing::HasSubstr("orvane-console --registry\n"));
}

TEST_F(RunScriptTest, opens_the_console_on_a_server_of_its_own_that_ends_with_it) {
  ConsoleBesideRecorder("cat \"$PGSERVICEFILE\"\n");
  Program("server", "[ \"$1\" = stop ] || printf '54399\\nsesame\\n'\n");
  fs::remove(m_folder / "scripts/server");
  fs::rename(m_folder / "build/release/bin/server", m_folder / "scripts/server");
  const auto outcome = Start("--server");
  EXPECT_EQ(outcome.nStatus, 0) << outcome.sOutput;
  EXPECT_THAT(outcome.sOutput,
              testing::HasSubstr("Log on to service=orvane as orvane with the password sesame\n"));
  EXPECT_THAT(outcome.sOutput,
              testing::HasSubstr("[orvane]\nhost=127.0.0.1\nport=54399\ndbname=orvane\n"));
  const auto sCalls = Content(m_folder / "calls");
  EXPECT_THAT(sCalls, testing::StartsWith("orvane-regsvr --registry\nserver start\n"));
  EXPECT_THAT(sCalls, testing::HasSubstr("orvane-historian record\n"));
  EXPECT_THAT(sCalls, testing::HasSubstr("orvane-console --registry\n"));
  EXPECT_THAT(sCalls, testing::EndsWith("server stop\n"));
  EXPECT_EQ(Content(m_folder / "data/orvane/documents/Server.orvc"), "sample");
}

TEST_F(RunScriptTest, gives_the_user_a_sample_of_his_own_that_nobody_else_reads) {
  ConsoleBesideRecorder();
  EXPECT_EQ(Start().nStatus, 0);
  const auto sample = m_folder / "data/orvane/documents/Localhost.orvc";
  EXPECT_EQ(Content(sample), "sample");
  EXPECT_EQ(fs::status(sample).permissions() & fs::perms::mask, fs::perms(0600));
  EXPECT_EQ(fs::status(sample.parent_path()).permissions() & fs::perms::mask, fs::perms(0700));
  EXPECT_THAT(Content(m_folder / "calls"), testing::HasSubstr("orvane-historian record"));
}

}  // namespace
}  // namespace orvane::project
