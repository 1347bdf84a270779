#include "files/private_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace orvane::files {

namespace fs = std::filesystem;

bool KeepPrivate(const fs::path& folder) {
  struct stat made {};
  // The umask may have taken even the maker's rights.
  return stat(folder.c_str(), &made) == 0 &&
         chmod(folder.c_str(), (made.st_mode & S_ISGID) | kPrivateFolder) == 0;
}

void MakePrivateFolders(const fs::path& folder, std::error_code& error) {
  error.clear();
  if (folder.empty() || fs::is_directory(folder, error)) return;
  if (folder.has_parent_path() && folder.parent_path() != folder) {
    MakePrivateFolders(folder.parent_path(), error);
    if (error) return;
  }
  if (mkdir(folder.c_str(), kPrivateFolder) == 0) {
    if (KeepPrivate(folder)) return;
  } else if (errno == EEXIST) {
    // Another program was faster, or something else is there.
    const int nError = errno;
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored))
      error.assign(nError, std::generic_category());
    else
      error.clear();
    return;
  }
  error.assign(errno, std::generic_category());
}

void MakePrivateFile(const fs::path& file, std::error_code& error) {
  error.clear();
  const int nFile =
      open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kPrivateFile);
  if (nFile < 0 || fchmod(nFile, kPrivateFile) != 0) error.assign(errno, std::generic_category());
  if (nFile >= 0) close(nFile);
}

bool TakeFromOthers(const fs::path& file) {
  struct stat present {};
  if (stat(file.c_str(), &present) != 0) return false;
  if (!S_ISREG(present.st_mode)) {
    errno = EINVAL;
    return false;
  }
  // The bits of the group bound what an access list gives.
  return chmod(file.c_str(), present.st_mode & S_IRWXU) == 0;
}

bool MayWriteInto(const fs::path& folder) {
  return faccessat(AT_FDCWD, folder.c_str(), R_OK | W_OK | X_OK, AT_EACCESS) == 0;
}

}  // namespace orvane::files
