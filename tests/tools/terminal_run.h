// A shell's line on a terminal of its own, with somebody who types.
#pragma once

#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace orvane::tools {

/// What is typed, or sent to the shell, once the terminal shows a text.
struct Typed {
  std::string sAt;
  std::string sText;
  int nSignal = 0;
};

struct TerminalRun {
  int nStatus = -1;
  std::string sSeen;
  bool bEchoes = false;  ///< at the end the terminal shows what is typed
};

/// Runs the line on a terminal of 4 lines of 20 characters.
inline TerminalRun RunOnTerminal(const std::string& sLine, const std::vector<Typed>& typed = {}) {
  winsize size{};
  size.ws_row = 4;
  size.ws_col = 20;
  int nTerminal = -1;
  const pid_t child = forkpty(&nTerminal, nullptr, nullptr, &size);
  if (child == 0) {
    execl("/bin/sh", "sh", "-c", sLine.c_str(), nullptr);
    _exit(127);
  }
  TerminalRun run;
  auto next = typed.begin();
  char character = 0;
  while (read(nTerminal, &character, 1) == 1) {
    run.sSeen += character;
    if (next == typed.end() || !run.sSeen.ends_with(next->sAt)) continue;
    if (next->nSignal != 0) kill(child, next->nSignal);
    if (write(nTerminal, next->sText.data(), next->sText.size()) < 0) break;
    ++next;
  }
  int nStatus = 0;
  waitpid(child, &nStatus, 0);
  termios now{};
  run.bEchoes = tcgetattr(nTerminal, &now) == 0 && (now.c_lflag & ECHO) != 0;
  close(nTerminal);
  if (WIFEXITED(nStatus)) run.nStatus = WEXITSTATUS(nStatus);
  return run;
}

}  // namespace orvane::tools
