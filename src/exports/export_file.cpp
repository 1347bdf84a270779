#include "exports/export_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "files/attributes.h"
#include "platform/failure.h"

namespace orvane::exports {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr int kMostNumbers = 10'000;
// The umask takes from it what the user gives to nobody.
constexpr mode_t kNewFile = 0666;

std::filesystem::path FolderOf(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

[[noreturn]] void Refuse(const Text& sSentence, int nError) {
  throw Failure(failure::kStorage, sSentence, {}, nError);
}

}  // namespace

ExportFile::ExportFile(const std::filesystem::path& path) : m_path(files::BehindLinks(path)) {
  try {
    m_successor.emplace(m_path,
                        files::SuccessorOptions{".exporting", kNewFile, true, kMostNumbers});
  } catch (const std::system_error& error) {
    const int nError = error.code().value();
    if (nError != EACCES && nError != EPERM) Fail(nError);
    Refuse("You have no right to write into the folder " + FolderOf(m_path).string() +
               "; ask its owner for the right or choose another folder.",
           nError);
  }
  // What cannot be replaced is refused now and not after a million rows.
  TakeOver();
}

void ExportFile::TakeOver() const {
  files::Present old;
  try {
    old = files::OpenPresent(m_path);
  } catch (const std::system_error& error) {
    const int nError = error.code().value();
    if (nError == EACCES || nError == EPERM) {
      Refuse("You have no right to write the file " + m_path.string() +
                 "; choose another name or folder.",
             nError);
    }
    const bool bNoFile = nError == EINVAL || nError == EISDIR || nError == ENXIO || nError == ELOOP;
    if (!bNoFile) Fail(nError);
    Refuse("The name " + m_path.string() +
               " stands for a folder, a device or the like and no file; choose another name.",
           nError);
  }
  if (old.file && !files::TakeAttributes(old.file, m_successor->File())) {
    Refuse("To replace the file " + m_path.string() +
               " would change its owner, group or access rights; choose another name or folder.",
           EPERM);
  }
}

void ExportFile::Write(std::string_view sBytes) {
  if (const int nError = files::WriteAt(m_successor->File(), m_bytes, sBytes); nError != 0) {
    Fail(nError);
  }
  m_bytes += sBytes.size();
}

void ExportFile::Finish(const std::stop_token& stop) {
  TakeOver();
  if (fsync(m_successor->File().Get()) != 0) Fail(errno);
  if (stop.stop_requested()) throw Failure(failure::kCancelled, "The export was cancelled.");
  try {
    m_successor->Succeed(m_path);
  } catch (const std::system_error& error) {
    Fail(error.code().value());
  }
}

std::filesystem::path ExportFile::FinishMarked(const Text& sMark, const std::stop_token& stop) {
  const auto wanted = m_path;
  const Text sStem = wanted.stem().string();
  for (int n = 1; n <= kMostNumbers; ++n) {
    const Text sNumber = n == 1 ? Text() : " (" + std::to_string(n) + ")";
    m_path = FolderOf(wanted) / (sStem + sMark + sNumber + wanted.extension().string());
    struct stat there {};
    if (lstat(m_path.c_str(), &there) == 0) continue;
    Finish(stop);
    return m_path;
  }
  m_path = wanted;
  Fail(EEXIST);
}

void ExportFile::Fail(int nError) const {
  if (nError == ENOSPC || nError == EDQUOT || nError == EFBIG) {
    throw Failure(failure::kStorage,
                  "The disk of the file " + m_path.string() +
                      " has no room left, so nothing was written: make room and try again.",
                  {}, nError);
  }
  throw Failure(failure::kStorage,
                "The file " + m_path.string() +
                    " cannot be written; check that the folder exists and the disk has room.",
                {}, nError);
}

}  // namespace orvane::exports
