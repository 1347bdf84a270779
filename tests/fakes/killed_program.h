// A program that is killed before the n-th change that it makes to files: each state that a kill
// can leave is reached one by one, and always in the same way.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <set>

namespace orvane::tests {

enum class Ended { Killed, ByItself, Untraceable };

/// Whether the system call changes files, or what others can see of them.
inline bool ChangesFiles(const __ptrace_syscall_info& call) {
  static const std::set<long> changing = {
      SYS_write,  SYS_pwrite64,  SYS_writev,   SYS_ftruncate, SYS_unlinkat, SYS_renameat2,
      SYS_linkat, SYS_symlinkat, SYS_mkdirat,  SYS_fchmod,    SYS_fchmodat,
#ifdef SYS_unlink  // the older calls, which not every machine has
      SYS_unlink, SYS_rename,    SYS_renameat, SYS_link,      SYS_symlink,  SYS_mkdir,
      SYS_rmdir,  SYS_chmod,
#endif
  };
  if (call.op != PTRACE_SYSCALL_INFO_ENTRY) return false;
  const auto number = static_cast<long>(call.entry.nr);
#ifdef SYS_open
  if (number == SYS_open) return (call.entry.args[1] & O_CREAT) != 0;
#endif
  return number == SYS_openat ? (call.entry.args[2] & O_CREAT) != 0 : changing.contains(number);
}

/// Whether the system call is a step of a talk with a server.
inline bool TalksToServer(const __ptrace_syscall_info& call) {
  if (call.op != PTRACE_SYSCALL_INFO_ENTRY) return false;
  const auto number = static_cast<long>(call.entry.nr);
  return number == SYS_sendto || number == SYS_recvfrom;
}

/// From where the steps of work are counted that begins with what is no matter.
inline void CountFromHere() {
  syscall(SYS_getppid);
}
inline bool CountsFromHere(const __ptrace_syscall_info& call) {
  return call.op == PTRACE_SYSCALL_INFO_ENTRY && static_cast<long>(call.entry.nr) == SYS_getppid;
}

/// Which calls are counted.
struct Steps {
  bool (*isStep)(const __ptrace_syscall_info&) = &ChangesFiles;
  bool bFromMark = false;  ///< those behind CountFromHere
};

/// Does the work in a process of its own and kills that before its n-th such call, from 1,
/// whichever of its threads makes it.
template <class Work>
Ended KilledBefore(int nCall, Work&& work, Steps steps = {}) {
  const pid_t child = fork();
  if (child == 0) {
    constexpr int kUntraceable = 97;
    if (setpgid(0, 0) != 0 || ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
      _exit(kUntraceable);
    }
    raise(SIGSTOP);
    try {
      work();
    } catch (const std::exception&) {
      _exit(1);
    }
    _exit(0);
  }
  int nStatus = 0;
  waitpid(child, &nStatus, 0);
  if (!WIFSTOPPED(nStatus)) return Ended::Untraceable;
  ptrace(PTRACE_SETOPTIONS, child, nullptr,
         PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACECLONE);
  int nCalls = 0;
  for (pid_t thread = child;;) {
    ptrace(PTRACE_SYSCALL, thread, nullptr, nullptr);
    thread = waitpid(-child, &nStatus, __WALL);
    if (!WIFSTOPPED(nStatus)) {
      if (thread == child || thread < 0) return nCalls >= nCall ? Ended::Killed : Ended::ByItself;
      continue;
    }
    __ptrace_syscall_info call{};
    if (ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof call, &call) <= 0) continue;
    if (CountsFromHere(call)) steps.bFromMark = false;
    if (!steps.bFromMark && steps.isStep(call) && ++nCalls == nCall) kill(child, SIGKILL);
  }
}

}  // namespace orvane::tests
