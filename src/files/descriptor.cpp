#include "files/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <utility>

namespace orvane::files {
namespace {

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

}  // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept
    : m_iDescriptor(std::exchange(other.m_iDescriptor, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(m_iDescriptor, other.m_iDescriptor);
  return *this;
}

Descriptor::~Descriptor() {
  if (m_iDescriptor >= 0) close(m_iDescriptor);
}

int ReadAt(const Descriptor& file, std::size_t nFrom, std::size_t nBytes, platform::Text& sBytes) {
  sBytes.resize(nBytes);
  std::size_t nRead = 0;
  while (nRead < nBytes) {
    const ssize_t n =
        pread(file.Get(), sBytes.data() + nRead, nBytes - nRead, static_cast<off_t>(nFrom + nRead));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return errno;
    if (n == 0) break;
    nRead += static_cast<std::size_t>(n);
  }
  sBytes.resize(nRead);
  return 0;
}

int WriteAt(const Descriptor& file, std::size_t nFrom, std::string_view sBytes) {
  const FileSizeSignalHold hold;
  while (!sBytes.empty()) {
    const ssize_t n = pwrite(file.Get(), sBytes.data(), sBytes.size(), static_cast<off_t>(nFrom));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return errno;
    sBytes.remove_prefix(static_cast<std::size_t>(n));
    nFrom += static_cast<std::size_t>(n);
  }
  return 0;
}

int Reserve(const Descriptor& file, std::size_t nFrom, std::size_t nBytes) {
  const FileSizeSignalHold hold;
  // Not posix_fallocate, which writes to a file system that has no such call.
  while (fallocate(file.Get(), 0, static_cast<off_t>(nFrom), static_cast<off_t>(nBytes)) != 0) {
    if (errno == EINTR) continue;
    if (errno != EOPNOTSUPP && errno != ENOSYS) return errno;
    return ftruncate(file.Get(), static_cast<off_t>(nFrom + nBytes)) == 0 ? 0 : errno;
  }
  return 0;
}

bool IsSameFile(const struct stat& a, const struct stat& b) noexcept {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool IsUnderName(const Descriptor& file, const char* sPath) noexcept {
  struct stat own {};
  struct stat named {};
  return fstat(file.Get(), &own) == 0 && stat(sPath, &named) == 0 && IsSameFile(own, named);
}

}  // namespace orvane::files
