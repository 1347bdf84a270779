// Who holds a document: the lock on its file, and the process that has it.
// Used by DocumentFile; user-interface thread.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string_view>

#include "files/descriptor.h"

namespace orvane::console {

/// "by user anna (process 4711)", or "by another console", of a file whose lock another one has.
platform::Text LockedBy(const files::Descriptor& file);

/// The process that holds a lock on the file, looked up in the kernel's table of locks (the text
/// of /proc/locks); none when it does not tell.
std::optional<long> FindLockOwner(std::string_view sLocks, const struct stat& status);

}  // namespace orvane::console
