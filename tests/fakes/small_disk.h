// A disk of a process of its own that is soon full.
#pragma once

#include <sched.h>
#include <sys/mount.h>

#include <fstream>
#include <string>

#include "tests/fakes/processes.h"

namespace orvane::tests {

/// Parts this process, which is one of fakes::InChild, from the disks of the others, and lays one
/// of 64 KB over the folder. False where it may not.
inline bool MountSmallDisk(const std::string& sFolder) {
  if (fakes::IsAdministrator()) {
    if (unshare(CLONE_NEWNS) != 0) return false;
  } else {
    const std::string sUser = std::to_string(geteuid());
    const std::string sGroup = std::to_string(getegid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    // Only users and groups that have a number in there can make files.
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << sUser << " " << sUser << " 1";
    std::ofstream("/proc/self/gid_map") << sGroup << " " << sGroup << " 1";
  }
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", sFolder.c_str(), "tmpfs", 0, "size=64k") == 0;
}

}  // namespace orvane::tests
