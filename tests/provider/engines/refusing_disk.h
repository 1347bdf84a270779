// A disk that SQLite cannot write to.
#pragma once

#include <sqlite3.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>

namespace orvane::tests {

/// While it lives, files that SQLite writes refuse it with that error of the system.
class RefusingDisk {
 public:
  explicit RefusingDisk(int nError) {
    s_nError = nError;
    Set(reinterpret_cast<sqlite3_syscall_ptr>(&Refuse));
  }
  RefusingDisk(const RefusingDisk&) = delete;
  RefusingDisk& operator=(const RefusingDisk&) = delete;
  ~RefusingDisk() { Set(nullptr); }

 private:
  static ssize_t Refuse(int, const void*, std::size_t) {
    errno = s_nError;
    return -1;
  }
  static void Set(sqlite3_syscall_ptr call) {
    sqlite3_vfs* const vfs = sqlite3_vfs_find(nullptr);
    for (const char* sName : {"write", "pwrite", "pwrite64"}) {
      vfs->xSetSystemCall(vfs, sName, call);
    }
  }

  static inline int s_nError = 0;
};

}  // namespace orvane::tests
