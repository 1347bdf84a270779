// Steps run in a process of their own: with a limit, with fewer rights, or to be killed.
#pragma once

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace orvane::fakes {

/// Runs the steps in a process of their own, which ends with what they return; -1 when it was
/// killed.
inline int InChild(const std::function<int()>& steps) {
  const pid_t child = fork();
  if (child == 0) {
    int iResult = 99;
    try {
      iResult = steps();
    } catch (...) {
    }
    _exit(iResult);
  }
  int iStatus = 0;
  waitpid(child, &iStatus, 0);
  return WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : -1;
}

constexpr uid_t kNobody = 65534;

inline bool IsAdministrator() {
  return geteuid() == 0;
}

/// Gives up the rights of an administrator, who may write everywhere.
inline bool BecomeNobody() {
  if (!IsAdministrator()) return true;
  return setgroups(0, nullptr) == 0 && setgid(kNobody) == 0 && setuid(kNobody) == 0;
}

}  // namespace orvane::fakes
