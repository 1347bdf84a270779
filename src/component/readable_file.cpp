#include "component/readable_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

namespace orvane::component {

ReadableFile::ReadableFile(const std::filesystem::path& path)
    : m_nFile(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
  struct stat status {};
  if (m_nFile < 0 || fstat(m_nFile, &status) != 0) {
    m_nError = errno;
    return;
  }
  m_bRegular = S_ISREG(status.st_mode);
  if (m_bRegular) m_nSize = static_cast<std::uint64_t>(status.st_size);
}

ReadableFile::~ReadableFile() {
  if (m_nFile >= 0) close(m_nFile);
}

bool ReadableFile::Read(std::uint64_t nOffset, std::span<std::byte> buffer) const {
  if (!m_bRegular) return false;
  while (!buffer.empty()) {
    if (nOffset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) return false;
    const ssize_t nRead = pread(m_nFile, buffer.data(), buffer.size(), static_cast<off_t>(nOffset));
    if (nRead < 0 && errno == EINTR) continue;
    if (nRead <= 0) return false;
    buffer = buffer.subspan(static_cast<std::size_t>(nRead));
    nOffset += static_cast<std::uint64_t>(nRead);
  }
  return true;
}

}  // namespace orvane::component
