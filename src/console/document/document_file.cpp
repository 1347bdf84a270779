#include "console/document/document_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "console/document/document_lock.h"
#include "platform/failure.h"

namespace orvane::console {

using files::Descriptor;
using platform::Boolean;
using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr int kMostTries = 40;
constexpr std::size_t kStart = 4096;

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

[[noreturn]] void HalfSaved(const Text& sPath, int iError) {
  const Text sWhole = files::SuccessorOf(files::BehindLinks(sPath)).string();
  throw Failure(failure::kDocument,
                "The document " + sPath +
                    " was saved only in part, and what was there could not be "
                    "put back: " +
                    Reason(iError) + "; what you saved is whole in " + sWhole +
                    ": save it under another name, or open the document again, which offers that.",
                "DocumentFile", iError);
}

/// Opens a file that is there without waiting, for reading.
Descriptor OpenExisting(const char* sPath) {
  return Descriptor(open(sPath, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

}  // namespace

std::unique_ptr<DocumentFile> DocumentFile::Open(const Text& sPath, files::LockFunction lock,
                                                 files::WriteFunction write) {
  std::unique_ptr<DocumentFile> file(new DocumentFile(sPath, lock, write));
  // A console that saves puts another file under the name; then that one is the document.
  for (int i = 0; i < kMostTries; ++i) {
    file->OpenPresent();
    const bool bLocked = files::TryLock(file->m_descriptor, lock);
    if (!files::IsUnderName(file->m_descriptor, sPath.c_str())) continue;
    const std::filesystem::path target = files::BehindLinks(sPath);
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

std::unique_ptr<DocumentFile> DocumentFile::OpenToRead(const Text& sPath) {
  std::unique_ptr<DocumentFile> file(new DocumentFile(sPath, flock));
  file->OpenPresent();
  file->m_sReadOnlyReason = "The document is only read here.";
  return file;
}

void DocumentFile::OpenPresent() {
  m_descriptor = OpenExisting(m_sPath.c_str());
  if (!m_descriptor) CannotRead(m_sPath, Reason(errno), errno);
  struct stat status {};
  if (fstat(m_descriptor.Get(), &status) != 0) CannotRead(m_sPath, Reason(errno), errno);
  if (!S_ISREG(status.st_mode)) CannotRead(m_sPath, "it is no file");
}

std::unique_ptr<DocumentFile> DocumentFile::Create(const Text& sPath, std::string_view sBytes,
                                                   files::LockFunction lock) {
  std::unique_ptr<DocumentFile> file(new DocumentFile(sPath, lock));
  file->Replace(sBytes);
  return file;
}

Text DocumentFile::Start() const {
  Text sBytes;
  if (const int iError = files::ReadAt(m_descriptor, 0, kStart, sBytes)) {
    CannotRead(m_sPath, Reason(iError), iError);
  }
  return sBytes;
}

Text DocumentFile::AllBytes(const Descriptor& file, const struct stat& status) const {
  const auto nBytes = static_cast<std::size_t>(status.st_size);
  if (nBytes > kMaximumBytes) {
    CannotRead(m_sPath, "it is larger than " + std::to_string(kMaximumBytes >> 20) +
                            " megabytes, which no document is");
  }
  Text sBytes;
  if (const int iError = files::ReadAt(file, 0, nBytes, sBytes)) {
    CannotRead(m_sPath, Reason(iError), iError);
  }
  return sBytes;
}

void DocumentFile::HoldAgainst(std::string_view sBytes, const struct stat& status) {
  m_status = status;
  m_uMark = std::hash<std::string_view>{}(sBytes);
}

void DocumentFile::Read(const Taker& take) {
  struct stat status {};
  if (fstat(m_descriptor.Get(), &status) != 0) CannotRead(m_sPath, Reason(errno), errno);
  const Text sBytes = AllBytes(m_descriptor, status);
  take(sBytes);
  HoldAgainst(sBytes, status);
}

bool DocumentFile::ReadBrokenSave(const Taker& take) const {
  const auto path = files::SuccessorOf(files::BehindLinks(m_sPath));
  const Descriptor left(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
  struct stat status {};
  if (!left || fstat(left.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  // A save that is going on is not broken off.
  if (!files::TryLock(left, m_lock)) return false;
  take(AllBytes(left, status));
  return true;
}

void DocumentFile::RefuseWhereAnotherHolds(Descriptor& held) const {
  if (m_descriptor && files::IsUnderName(m_descriptor, m_sPath.c_str())) return;
  held = OpenExisting(m_sPath.c_str());
  if (held && !files::TryLock(held, m_lock)) CannotWrite(m_sPath, "it is open " + LockedBy(held));
}

void DocumentFile::Replace(std::string_view sBytes) {
  if (IsReadOnly()) {
    throw Failure(failure::kDocument, m_sReadOnlyReason + " Save it under another name.");
  }
  struct stat old {};
  const bool bExists = stat(m_sPath.c_str(), &old) == 0;
  if (bExists && !S_ISREG(old.st_mode)) CannotWrite(m_sPath, "it is no file");
  Descriptor held;
  if (bExists) RefuseWhereAnotherHolds(held);
  try {
    Descriptor written = files::Replace(m_sPath, sBytes, {.lock = m_lock, .write = m_write});
    if (written) {
      m_descriptor = std::move(written);
    } else if (held) {
      m_descriptor = std::move(held);
    }
  } catch (const files::NotPutBack& e) {
    HalfSaved(m_sPath, e.code().value());
  } catch (const std::system_error& e) {
    const int iError = e.code().value();
    CannotWrite(m_sPath, iError == EBUSY ? "another console is saving it" : Reason(iError), iError);
  }
  struct stat status {};
  fstat(m_descriptor.Get(), &status);
  HoldAgainst(sBytes, status);
}

Boolean DocumentFile::IsChanged() const {
  struct stat now {};
  // A file that was removed is simply written again.
  if (stat(m_sPath.c_str(), &now) != 0) return false;
  if (files::IsSameFile(now, m_status) && now.st_size == m_status.st_size &&
      now.st_mtim.tv_sec == m_status.st_mtim.tv_sec &&
      now.st_mtim.tv_nsec == m_status.st_mtim.tv_nsec) {
    return false;
  }
  if (now.st_size != m_status.st_size) return true;
  const Descriptor file = OpenExisting(m_sPath.c_str());
  Text sBytes;
  return !file || files::ReadAt(file, 0, static_cast<std::size_t>(now.st_size), sBytes) != 0 ||
         std::hash<std::string_view>{}(sBytes) != m_uMark;
}

Boolean DocumentFile::IsUnder(const Text& sPath) const {
  return files::IsUnderName(m_descriptor, sPath.c_str());
}

}  // namespace orvane::console
