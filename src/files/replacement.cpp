#include "files/replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <string>
#include <system_error>
#include <utility>

#include "files/attributes.h"

namespace orvane::files {
namespace {

namespace fs = std::filesystem;
using platform::Text;

constexpr int kMostReplacementTries = 40;

[[noreturn]] void Throw(int iError) {
  throw std::system_error(iError, std::generic_category());
}

/// The file beside the one that is replaced. It carries the lock of its writer from its first
/// moment, so that one left behind by a crash is known by having none. Only when it is whole does
/// it take the place of a copy that a save before has left, which may be the only good one.
class Successor {
 public:
  Successor(const fs::path& target, const ReplaceOptions& options)
      : m_path(Beside(target, ".writing")), m_copy(SuccessorOf(target)), m_options(options) {
    Create();
  }
  Successor(const Successor&) = delete;
  Successor& operator=(const Successor&) = delete;
  ~Successor() {
    if (m_file && !m_bNeeded) unlink(m_path.c_str());
  }

  const Descriptor& File() const { return m_file; }

  /// Afterwards it is the copy by which whoever finds the target half written puts it right.
  void Write(std::string_view sBytes) {
    if (const int iError = WriteAt(m_file, 0, sBytes)) Throw(iError);
    if (fsync(m_file.Get()) != 0) Throw(errno);
    struct stat former {};
    const bool bFormer = lstat(m_copy.c_str(), &former) == 0 && S_ISREG(former.st_mode);
    Rename(m_copy);
    m_bNeeded = bFormer;
  }

  /// The present name lasts once its folder is on the disk; a file system that cannot say so keeps
  /// its own order.
  void KeepName() const {
    const Descriptor folder(open(m_path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) fsync(folder.Get());
  }

  /// Takes the place of the target.
  Descriptor Succeed(const fs::path& target) {
    Rename(target);
    KeepName();
    return std::exchange(m_file, Descriptor());
  }

  /// Whether it stays at the end: the target is not whole, or was not when a save before left a
  /// copy.
  bool IsNeeded() const { return m_bNeeded; }
  void Need(bool bNeeded) { m_bNeeded = bNeeded; }

 private:
  void Create() {
    for (int i = 0; i < kMostReplacementTries; ++i) {
      Descriptor created(open(m_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                              S_IRUSR | S_IWUSR));
      if (created) {
        if (TryLock(created, m_options.lock) && IsUnderName(created, m_path.c_str())) {
          m_file = std::move(created);
          // Another one may be writing the target itself.
          if (IsHeld(m_copy)) Fail(EBUSY);
          if (fchmod(m_file.Get(), m_options.mode) != 0) Fail(errno);
          return;
        }
      } else if (errno == EEXIST) {
        RemoveLeftover();
      } else {
        Throw(errno);
      }
    }
    Throw(EBUSY);
  }

  [[noreturn]] void Fail(int iError) const {
    // No destructor runs yet.
    unlink(m_path.c_str());
    Throw(iError);
  }

  void RemoveLeftover() const {
    if (IsHeld(m_path)) Throw(EBUSY);
    if (unlink(m_path.c_str()) != 0 && errno != ENOENT) Throw(errno);
  }

  void Rename(const fs::path& path) {
    if (rename(m_path.c_str(), path.c_str()) != 0) Throw(errno);
    m_path = path;
  }

  bool IsHeld(const fs::path& path) const {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    return file && !TryLock(file, m_options.lock);
  }

  fs::path m_path;
  fs::path m_copy;
  const ReplaceOptions& m_options;
  Descriptor m_file;
  bool m_bNeeded = false;
};

/// The file that is there, open for the most that one may.
struct Present {
  Descriptor file;
  struct stat status {};
};

Present OpenPresent(const fs::path& target) {
  Present present;
  constexpr int kFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;
  present.file = Descriptor(open(target.c_str(), O_RDWR | kFlags));
  if (!present.file && errno == ENOENT) return present;
  if (!present.file) Throw(errno);
  if (fstat(present.file.Get(), &present.status) != 0) Throw(errno);
  if (!S_ISREG(present.status.st_mode)) Throw(EINVAL);
  return present;
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
    if (WriteWhole(present.file, sOld, write) == 0 && !successor.IsNeeded()) Throw(iError);
    // There is no other whole copy.
    successor.Need(true);
    throw NotPutBack(iError, std::generic_category());
  }
  successor.Need(false);
}

}  // namespace

bool TryLock(const Descriptor& file, LockFunction lock) {
  return lock(file.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

fs::path BehindLinks(const fs::path& path) {
  fs::path target = path;
  for (int i = 0; i < kMostReplacementTries; ++i) {
    std::error_code error;
    const auto next = fs::read_symlink(target, error);
    if (error) return target;
    target = target.parent_path() / next;
  }
  return target;
}

fs::path Beside(const fs::path& file, const char* sEnd) {
  Text sName = file.filename().string();
  // A name may be as long as the file system lets it; with more to it, it would be too long.
  constexpr std::size_t kLongest = 200;
  if (sName.size() > kLongest) {
    const std::size_t uRest = std::hash<Text>{}(sName);
    sName = sName.substr(0, kLongest) + "." + std::to_string(uRest);
  }
  return file.parent_path() / ("." + sName + sEnd);
}

fs::path SuccessorOf(const fs::path& file) {
  return Beside(file, ".saving");
}

Descriptor Replace(const fs::path& path, std::string_view sBytes, const ReplaceOptions& options) {
  const fs::path target = BehindLinks(path);
  const Present present = OpenPresent(target);
  Successor successor(target, options);
  const bool bSucceeds =
      !present.file || !options.bKeep || TakeAttributes(present.file, successor.File());
  successor.Write(sBytes);
  if (bSucceeds) return successor.Succeed(target);
  ShareLike(present, successor.File());
  WriteInPlace(present, sBytes, successor, options.write);
  return Descriptor();
}

}  // namespace orvane::files
