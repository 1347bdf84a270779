#include "provider/historian/recorder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "files/attributes.h"
#include "files/private_files.h"
#include "platform/failure.h"

namespace orvane::provider::historian {
namespace {

constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

// Whoever may open the catalog may see whether a recorder is at work on it.
files::Descriptor MakeLike(const char* sFile, const char* sCatalogFile) {
  // Nothing is in it, so that where the group cannot be given it does no harm to let all see it who
  // reach the folder; closed to its catalog's owner, it would keep him from dropping that.
  constexpr mode_t kForAll = 0644;
  files::Descriptor made(open(sFile, kFlags | O_CREAT | O_EXCL, files::kPrivateFile));
  if (made && !files::TakeAccess(sCatalogFile, made)) fchmod(made.Get(), kForAll);
  return made;
}

}  // namespace

RecorderLock::RecorderLock(const std::filesystem::path& catalogFile, File file)
    : m_file(catalogFile.string() + ".recorder") {
  // Another recorder may make it, or a drop take it away, between the two.
  do {
    m_descriptor = files::Descriptor(open(m_file.c_str(), kFlags));
    if (m_descriptor) return;
    if (file == File::Found) {
      m_bHidden = errno != ENOENT && errno != ENOTDIR;
      return;
    }
    if (errno == ENOENT) m_descriptor = MakeLike(m_file.c_str(), catalogFile.c_str());
  } while (!m_descriptor && errno == EEXIST);
  if (!m_descriptor) Fail(errno);
}

bool RecorderLock::Take() const {
  if (m_bHidden) return false;
  if (!m_descriptor || flock(m_descriptor.Get(), LOCK_EX | LOCK_NB) == 0) return true;
  if (errno != EWOULDBLOCK) Fail(errno);
  return false;
}

bool RecorderLock::IsOfCatalog() const {
  struct stat own {};
  struct stat named {};
  return fstat(m_descriptor.Get(), &own) == 0 && ::stat(m_file.c_str(), &named) == 0 &&
         own.st_dev == named.st_dev && own.st_ino == named.st_ino;
}

void RecorderLock::Fail(int nError) const {
  throw platform::Failure(
      platform::failure::kNoRights,
      "The file " + m_file.string() + " cannot be written; check your rights on its folder.",
      "ORVOLEDB", nError);
}

}  // namespace orvane::provider::historian
