// Who could have put a file where it is: nothing is loaded, or believed, that another user of the
// machine can write. Used for libraries and registration files. Any thread.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <set>

namespace orvane::component {

/// Those who may write without anything being lost by it: they have the program in hand anyway.
struct Trust {
  std::set<uid_t> owners;         ///< the administrator, this user, and who owns the program
  std::optional<gid_t> ownGroup;  ///< this user's private group: it has no other member

  /// As this process has it.
  static Trust OfProcess();
};

/// Whether only those trusted can change what the status is about. A folder above may be shared
/// when, as in /tmp, nobody can take away what is another's.
bool IsTrusted(const struct stat& status, const Trust& trust, bool bFolderAbove);

/// Fails with kComponent, naming the culprit, when the file, its folder, a link on the way or a
/// folder above can be changed by another user. Folders above the running program are its own
/// affair. A file that is not there is none to be failed for.
void RequireTrusted(const std::filesystem::path& file);

}  // namespace orvane::component
