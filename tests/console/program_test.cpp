// The program itself, as a user starts it: its command line, and the tour through the components
// of this build tree on a historian of its own.
#include <gmock/gmock.h>

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include "component/registration.h"
#include "component/version_section.h"

namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() {
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert("XDG_DATA_HOME", m_folder.filePath("data"));
    m_environment.insert("XDG_STATE_HOME", m_folder.filePath("state"));
    m_environment.insert("XDG_CONFIG_HOME", m_folder.filePath("config"));
    m_environment.insert("QT_QPA_PLATFORM", "offscreen");
    // Memory is the other tests' subject; here a report would end up in the exit status.
    m_environment.insert("ASAN_OPTIONS", "detect_leaks=0");
  }

  struct Outcome {
    int iExit = -1;
    std::string sOut;
    std::string sError;
  };
  Outcome Run(const char* sProgram, const QStringList& arguments) {
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(sProgram, arguments);
    if (!process.waitForFinished(240'000)) {
      process.kill();
      process.waitForFinished();
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
  }
  // The toolkit may say something of its own before the program does.
  static std::string LastLine(const std::string& sText) {
    if (sText.size() < 2) return sText;
    return sText.substr(sText.rfind('\n', sText.size() - 2) + 1);
  }
  Outcome RunConsole(QStringList arguments) {
    arguments << "--registry" << m_folder.filePath("components");
    return Run(ORVANE_CONSOLE, arguments);
  }
  void RegisterComponents() {
    for (const char* sLibrary : {ORVANE_SNAP_IN, ORVANE_CONTROLS, ORVANE_PROVIDER}) {
      orvane::component::RegisterLibrary(sLibrary, m_folder.filePath("components").toStdString());
    }
  }
  void FillHistorian() {
    for (const auto& arguments : {QStringList{"init"}, QStringList{"generate", "--hours", "1"},
                                  QStringList{"record", "--count", "2"}}) {
      const auto outcome = Run(ORVANE_HISTORIAN, arguments);
      ASSERT_EQ(outcome.iExit, 0) << outcome.sError;
    }
  }

  QTemporaryDir m_folder;
  QProcessEnvironment m_environment;
};

TEST(program_files, carry_version_1_0_0_1_as_file_and_product_version) {
  for (const char* sFile : {ORVANE_CONSOLE, ORVANE_SNAP_IN, ORVANE_CONTROLS, ORVANE_PROVIDER}) {
    const auto info = orvane::component::ReadVersionSection(std::filesystem::path(sFile));
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
  EXPECT_THAT(outcome.sOut, HasSubstr("--tour"));
}

TEST_F(ProgramTest, unknown_option_is_one_sentence_and_status_1) {
  for (const auto& arguments : {QStringList{"--no-such-option"}, QStringList{"--tour"},
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
  for (const auto& arguments : {QStringList{"missing.orvc"},
                                QStringList{"--tour", m_folder.filePath("tour"), "missing.orvc"}}) {
    const auto outcome = RunConsole(arguments);
    EXPECT_EQ(outcome.iExit, 1);
    EXPECT_EQ(outcome.sOut, "");
    EXPECT_EQ(LastLine(outcome.sError),
              "orvane-console: There is no document missing.orvc; check its name, or start "
              "without one.\n");
  }
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
            "that runs, or use --tour with QT_QPA_PLATFORM=offscreen.\n");
  m_environment.remove("DISPLAY");
  outcome = RunConsole({});
  EXPECT_EQ(outcome.iExit, 69);
  EXPECT_EQ(outcome.sError,
            "orvane-console: there is no display to show a window on; start it on a desktop, or "
            "use --tour with QT_QPA_PLATFORM=offscreen.\n");
}

TEST_F(ProgramTest, tour_does_the_main_job_and_leaves_texts_pictures_and_a_copy) {
  RegisterComponents();
  FillHistorian();
  const auto sTour = m_folder.filePath("tour");
  const auto outcome = RunConsole({"--tour", sTour, ORVANE_SAMPLE});
  ASSERT_EQ(outcome.iExit, 0) << outcome.sError;
  EXPECT_EQ(outcome.sError, "");
  EXPECT_THAT(outcome.sOut, HasSubstr("ORVANE Servers\n  localhost\n    Catalogs\n"));
  EXPECT_THAT(outcome.sOut, HasSubstr("\n      Machine\n        Data\n"));
  EXPECT_THAT(outcome.sOut, HasSubstr("\n    Queries\n      Processor load, last hour\n"));
  EXPECT_THAT(outcome.sOut, ContainsRegex("Table Machine..Data\n  Tag +Timestamp +Value"));
  EXPECT_THAT(outcome.sOut, HasSubstr("cpu."));
  EXPECT_THAT(outcome.sOut, ContainsRegex("Structure of Data\n  Column name +Data type"));
  EXPECT_THAT(outcome.sOut, HasSubstr("Query \"Processor load, last hour\""));
  for (const char* sName :
       {"1-logon.png", "2-tree.png", "3-table.png", "4-structure.png", "5-query.png"}) {
    EXPECT_FALSE(QImage(QDir(sTour).filePath(sName)).isNull()) << sName;
  }
  // The copy is a document like any other.
  EXPECT_EQ(
      RunConsole({"--tour", m_folder.filePath("again"), QDir(sTour).filePath("copy.orvc")}).iExit,
      0);
}

TEST_F(ProgramTest, tour_without_components_ends_with_one_sentence) {
  const auto outcome = RunConsole({"--tour", m_folder.filePath("tour"), ORVANE_SAMPLE});
  EXPECT_EQ(outcome.iExit, 1);
  EXPECT_THAT(outcome.sError, HasSubstr("ORVOLEDBSnapIn"));
}

TEST_F(ProgramTest, tour_needs_a_document) {
  const auto outcome = RunConsole({"--tour", m_folder.filePath("tour")});
  EXPECT_EQ(outcome.iExit, 1);
  EXPECT_EQ(LastLine(outcome.sError),
            "orvane-console: A tour needs a document to open; name one after the folder.\n");
}

}  // namespace
