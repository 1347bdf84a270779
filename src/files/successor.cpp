#include "files/successor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <string>
#include <system_error>
#include <utility>

namespace orvane::files {
namespace {

namespace fs = std::filesystem;
using platform::Text;

constexpr int kMostNamingTries = 40;

[[noreturn]] void ThrowError(int iError) {
  throw std::system_error(iError, std::generic_category());
}

fs::path FolderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// By the file's own name in the kernel's list of what this process has open.
bool Link(const Descriptor& file, const fs::path& path) {
  const Text sOpen = "/proc/self/fd/" + std::to_string(file.Get());
  return linkat(AT_FDCWD, sOpen.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

}  // namespace

bool TryLock(const Descriptor& file, LockFunction lock) {
  return lock(file.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

fs::path BehindLinks(const fs::path& path) {
  fs::path target = path;
  for (int i = 0; i < kMostNamingTries; ++i) {
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

Present OpenPresent(const fs::path& target) {
  Present present;
  constexpr int kFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;
  present.file = Descriptor(open(target.c_str(), O_RDWR | kFlags));
  if (!present.file && errno == ENOENT) return present;
  if (!present.file) ThrowError(errno);
  if (fstat(present.file.Get(), &present.status) != 0) ThrowError(errno);
  if (!S_ISREG(present.status.st_mode)) ThrowError(EINVAL);
  return present;
}

Successor::Successor(fs::path target, const SuccessorOptions& options) : m_options(options) {
  if (m_options.bNameless) {
    const fs::path folder = FolderOf(target);
    m_file = Descriptor(open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, m_options.mode));
    if (m_file) {
      TryLock(m_file, m_options.lock);
      return;
    }
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT && errno != EINVAL) {
      ThrowError(errno);
    }
    // A file system on which every file has a name.
  }
  TakeName(target, [this](const fs::path& name) {
    m_file = Descriptor(
        open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, m_options.mode));
    return static_cast<bool>(m_file);
  });
}

Successor::~Successor() {
  if (m_file && !m_path.empty() && !m_bStays) unlink(m_path.c_str());
}

fs::path Successor::HiddenName(const fs::path& target, int number) const {
  const Text sNumber = m_options.nNames == 1 ? Text() : "." + std::to_string(number);
  return Beside(target, (sNumber + m_options.sEnd).c_str());
}

template <class Make>
void Successor::TakeName(const fs::path& target, Make make) {
  for (int number = 0; number < m_options.nNames; ++number) {
    const fs::path name = HiddenName(target, number);
    // Whoever clears leftovers may find the file before it is locked.
    for (int i = 0; i < kMostNamingTries; ++i) {
      if (make(name)) {
        if (!TryLock(m_file, m_options.lock) || !IsUnderName(m_file, name.c_str())) continue;
        m_path = name;
        return;
      }
      if (errno != EEXIST) ThrowError(errno);
      if (!RemoveLeftover(name, number + 1 == m_options.nNames)) break;
    }
  }
  ThrowError(EBUSY);
}

// Of one that a crash ended: nobody has it locked. What may not be looked at is passed over while
// there are other names.
bool Successor::RemoveLeftover(const fs::path& path, bool bLastName) const {
  const Descriptor left(
      open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
  if (!left && errno == ENOENT) return true;
  if (!left && !bLastName) return false;
  if (left && !TryLock(left, m_options.lock)) return false;
  if (left && !IsUnderName(left, path.c_str())) return true;
  if (unlink(path.c_str()) == 0 || errno == ENOENT) return true;
  if (bLastName) ThrowError(errno);
  return false;
}

void Successor::Rename(const fs::path& path) {
  if (!IsUnderName(m_file, m_path.c_str())) ThrowError(ESTALE);
  if (rename(m_path.c_str(), path.c_str()) != 0) ThrowError(errno);
  m_path = path;
}

void Successor::KeepName() const {
  const Descriptor folder(open(FolderOf(m_path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder) fsync(folder.Get());
}

Descriptor Successor::Succeed(const fs::path& target) {
  // A file without a name can only be given one that is free.
  if (m_path.empty() && Link(m_file, target)) {
    m_path = target;
  } else {
    if (m_path.empty()) {
      if (errno != EEXIST) ThrowError(errno);
      TakeName(target, [this](const fs::path& name) { return Link(m_file, name); });
    }
    Rename(target);
  }
  KeepName();
  return std::exchange(m_file, Descriptor());
}

}  // namespace orvane::files
