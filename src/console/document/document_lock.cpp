#include "console/document/document_lock.h"

#include <pwd.h>
#include <sys/sysmacros.h>

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace orvane::console {

using platform::Text;

Text LockedBy(const files::Descriptor& file) {
  const Text sUnknown = "by another console";
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) return sUnknown;
  std::ostringstream locks;
  locks << std::ifstream("/proc/locks").rdbuf();
  const std::optional<long> owner = FindLockOwner(locks.str(), status);
  if (!owner) return sUnknown;
  const Text sProcess = std::to_string(*owner);
  struct stat process {};
  if (stat(("/proc/" + sProcess).c_str(), &process) == 0) {
    if (const passwd* user = getpwuid(process.st_uid)) {
      return "by user " + Text(user->pw_name) + " (process " + sProcess + ")";
    }
  }
  return "by process " + sProcess;
}

std::optional<long> FindLockOwner(std::string_view sLocks, const struct stat& status) {
  // 12: FLOCK  ADVISORY  WRITE 4711 08:01:1835021 0 EOF
  char sIdentity[64];
  std::snprintf(sIdentity, sizeof sIdentity, "%02x:%02x:%ju", major(status.st_dev),
                minor(status.st_dev), static_cast<std::uintmax_t>(status.st_ino));
  std::istringstream lines{Text(sLocks)};
  for (Text sLine; std::getline(lines, sLine);) {
    std::istringstream words(sLine);
    Text sNumber, sKind, sMode, sAccess, sProcess, sFile;
    words >> sNumber >> sKind >> sMode >> sAccess >> sProcess >> sFile;
    long iProcess = 0;
    std::from_chars(sProcess.data(), sProcess.data() + sProcess.size(), iProcess);
    if (sKind == "FLOCK" && sFile == sIdentity && iProcess > 0) return iProcess;
  }
  return std::nullopt;
}

}  // namespace orvane::console
