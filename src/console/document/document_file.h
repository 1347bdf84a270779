// The file of a document: read whole, replaced whole, and held with a lock that dies with the
// process. The lock lies on the file itself, so nothing is left beside it and a crash leaves no
// stale lock. User-interface thread.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <memory>
#include <string_view>

#include "files/replacement.h"
#include "platform/types.h"

namespace orvane::console {

class DocumentFile {
 public:
  /// Beyond that a file is no document: a hundred times what a hundred thousand tables need.
  static constexpr std::size_t kMaximumBytes = std::size_t{1} << 30;
  using Taker = std::function<void(std::string_view sBytes)>;

  /// Opens the file and takes its lock; when another console has it, the file is read-only. On a
  /// file system without locks it is opened without one. Fails with failure::kDocument when it
  /// cannot be read or is no regular file.
  static std::unique_ptr<DocumentFile> Open(const platform::Text& sPath,
                                            files::LockFunction lock = flock,
                                            files::WriteFunction write = files::WriteAt);
  /// Opens the file to be looked at: nothing is held, so that a console may have it or open it
  /// meanwhile, and it is read-only. Fails as Open does.
  static std::unique_ptr<DocumentFile> OpenToRead(const platform::Text& sPath);
  /// Writes a file of that name, replacing one that is there, and holds it. Fails with
  /// failure::kDocument, with nothing changed, when that cannot be done or another console holds
  /// the file.
  static std::unique_ptr<DocumentFile> Create(const platform::Text& sPath, std::string_view sBytes,
                                              files::LockFunction lock = flock);

  /// The first bytes of the file, a few thousand at most: enough to tell a document by.
  platform::Text Start() const;
  /// Hands all bytes of the file to take. Unless it fails, they are from then on those that the
  /// file is held against. Fails with failure::kDocument, also for a file beyond kMaximumBytes.
  void Read(const Taker& take);
  /// Hands over the bytes that a save which a crash broke off was to write, if there are such
  /// beside the file; false when there are none. They are what the file is to become, not what it
  /// is.
  bool ReadBrokenSave(const Taker& take) const;
  /// Goes on under another name of this same file.
  void Path(const platform::Text& sPath) { m_sPath = sPath; }
  /// Replaces the file in one step: whoever opens it finds all of the old or all of the new
  /// bytes, also after a crash. Its owner, group, mode, access list and attributes stay, and a
  /// symbolic link stays one; the file of somebody else is written itself. Fails with
  /// failure::kDocument and the old file as it was, also when another console holds the file that
  /// has taken its name meanwhile; or with the sentence that names where the new bytes are, when
  /// the old ones could not be put back.
  void Replace(std::string_view sBytes);

  platform::Boolean IsReadOnly() const noexcept { return !m_sReadOnlyReason.empty(); }
  /// A sentence, or empty.
  const platform::Text& ReadOnlyReason() const noexcept { return m_sReadOnlyReason; }
  /// True when the document under the file's name is no longer the one last read or written.
  platform::Boolean IsChanged() const;
  /// True when that name leads to this very file.
  platform::Boolean IsUnder(const platform::Text& sPath) const;

 private:
  DocumentFile(platform::Text sPath, files::LockFunction lock,
               files::WriteFunction write = files::WriteAt)
      : m_sPath(std::move(sPath)), m_lock(lock), m_write(write) {}
  /// Opens the file that is under the name now.
  void OpenPresent();
  platform::Text AllBytes(const files::Descriptor& file, const struct stat& status) const;
  /// These bytes are what the file is held against from now on.
  void HoldAgainst(std::string_view sBytes, const struct stat& status);
  /// Fails when another console holds the file that is now under the name; otherwise holds it.
  void RefuseWhereAnotherHolds(files::Descriptor& held) const;

  platform::Text m_sPath;  // as the user knows it
  files::LockFunction m_lock;
  files::WriteFunction m_write;  // of the file that is there
  files::Descriptor m_descriptor;
  platform::Text m_sReadOnlyReason;
  struct stat m_status {};
  std::size_t m_uMark = 0;  // of the bytes last read or written
};

}  // namespace orvane::console
