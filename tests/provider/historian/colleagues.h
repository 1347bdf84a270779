// Users of one group who share a historian.
#pragma once

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>

namespace orvane::tests {

constexpr uid_t kOwner = 65531;
constexpr uid_t kColleague = 65532;
constexpr gid_t kGroup = 65530;
constexpr gid_t kColleaguesGroup = 65529;

/// Does the work as that user of the group, where root runs the tests, otherwise as the same user,
// and ends like a killed program, with all still open. Gives what the work has returned: an exit
// status.
template <class Work>
int As(uid_t user, Work&& work, gid_t group = kGroup) {
  const pid_t child = fork();
  if (child == 0) {
    umask(0);
    int nStatus = 99;
    if (geteuid() != 0 || (setgroups(1, &kGroup) == 0 && setgid(group) == 0 && setuid(user) == 0)) {
      try {
        nStatus = work();
      } catch (const std::exception&) {
        nStatus = 98;
      }
    }
    _exit(nStatus);
  }
  int nStatus = 0;
  waitpid(child, &nStatus, 0);
  return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
}

}  // namespace orvane::tests
