// An open file, closed at the end, and its bytes read and written whole.
// Used by everything that keeps files; a plain value, one thread at a time.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/types.h"

struct stat;

namespace orvane::files {

class Descriptor {
 public:
  explicit Descriptor(int iDescriptor = -1) noexcept : m_iDescriptor(iDescriptor) {}
  Descriptor(Descriptor&& other) noexcept;
  Descriptor& operator=(Descriptor&& other) noexcept;
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor();

  int Get() const noexcept { return m_iDescriptor; }
  explicit operator bool() const noexcept { return m_iDescriptor >= 0; }

 private:
  int m_iDescriptor;
};

/// Up to nBytes of the file from a place on; fewer only where the file ends. Returns 0, or the
/// error number of what kept them from being read.
int ReadAt(const Descriptor& file, std::size_t nFrom, std::size_t nBytes, platform::Text& sBytes);

/// Writes all bytes from a place on. Returns 0 or the error number; a limit on the size of files is
/// an error like a full disk and ends no process.
int WriteAt(const Descriptor& file, std::size_t nFrom, std::string_view sBytes);

/// Takes room on the disk for that many bytes from a place on, so that writing them cannot find the
/// disk full; the file is as long then. Where the file system cannot do that the file is only made
/// as long. Returns 0 or the error number, as WriteAt does.
int Reserve(const Descriptor& file, std::size_t nFrom, std::size_t nBytes);

bool IsSameFile(const struct stat& a, const struct stat& b) noexcept;

/// True when the file is still the one under that name.
bool IsUnderName(const Descriptor& file, const char* sPath) noexcept;

}  // namespace orvane::files
