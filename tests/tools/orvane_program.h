// The program orvane as a user gives it to a shell, with documents and components of its own.
#pragma once

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "component/registration.h"
#include "tests/shell_command.h"

namespace orvane::tools {

class OrvaneProgram : public testing::Test {
 protected:
  using Text = std::string;

  OrvaneProgram() {
    Text sTemplate = (std::filesystem::temp_directory_path() / "orvane-XXXXXX").string();
    EXPECT_NE(mkdtemp(sTemplate.data()), nullptr);
    m_folder = sTemplate;
    Shell("chmod go-w '" + m_folder.string() + "'");
  }
  ~OrvaneProgram() override {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }

  struct Ended {
    int nStatus = -1;
    Text sOutput;
    Text sErrors;
  };
  /// The line, in which "orvane" is the program, for the folder of the test.
  Text InFolder(const Text& sLine) const {
    return "cd '" + m_folder.string() +
           "'; export TZ=UTC XDG_DATA_DIRS=/nowhere XDG_STATE_HOME=\"$PWD/state\" "
           "XDG_DATA_HOME=\"$PWD/data\"; orvane() { '" ORVANE_PROGRAM "' \"$@\"; }; " +
           sLine;
  }
  Ended Shell(const Text& sLine) const {
    const auto outcome = tests::RunInShell(InFolder("{ " + sLine + "; } 2> errors"));
    return {outcome.nStatus, outcome.sOutput, Read("errors")};
  }
  Ended Orvane(const Text& sArguments) const { return Shell("orvane " + sArguments); }

  Text Read(const Text& sName) const {
    std::ostringstream content;
    content << std::ifstream(m_folder / sName, std::ios::binary).rdbuf();
    return content.str();
  }
  void Write(const Text& sName, const Text& sContent) const {
    std::ofstream(m_folder / sName, std::ios::binary) << sContent;
  }
  /// The sample document with what stands there put into another's place.
  void WriteSample(const Text& sName, const Text& sBefore = {}, const Text& sAfter = {}) const {
    std::filesystem::copy_file(ORVANE_SAMPLE, m_folder / sName,
                               std::filesystem::copy_options::overwrite_existing);
    if (sBefore.empty()) return;
    Text sContent = Read(sName);
    const auto n = sContent.find(sBefore);
    ASSERT_NE(n, Text::npos) << sBefore;
    Write(sName, sContent.replace(n, sBefore.size(), sAfter));
  }

  std::filesystem::path m_folder;
};

}  // namespace orvane::tools
