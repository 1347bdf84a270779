// A command as a user gives it to a shell, for the tests of programs and scripts.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace orvane::tests {

struct CommandOutcome {
  int nStatus = -1;  ///< -1 when a signal ended it
  std::string sOutput;
};

inline CommandOutcome RunInShell(const std::string& sCommand) {
  CommandOutcome outcome;
  std::FILE* const pipe = popen(sCommand.c_str(), "r");
  if (pipe == nullptr) return outcome;
  char buffer[256];
  while (const auto n = std::fread(buffer, 1, sizeof buffer, pipe)) {
    outcome.sOutput.append(buffer, n);
  }
  const int nStatus = pclose(pipe);
  outcome.nStatus = WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
  return outcome;
}

}  // namespace orvane::tests
