#include "tests/console/whole_job/x_screen.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "tests/console/whole_job/x_input.h"

namespace orvane::console {

namespace {

constexpr int kSettlingMilliseconds = 60'000;

pid_t Start(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (auto& sWord : words) arguments.push_back(sWord.data());
  arguments.push_back(nullptr);
  const pid_t pid = fork();
  if (pid == 0) {
    // Nothing of it is left when the test is killed.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    execvp(arguments.front(), arguments.data());
    _exit(127);
  }
  return pid;
}

void End(pid_t pid) {
  if (pid <= 0) return;
  kill(pid, SIGTERM);
  waitpid(pid, nullptr, 0);
}

/// The server says which display it took when it is ready for clients.
std::string ReadDisplay(int iFile) {
  std::string sText;
  pollfd waiting{iFile, POLLIN, 0};
  char c = 0;
  while (poll(&waiting, 1, kSettlingMilliseconds) > 0 && read(iFile, &c, 1) == 1) {
    if (c == '\n') return ":" + sText;
    sText += c;
  }
  throw std::runtime_error("Xvfb did not start; is the package xvfb installed?");
}

}  // namespace

XScreen::XScreen() {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("There is no pipe to be had.");
  m_server = Start({"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", "1280x960x24",
                    "-nolisten", "tcp", "-noreset", "-dpi", "96"});
  close(ends[1]);
  try {
    m_sDisplay = ReadDisplay(ends[0]);
    close(ends[0]);
    setenv("DISPLAY", m_sDisplay.c_str(), 1);
    m_manager = Start({"openbox", "--sm-disable"});
    if (!XInput(m_sDisplay).WaitForWindowManager(kSettlingMilliseconds)) {
      throw std::runtime_error("openbox did not start; is the package openbox installed?");
    }
  } catch (...) {
    End(m_manager);
    End(m_server);
    throw;
  }
}

XScreen::~XScreen() {
  End(m_manager);
  End(m_server);
}

}  // namespace orvane::console
