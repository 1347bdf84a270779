#include "exports/export_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "files/attributes.h"
#include "files/replacement.h"
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

// The file's own name in the kernel's list of what this process has open.
Text OpenName(const files::Descriptor& file) {
  return "/proc/self/fd/" + std::to_string(file.Get());
}

bool Link(const files::Descriptor& file, const std::filesystem::path& path) {
  return linkat(AT_FDCWD, OpenName(file).c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// Of an export that a crash ended between its last two steps: nobody has it locked.
bool RemoveLeftover(const std::filesystem::path& path) {
  const files::Descriptor left(
      open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
  return left && files::TryLock(left) && files::IsUnderName(left, path.c_str()) &&
         unlink(path.c_str()) == 0;
}

[[noreturn]] void Refuse(const Text& sSentence, int nError) {
  throw Failure(failure::kStorage, sSentence, {}, nError);
}

}  // namespace

ExportFile::Temporary::~Temporary() {
  if (!path.empty()) unlink(path.c_str());
}

ExportFile::ExportFile(const std::filesystem::path& path) : m_path(files::BehindLinks(path)) {
  Create();
  // What cannot be replaced is refused now and not after a million rows.
  TakeOver();
}

template <class Call>
void ExportFile::TakeName(Call call) {
  for (int n = 0; n <= kMostNumbers; ++n) {
    const auto name = files::Beside(m_path, ("." + std::to_string(n) + ".exporting").c_str());
    bool bTaken = call(name);
    if (!bTaken && errno != EEXIST) Fail(errno);
    if (!bTaken) bTaken = RemoveLeftover(name) && call(name);
    if (!bTaken) continue;
    m_temporary.path = name;
    return;
  }
  Fail(EEXIST);
}

void ExportFile::Create() {
  const auto folder = FolderOf(m_path);
  m_file = files::Descriptor(open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kNewFile));
  if (!m_file) {
    if (errno == EACCES || errno == EPERM) {
      Refuse("You have no right to write into the folder " + folder.string() +
                 "; ask its owner for the right or choose another folder.",
             errno);
    }
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT && errno != EINVAL) Fail(errno);
    // A file system on which every file has a name.
    TakeName([&](const std::filesystem::path& name) {
      m_file = files::Descriptor(
          open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, kNewFile));
      return static_cast<bool>(m_file);
    });
  }
  // By this lock a file that is being written is told from one that a crash has left.
  files::TryLock(m_file);
}

void ExportFile::TakeOver() const {
  const files::Descriptor old(
      open(m_path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
  if (!old && errno == ENOENT) return;
  const int nError = old ? 0 : errno;
  if (nError == EACCES || nError == EPERM) {
    Refuse("You have no right to write the file " + m_path.string() +
               "; choose another name or folder.",
           nError);
  }
  struct stat status {};
  if (lstat(m_path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    Refuse("The name " + m_path.string() +
               " stands for a folder, a device or the like and no file; choose another name.",
           nError);
  }
  if (!old) Fail(nError);
  if (!files::TakeAttributes(old, m_file)) {
    Refuse("To replace the file " + m_path.string() +
               " would change its owner, group or access rights; choose another name or folder.",
           EPERM);
  }
}

void ExportFile::Write(std::string_view sBytes) {
  if (const int nError = files::WriteAt(m_file, m_bytes, sBytes); nError != 0) Fail(nError);
  m_bytes += sBytes.size();
}

void ExportFile::Finish() {
  TakeOver();
  if (fsync(m_file.Get()) != 0) Fail(errno);
  if (m_temporary.path.empty()) {
    // A file without a name can only be given one that is free.
    if (Link(m_file, m_path)) return;
    if (errno != EEXIST) Fail(errno);
    TakeName([&](const std::filesystem::path& name) { return Link(m_file, name); });
  }
  if (!files::IsUnderName(m_file, m_temporary.path.c_str())) Fail(ESTALE);
  if (rename(m_temporary.path.c_str(), m_path.c_str()) != 0) Fail(errno);
  m_temporary.path.clear();
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
