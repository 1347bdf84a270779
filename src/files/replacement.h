// Giving a file new bytes in one step: whoever opens it finds all of the old or all of the new
// ones, also after a crash. For documents, registration files and the file of the user's settings;
// exports, which come in pieces, write their own successor, and files of catalogs are databases,
// made by the historian. Any thread, one at a time for one file.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string_view>
#include <system_error>

#include "files/descriptor.h"
#include "files/successor.h"

namespace orvane::files {

/// Writes into a file as WriteAt does.
using WriteFunction = int (*)(const Descriptor& file, std::size_t nFrom, std::string_view sBytes);

/// The whole new bytes beside a file while the file itself is written. One that nobody has locked
/// is what a crash or a failing disk left; it stays until newer bytes are as safe.
std::filesystem::path SuccessorOf(const std::filesystem::path& file);

struct ReplaceOptions {
  /// Of a file that is new, whatever the umask.
  mode_t mode = 0600;
  /// Whether a file that was there stays what it was beside its bytes; otherwise it is like a new
  /// one.
  bool bKeep = true;
  LockFunction lock = flock;
  WriteFunction write = WriteAt;  ///< how the file that is there is written
};

/// The file that was there could not be written, and is damaged: it could not be put back, or was
/// damaged before. The new bytes are whole in its successor, which stays; the code is that of the
/// first error.
class NotPutBack : public std::system_error {
 public:
  using std::system_error::system_error;
};

/// Gives the file behind the name these bytes. Usually another file takes its place, which has the
/// owner, group, mode, access list and extended attributes of the old one. Where it cannot have
/// them, because the file is somebody else's, the file itself is written, after all of the new
/// bytes have reached the disk beside it; what cannot be written whole is taken back. Returns the
/// new file, open and locked, or none when the old one was written. Fails with NotPutBack, and
/// otherwise with std::system_error, the old file being whole; its code is EBUSY when another
/// program is replacing the file just now.
Descriptor Replace(const std::filesystem::path& path, std::string_view sBytes,
                   const ReplaceOptions& options = {});

}  // namespace orvane::files
