// A process whose disks offer less than others: what it asks of the system is refused as they do.
#pragma once

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

namespace orvane::tests {

/// From now on these calls of this process fail with that error.
inline bool Refuse(const std::vector<long>& calls, unsigned uError) {
  std::vector<sock_filter> filter{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const long call : calls) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | uError));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// A file has one name at a time, as on the disks of cameras.
inline bool HaveNoHardLinks() {
  return Refuse({SYS_linkat,
#ifdef SYS_link
                 SYS_link
#endif
                },
                EPERM);
}

/// Nor can a file be given a name only where that is free.
inline bool HaveNoSafeNames() {
  return HaveNoHardLinks() && Refuse({SYS_renameat2}, EINVAL);
}

}  // namespace orvane::tests
