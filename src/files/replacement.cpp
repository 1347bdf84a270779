#include "files/replacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "files/attributes.h"

namespace orvane::files {
namespace {

namespace fs = std::filesystem;
using platform::Text;

[[noreturn]] void Throw(int iError) {
  throw std::system_error(iError, std::generic_category());
}

bool IsHeld(const fs::path& path, LockFunction lock) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  return file && !TryLock(file, lock);
}

// Afterwards it is the copy by which whoever finds the target half written puts it right. Only now
// that it is whole does it take the place of one that a save before has left, which may be the only
// good one; then it stays until the target is whole.
void WriteCopy(Successor& successor, std::string_view sBytes, const fs::path& copy) {
  if (const int iError = WriteAt(successor.File(), 0, sBytes)) Throw(iError);
  if (fsync(successor.File().Get()) != 0) Throw(errno);
  struct stat former {};
  const bool bFormer = lstat(copy.c_str(), &former) == 0 && S_ISREG(former.st_mode);
  successor.Rename(copy);
  successor.Stay(bFormer);
}

int WriteWhole(const Descriptor& file, std::string_view sBytes, WriteFunction write) {
  if (const int iError = write(file, 0, sBytes)) return iError;
  if (ftruncate(file.Get(), static_cast<off_t>(sBytes.size())) != 0) return errno;
  return fsync(file.Get()) == 0 ? 0 : errno;
}

// Whoever may read the old file may read what a crash leaves of writing it.
void ShareLike(const Present& present, const Descriptor& copy) {
  constexpr mode_t kShared = 0666;
  constexpr auto kSameUser = static_cast<uid_t>(-1);
  if (fchown(copy.Get(), kSameUser, present.status.st_gid) != 0) return;
  fchmod(copy.Get(), (present.status.st_mode & kShared) | S_IRUSR | S_IWUSR);
}

void WriteInPlace(const Present& present, std::string_view sBytes, Successor& successor,
                  WriteFunction write) {
  Text sOld;
  const auto nOld = static_cast<std::size_t>(present.status.st_size);
  if (const int iError = ReadAt(present.file, 0, nOld, sOld)) Throw(iError);
  successor.KeepName();
  if (const int iError = WriteWhole(present.file, sBytes, write)) {
    // The room of the old bytes is still theirs; where a copy was needed, they were not whole.
    if (WriteWhole(present.file, sOld, write) == 0 && !successor.Stays()) Throw(iError);
    // There is no other whole copy.
    successor.Stay(true);
    throw NotPutBack(iError, std::generic_category());
  }
  successor.Stay(false);
}

}  // namespace

fs::path SuccessorOf(const fs::path& file) {
  return Beside(file, ".saving");
}

Descriptor Replace(const fs::path& path, std::string_view sBytes, const ReplaceOptions& options) {
  const fs::path target = BehindLinks(path);
  const Present present = OpenPresent(target);
  const fs::path copy = SuccessorOf(target);
  Successor successor(target, {".writing", S_IRUSR | S_IWUSR, false, 1, options.lock});
  // Another one may be writing the target itself.
  if (IsHeld(copy, options.lock)) Throw(EBUSY);
  if (fchmod(successor.File().Get(), options.mode) != 0) Throw(errno);
  const bool bSucceeds =
      !present.file || !options.bKeep || TakeAttributes(present.file, successor.File());
  WriteCopy(successor, sBytes, copy);
  if (bSucceeds) return successor.Succeed(target);
  ShareLike(present, successor.File());
  WriteInPlace(present, sBytes, successor, options.write);
  return Descriptor();
}

}  // namespace orvane::files
