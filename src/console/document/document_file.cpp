#include "console/document/document_file.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>
#include <utility>

#include "platform/failure.h"

namespace orvane::console {

using platform::Boolean;
using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr int kMaxLinks = 40;

Text Reason(int iError) {
  return std::generic_category().message(iError);
}

[[noreturn]] void CannotRead(const Text& sPath, const Text& sWhy, int iError = 0) {
  throw Failure(failure::kDocument,
                "The document " + sPath + " cannot be read: " + sWhy +
                    "; look at the file and your rights on it.",
                "DocumentFile", iError);
}

[[noreturn]] void CannotWrite(const Text& sPath, const Text& sWhy, int iError = 0) {
  throw Failure(failure::kDocument,
                "The document " + sPath + " cannot be saved: " + sWhy +
                    "; what was there is untouched, save it elsewhere or put that right first.",
                "DocumentFile", iError);
}

/// The file behind a chain of symbolic links, which need not exist.
std::filesystem::path BehindLinks(const Text& sPath) {
  std::filesystem::path path = sPath;
  for (int i = 0; i < kMaxLinks; ++i) {
    std::error_code error;
    const auto target = std::filesystem::read_symlink(path, error);
    if (error) return path;
    path = path.parent_path() / target;
  }
  return path;
}

/// False, without waiting, when another descriptor holds the lock. Any other error means that this
/// file system has no locks to give, and nobody is kept from a document by that.
bool TryLock(const FileDescriptor& descriptor, DocumentFile::LockFunction lock) {
  return lock(descriptor.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool IsSameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// True when the descriptor's file is still the one under that name.
bool IsUnderName(const FileDescriptor& descriptor, const char* sPath) {
  struct stat own {};
  struct stat named {};
  return fstat(descriptor.Get(), &own) == 0 && stat(sPath, &named) == 0 && IsSameFile(own, named);
}

/// "by user anna (process 4711)", or "by another console".
Text LockedBy(const FileDescriptor& descriptor) {
  const Text sUnknown = "by another console";
  struct stat status {};
  if (fstat(descriptor.Get(), &status) != 0) return sUnknown;
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

/// A document ends with the digest of all that is before, so its end stands for the whole.
constexpr std::size_t kEnd = 80;
constexpr std::size_t kStart = 4096;

Text EndOf(std::string_view sBytes) {
  return Text(sBytes.substr(sBytes.size() - std::min(sBytes.size(), kEnd)));
}

/// Up to nBytes of the descriptor's file from a place on; fewer only where the file ends. Returns
/// 0, or the error that kept them from being read.
int ReadAt(const FileDescriptor& descriptor, std::size_t nFrom, std::size_t nBytes, Text& sBytes) {
  sBytes.resize(nBytes);
  std::size_t nRead = 0;
  while (nRead < nBytes) {
    const ssize_t n = pread(descriptor.Get(), sBytes.data() + nRead, nBytes - nRead,
                            static_cast<off_t>(nFrom + nRead));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return errno;
    if (n == 0) break;
    nRead += static_cast<std::size_t>(n);
  }
  sBytes.resize(nRead);
  return 0;
}

/// Turns the signal that a file-size limit sends into the plain error of the write.
class FileSizeSignalHold {
 public:
  FileSizeSignalHold() {
    sigemptyset(&m_signal);
    sigaddset(&m_signal, SIGXFSZ);
    m_bHeld = pthread_sigmask(SIG_BLOCK, &m_signal, &m_before) == 0 &&
              sigismember(&m_before, SIGXFSZ) == 0;
  }
  FileSizeSignalHold(const FileSizeSignalHold&) = delete;
  FileSizeSignalHold& operator=(const FileSizeSignalHold&) = delete;
  ~FileSizeSignalHold() {
    if (!m_bHeld) return;
    const timespec noWait{};
    while (sigtimedwait(&m_signal, nullptr, &noWait) == SIGXFSZ) {
    }
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
  }

 private:
  sigset_t m_signal{};
  sigset_t m_before{};
  bool m_bHeld = false;
};

int WriteAll(const FileDescriptor& descriptor, std::string_view sBytes) {
  const FileSizeSignalHold hold;
  while (!sBytes.empty()) {
    const ssize_t n = write(descriptor.Get(), sBytes.data(), sBytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return errno;
    sBytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return fsync(descriptor.Get()) == 0 ? 0 : errno;
}

/// The file that is written beside a document and then takes its name. It carries the lock of its
/// writer from its first moment, so that one left behind by a crash is known by having none.
class Successor {
 public:
  Successor(const Text& sDocument, std::filesystem::path target, DocumentFile::LockFunction lock)
      : m_sDocument(sDocument), m_target(std::move(target)), m_lock(lock) {
    m_path = m_target.parent_path() / ("." + m_target.filename().string() + ".saving");
    Create();
  }
  Successor(const Successor&) = delete;
  Successor& operator=(const Successor&) = delete;
  ~Successor() {
    if (m_descriptor) unlink(m_path.c_str());
  }

  /// Gives the file the mode and, where that is allowed, the owner of the one it succeeds.
  void TakeAttributes(const struct stat& old) {
    // Only an administrator may give files away; for others the file becomes their own.
    if (fchown(m_descriptor.Get(), old.st_uid, old.st_gid) != 0 && errno != EPERM) Fail(errno);
    if (fchmod(m_descriptor.Get(), old.st_mode & 07777) != 0) Fail(errno);
  }

  /// Writes the bytes to the disk, then takes the document's name. Returns the held file.
  FileDescriptor Finish(std::string_view sBytes) {
    if (const int iError = WriteAll(m_descriptor, sBytes)) Fail(iError);
    if (rename(m_path.c_str(), m_target.c_str()) != 0) Fail(errno);
    // The new name lasts once its folder is on the disk; a file system that cannot say so keeps
    // its own order.
    const FileDescriptor folder(
        open(m_target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) fsync(folder.Get());
    return std::exchange(m_descriptor, FileDescriptor());
  }

 private:
  [[noreturn]] void Fail(int iError) const { CannotWrite(m_sDocument, Reason(iError), iError); }

  void Create() {
    for (int i = 0; i < kMaxLinks; ++i) {
      FileDescriptor created(
          open(m_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
      if (created) {
        if (TryLock(created, m_lock) && IsUnderName(created, m_path.c_str())) {
          m_descriptor = std::move(created);
          return;
        }
      } else if (errno == EEXIST) {
        RemoveLeftover();
      } else {
        Fail(errno);
      }
    }
    CannotWrite(m_sDocument, "another console is saving it");
  }

  void RemoveLeftover() const {
    const FileDescriptor old(open(m_path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (old && !TryLock(old, m_lock)) CannotWrite(m_sDocument, "another console is saving it");
    if (unlink(m_path.c_str()) != 0 && errno != ENOENT) Fail(errno);
  }

  const Text& m_sDocument;
  std::filesystem::path m_target;
  std::filesystem::path m_path;
  DocumentFile::LockFunction m_lock;
  FileDescriptor m_descriptor;
};

/// Opens a file that is there without waiting, for reading.
FileDescriptor OpenExisting(const char* sPath) {
  return FileDescriptor(open(sPath, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

}  // namespace

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : m_iDescriptor(std::exchange(other.m_iDescriptor, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  std::swap(m_iDescriptor, other.m_iDescriptor);
  return *this;
}

FileDescriptor::~FileDescriptor() {
  if (m_iDescriptor >= 0) close(m_iDescriptor);
}

std::unique_ptr<DocumentFile> DocumentFile::Open(const Text& sPath, LockFunction lock) {
  std::unique_ptr<DocumentFile> file(new DocumentFile(sPath, lock));
  // A console that saves puts another file under the name; then that one is the document.
  for (int i = 0; i < kMaxLinks; ++i) {
    file->m_descriptor = OpenExisting(sPath.c_str());
    if (!file->m_descriptor) CannotRead(sPath, Reason(errno), errno);
    struct stat status {};
    if (fstat(file->m_descriptor.Get(), &status) != 0) CannotRead(sPath, Reason(errno), errno);
    if (!S_ISREG(status.st_mode)) CannotRead(sPath, "it is no file");
    const bool bLocked = TryLock(file->m_descriptor, lock);
    if (!IsUnderName(file->m_descriptor, sPath.c_str())) continue;
    const std::filesystem::path target = BehindLinks(sPath);
    if (!bLocked) {
      file->m_sReadOnlyReason = "The document is read-only here because it is already open " +
                                LockedBy(file->m_descriptor) + ".";
    } else if (access(target.c_str(), W_OK) != 0) {
      file->m_sReadOnlyReason =
          "The document is read-only here because you have no right to write the file.";
    } else if (access(target.parent_path().c_str(), W_OK) != 0) {
      file->m_sReadOnlyReason =
          "The document is read-only here because you have no right to write in its folder.";
    }
    return file;
  }
  CannotRead(sPath, "it is being replaced over and over");
}

std::unique_ptr<DocumentFile> DocumentFile::Create(const Text& sPath, std::string_view sBytes,
                                                   LockFunction lock) {
  std::unique_ptr<DocumentFile> file(new DocumentFile(sPath, lock));
  file->Replace(sBytes);
  return file;
}

Text DocumentFile::Start() const {
  Text sBytes;
  if (const int iError = ReadAt(m_descriptor, 0, kStart, sBytes)) {
    CannotRead(m_sPath, Reason(iError), iError);
  }
  return sBytes;
}

void DocumentFile::Read(const std::function<void(std::string_view sBytes)>& take) {
  struct stat status {};
  if (fstat(m_descriptor.Get(), &status) != 0) CannotRead(m_sPath, Reason(errno), errno);
  const auto nBytes = static_cast<std::size_t>(status.st_size);
  if (nBytes > kMaximumBytes) {
    CannotRead(m_sPath, "it is larger than " + std::to_string(kMaximumBytes >> 20) +
                            " megabytes, which no document is");
  }
  Text sBytes;
  if (const int iError = ReadAt(m_descriptor, 0, nBytes, sBytes)) {
    CannotRead(m_sPath, Reason(iError), iError);
  }
  take(sBytes);
  m_status = status;
  m_sEnd = EndOf(sBytes);
}

void DocumentFile::RefuseWhereAnotherHolds(FileDescriptor& held) const {
  if (m_descriptor && IsUnderName(m_descriptor, m_sPath.c_str())) return;
  held = OpenExisting(m_sPath.c_str());
  if (held && !TryLock(held, m_lock)) CannotWrite(m_sPath, "it is open " + LockedBy(held));
}

void DocumentFile::Replace(std::string_view sBytes) {
  if (IsReadOnly()) {
    throw Failure(failure::kDocument, m_sReadOnlyReason + " Save it under another name.");
  }
  const std::filesystem::path target = BehindLinks(m_sPath);
  struct stat old {};
  const bool bExists = stat(target.c_str(), &old) == 0;
  if (bExists && !S_ISREG(old.st_mode)) CannotWrite(m_sPath, "it is no file");
  FileDescriptor held;
  if (bExists) RefuseWhereAnotherHolds(held);
  // A name in a folder of one's own can be taken from a file that one may not write.
  if (bExists && access(target.c_str(), W_OK) != 0) CannotWrite(m_sPath, Reason(errno), errno);
  Successor successor(m_sPath, target, m_lock);
  if (bExists) successor.TakeAttributes(old);
  m_descriptor = successor.Finish(sBytes);
  fstat(m_descriptor.Get(), &m_status);
  m_sEnd = EndOf(sBytes);
}

Boolean DocumentFile::IsChanged() const {
  struct stat now {};
  // A file that was removed is simply written again.
  if (stat(m_sPath.c_str(), &now) != 0) return false;
  if (IsSameFile(now, m_status) && now.st_size == m_status.st_size &&
      now.st_mtim.tv_sec == m_status.st_mtim.tv_sec &&
      now.st_mtim.tv_nsec == m_status.st_mtim.tv_nsec) {
    return false;
  }
  if (now.st_size != m_status.st_size) return true;
  Text sEnd;
  const FileDescriptor descriptor = OpenExisting(m_sPath.c_str());
  const std::size_t nFrom = static_cast<std::size_t>(now.st_size) - m_sEnd.size();
  return !descriptor || ReadAt(descriptor, nFrom, m_sEnd.size(), sEnd) != 0 || sEnd != m_sEnd;
}

Boolean DocumentFile::IsUnder(const Text& sPath) const {
  return IsUnderName(m_descriptor, sPath.c_str());
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
