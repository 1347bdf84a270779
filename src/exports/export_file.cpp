#include "exports/export_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "platform/failure.h"

namespace orvane::exports {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr int kMostNumbers = 10'000;

std::filesystem::path FolderOf(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

// The file's own name in the kernel's list of what this process has open.
Text OpenName(const files::Descriptor& file) {
  return "/proc/self/fd/" + std::to_string(file.Get());
}

}  // namespace

ExportFile::ExportFile(std::filesystem::path path) : m_path(std::move(path)) {
  const auto folder = FolderOf(m_path);
  m_file = files::Descriptor(open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666));
  if (m_file) return;
  if (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT && errno != EINVAL) Fail(errno);
  // A file system on which every file has a name.
  Text sTemplate = (folder / ("." + m_path.filename().string() + ".XXXXXX")).string();
  m_file = files::Descriptor(mkostemp(sTemplate.data(), O_CLOEXEC));
  if (!m_file) Fail(errno);
  m_temporary = sTemplate;
}

ExportFile::~ExportFile() {
  if (!m_temporary.empty()) unlink(m_temporary.c_str());
}

void ExportFile::Write(std::string_view sBytes) {
  if (const int nError = files::WriteAt(m_file, m_bytes, sBytes); nError != 0) Fail(nError);
  m_bytes += sBytes.size();
}

void ExportFile::Settle() {
  struct stat old {};
  const bool bThere = stat(m_path.c_str(), &old) == 0 && S_ISREG(old.st_mode);
  if (bThere && fchmod(m_file.Get(), old.st_mode & 0777) != 0) Fail(errno);
  if (fsync(m_file.Get()) != 0) Fail(errno);
}

void ExportFile::Finish() {
  Settle();
  if (m_temporary.empty()) {
    // A file without a name can only be given one that is free.
    if (linkat(AT_FDCWD, OpenName(m_file).c_str(), AT_FDCWD, m_path.c_str(), AT_SYMLINK_FOLLOW) ==
        0) {
      return;
    }
    if (errno != EEXIST) Fail(errno);
    for (int n = 0; m_temporary.empty(); ++n) {
      const auto free = FolderOf(m_path) / ("." + m_path.filename().string() + "." +
                                            std::to_string(getpid()) + "." + std::to_string(n));
      if (linkat(AT_FDCWD, OpenName(m_file).c_str(), AT_FDCWD, free.c_str(), AT_SYMLINK_FOLLOW) ==
          0) {
        m_temporary = free;
      } else if (errno != EEXIST || n == kMostNumbers) {
        Fail(errno);
      }
    }
  }
  if (rename(m_temporary.c_str(), m_path.c_str()) != 0) Fail(errno);
  m_temporary.clear();
}

std::filesystem::path ExportFile::FinishMarked(const Text& sMark) {
  const auto wanted = m_path;
  const Text sStem = wanted.stem().string();
  for (int n = 1; n <= kMostNumbers; ++n) {
    const Text sNumber = n == 1 ? Text() : " (" + std::to_string(n) + ")";
    m_path = FolderOf(wanted) / (sStem + sMark + sNumber + wanted.extension().string());
    struct stat there {};
    if (lstat(m_path.c_str(), &there) == 0) continue;
    Finish();
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
