// The file of a document: read whole, replaced whole, and held with a lock that dies with the
// process. The lock lies on the file itself, so nothing is left beside it and a crash leaves no
// stale lock. User-interface thread.
#pragma once

#include <sys/file.h>
#include <sys/stat.h>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/types.h"

namespace orvane::console {

/// A descriptor, closed at the end.
class FileDescriptor {
 public:
  explicit FileDescriptor(int iDescriptor = -1) noexcept : m_iDescriptor(iDescriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  int Get() const noexcept { return m_iDescriptor; }
  explicit operator bool() const noexcept { return m_iDescriptor >= 0; }

 private:
  int m_iDescriptor;
};

class DocumentFile {
 public:
  /// Takes the lock of a descriptor as flock does.
  using LockFunction = int (*)(int iDescriptor, int iOperation);
  /// Beyond that a file is no document: a hundred times what a hundred thousand tables need.
  static constexpr std::size_t kMaximumBytes = std::size_t{1} << 30;

  /// Opens the file and takes its lock; when another console has it, the file is read-only. On a
  /// file system without locks it is opened without one. Fails with failure::kDocument when it
  /// cannot be read or is no regular file.
  static std::unique_ptr<DocumentFile> Open(const platform::Text& sPath, LockFunction lock = flock);
  /// Writes a file of that name, replacing one that is there, and holds it. Fails with
  /// failure::kDocument, with nothing changed, when that cannot be done or another console holds
  /// the file.
  static std::unique_ptr<DocumentFile> Create(const platform::Text& sPath, std::string_view sBytes,
                                              LockFunction lock = flock);

  /// The first bytes of the file, a few thousand at most: enough to tell a document by.
  platform::Text Start() const;
  /// Hands all bytes of the file to take. Unless it fails, they are from then on those that the
  /// file is held against. Fails with failure::kDocument, also for a file beyond kMaximumBytes.
  void Read(const std::function<void(std::string_view sBytes)>& take);
  /// Goes on under another name of this same file.
  void Path(const platform::Text& sPath) { m_sPath = sPath; }
  /// Replaces the file in one step: whoever opens it finds all of the old or all of the new
  /// bytes, also after a crash. Mode and owner stay, and a symbolic link stays one. Fails with
  /// failure::kDocument and the old file as it was, also when another console holds the file that
  /// has taken its name meanwhile.
  void Replace(std::string_view sBytes);

  platform::Boolean IsReadOnly() const noexcept { return !m_sReadOnlyReason.empty(); }
  /// A sentence, or empty.
  const platform::Text& ReadOnlyReason() const noexcept { return m_sReadOnlyReason; }
  /// True when the document under the file's name is no longer the one last read or written, told
  /// by its size and by its end.
  platform::Boolean IsChanged() const;
  /// True when that name leads to this very file.
  platform::Boolean IsUnder(const platform::Text& sPath) const;

 private:
  DocumentFile(platform::Text sPath, LockFunction lock) : m_sPath(std::move(sPath)), m_lock(lock) {}
  /// Fails when another console holds the file that is now under the name; otherwise holds it.
  void RefuseWhereAnotherHolds(FileDescriptor& held) const;

  platform::Text m_sPath;  // as the user knows it
  LockFunction m_lock;
  FileDescriptor m_descriptor;
  platform::Text m_sReadOnlyReason;
  struct stat m_status {};
  platform::Text m_sEnd;  // of the bytes last read or written
};

/// The process that holds a lock on the file, looked up in the kernel's table of locks (the text
/// of /proc/locks); none when it does not tell.
std::optional<long> FindLockOwner(std::string_view sLocks, const struct stat& status);

}  // namespace orvane::console
