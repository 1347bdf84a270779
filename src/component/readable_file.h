// A file of unknown kind, open for reading and never waited for: a pipe or a device can hold
// nobody up. Used for what names and holds components. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace orvane::component {

class ReadableFile {
 public:
  explicit ReadableFile(const std::filesystem::path& path);
  ReadableFile(const ReadableFile&) = delete;
  ReadableFile& operator=(const ReadableFile&) = delete;
  ~ReadableFile();

  /// Whether it could be opened and is a regular file.
  bool IsRegular() const noexcept { return m_bRegular; }
  /// The number of the system's error, 0 for a file that is open, of whatever kind.
  int Error() const noexcept { return m_nError; }
  /// Bytes in a regular file when it was opened.
  std::uint64_t Size() const noexcept { return m_nSize; }
  /// Fills the whole buffer from the offset; false when there is not that much.
  bool Read(std::uint64_t nOffset, std::span<std::byte> buffer) const;

 private:
  int m_nFile;
  int m_nError = 0;
  bool m_bRegular = false;
  std::uint64_t m_nSize = 0;
};

}  // namespace orvane::component
