#include "ado/spill_file.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace orvane::ado {

namespace fs = std::filesystem;

namespace {

// Mapped at once: a process may have some ten thousand mappings only.
constexpr std::size_t kExtent = std::size_t{16} << 20;
constexpr std::size_t kPage = 4096;
constexpr std::size_t kAlignment = 64;

std::size_t RoundedUp(std::size_t bytes, std::size_t to) {
  return (bytes + to - 1) / to * to;
}

}  // namespace

SpillFile::SpillFile(std::span<const fs::path> folders) : m_file(folders) {}

SpillFile::~SpillFile() {
  for (const Extent& extent : m_extents) ::munmap(extent.address, extent.size);
}

// The room is taken before it is written, so that no disk finds out later that there was none: what
// is mapped can then always be read.
void SpillFile::AddExtent(std::size_t needed) {
  std::size_t size = std::max(kExtent, RoundedUp(needed, kPage));
  int nError = files::Reserve(m_file.Get(), m_size, size);
  if (nError != 0 && size > RoundedUp(needed, kPage)) {
    // The last rows for which there is room.
    size = RoundedUp(needed, kPage);
    nError = files::Reserve(m_file.Get(), m_size, size);
  }
  if (nError != 0) m_file.Fail(nError);
  m_extents.reserve(m_extents.size() + 1);
  void* const address =
      ::mmap(nullptr, size, PROT_READ, MAP_SHARED, m_file.Get().Get(), static_cast<off_t>(m_size));
  if (address == MAP_FAILED) throw std::bad_alloc();
  m_extents.push_back({static_cast<std::byte*>(address), size});
  m_size += size;
  m_used = 0;
}

const std::byte* SpillFile::Write(std::span<const std::byte> bytes) {
  const std::size_t needed = RoundedUp(bytes.size(), kAlignment);
  if (m_extents.empty() || m_extents.back().size - m_used < needed) AddExtent(needed);
  const Extent& extent = m_extents.back();
  const int nError = files::WriteAt(m_file.Get(), m_size - extent.size + m_used,
                                    {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (nError != 0) m_file.Fail(nError);
  const std::byte* const written = extent.address + m_used;
  m_used += needed;
  return written;
}

}  // namespace orvane::ado
