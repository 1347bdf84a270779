// The program orvane-historian as it is called from a shell, on a root of its own.
#pragma once

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/wait.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/provider/temporary_root.h"

extern char** environ;

namespace orvane::tools {

struct Outcome {
  int nStatus = -1;
  platform::Text sOutput;
  platform::Text sErrors;
};

class HistorianProgram : public testing::Test {
 protected:
  using Text = platform::Text;

  // What it remembers is gone with the root.
  HistorianProgram() { setenv("XDG_STATE_HOME", (m_root.Path() / "state").c_str(), 1); }
  // Starts the program with its output in files, whose names begin with the prefix.
  pid_t Start(std::vector<Text> arguments, const Text& sPrefix = {}) {
    arguments.insert(arguments.begin(), {ORVANE_HISTORIAN, "--root", m_root.Path().string()});
    std::vector<char*> pointers;
    for (auto& sArgument : arguments) pointers.push_back(sArgument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const auto redirect = [&](int nFile, const Text& sName) {
      posix_spawn_file_actions_addopen(&actions, nFile, (m_root.Path() / (sPrefix + sName)).c_str(),
                                       O_WRONLY | O_CREAT | O_TRUNC, 0644);
    };
    redirect(1, "output");
    redirect(2, "errors");
    pid_t process = 0;
    EXPECT_EQ(posix_spawn(&process, ORVANE_HISTORIAN, &actions, nullptr, pointers.data(), environ),
              0);
    posix_spawn_file_actions_destroy(&actions);
    return process;
  }
  Outcome End(pid_t process, const Text& sPrefix = {}) {
    int nStatus = 0;
    waitpid(process, &nStatus, 0);
    return {WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1, ReadFile(sPrefix + "output"),
            ReadFile(sPrefix + "errors")};
  }
  Outcome Run(std::vector<Text> arguments, const Text& sPrefix = {}) {
    return End(Start(std::move(arguments), sPrefix), sPrefix);
  }

  Text ReadFile(const Text& sName) const {
    std::ostringstream content;
    content << std::ifstream(m_root.Path() / sName).rdbuf();
    return content.str();
  }
  Text WriteFile(const char* sName, const Text& sContent) const {
    std::ofstream(m_root.Path() / sName, std::ios::binary) << sContent;
    return (m_root.Path() / sName).string();
  }
  std::unique_ptr<ado::Session> Open() const {
    provider::HistorianProvider provider(provider::PlaceAt(m_root.Path()));
    return provider.Open(ado::ConnectionSettings::Parse(""), "", {});
  }
  Text Select(const Text& sText) const {
    return provider::Rows(*Open()->Execute({sText, 0, {}}, {}).recordset);
  }
  static constexpr const char* kSamples = "SELECT count(*) FROM Machine..Data WHERE Tag = 'load.1'";
  // False as well while the catalog is not there.
  bool HasMoreSamples(int nThan) const {
    try {
      return std::stoi(Select(kSamples)) > nThan;
    } catch (const platform::Failure&) {
      return false;
    }
  }
  void MakePlant() const { Open()->Execute({"CREATE DATABASE \"Plant1\" ", 0, {}}, {}); }
  Outcome Import(const Text& sContent, const Text& sTable = "Data") {
    return Run({"import", WriteFile("rows.csv", sContent), "--catalog", "Plant1", "--table", sTable,
                "--time-zone", "UTC"});
  }

  // Ends when that holds, such as that a recorder which has just been started has written rows; a
  // test whose condition never holds is ended by the test program's own time-out.
  template <class Test>
  static void AwaitRows(Test&& hasRows) {
    while (!hasRows()) std::this_thread::yield();
  }

  provider::TemporaryRoot m_root;
};

}  // namespace orvane::tools
