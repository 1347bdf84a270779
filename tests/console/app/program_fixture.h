// A program as a user starts it, with data, settings and registry of its own. For the tests of the
// programs around the window.
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include "component/registration.h"

namespace orvane::console {

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
      component::RegisterLibrary(sLibrary, m_folder.filePath("components").toStdString());
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

}  // namespace orvane::console
