#include "provider/historian/recorder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/failure.h"
#include "provider/historian/private_files.h"

namespace orvane::provider::historian {
namespace {

constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

// Whoever may open the catalog may see whether a recorder is at work on it.
int MakeLike(const char* sFile, const char* sCatalogFile) {
  struct stat catalog {};
  const mode_t mode = ::stat(sCatalogFile, &catalog) == 0 ? catalog.st_mode & 0666U : kPrivateFile;
  const int nFile = open(sFile, kFlags | O_CREAT | O_EXCL, kPrivateFile);
  if (nFile >= 0 && fchmod(nFile, mode) != 0) {
    // Then it is its maker's alone.
  }
  return nFile;
}

}  // namespace

RecorderLock::RecorderLock(const std::filesystem::path& catalogFile, File file)
    : m_file(catalogFile.string() + ".recorder") {
  // Another recorder may make it, or a drop take it away, between the two.
  do {
    m_nFile = open(m_file.c_str(), kFlags);
    if (m_nFile >= 0 || file == File::Found) return;
    if (errno == ENOENT) m_nFile = MakeLike(m_file.c_str(), catalogFile.c_str());
  } while (m_nFile < 0 && errno == EEXIST);
  if (m_nFile < 0) Fail(errno);
}

RecorderLock::~RecorderLock() {
  if (m_nFile >= 0) close(m_nFile);
}

bool RecorderLock::Take() const {
  if (m_nFile < 0 || flock(m_nFile, LOCK_EX | LOCK_NB) == 0) return true;
  if (errno != EWOULDBLOCK) Fail(errno);
  return false;
}

bool RecorderLock::IsOfCatalog() const {
  struct stat own {};
  struct stat named {};
  return fstat(m_nFile, &own) == 0 && ::stat(m_file.c_str(), &named) == 0 &&
         own.st_dev == named.st_dev && own.st_ino == named.st_ino;
}

void RecorderLock::Fail(int nError) const {
  throw platform::Failure(
      platform::failure::kNoRights,
      "The file " + m_file.string() + " cannot be written; check your rights on its folder.",
      "ORVOLEDB", nError);
}

}  // namespace orvane::provider::historian
