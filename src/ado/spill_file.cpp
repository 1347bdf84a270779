#include "ado/spill_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "platform/failure.h"

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

std::vector<fs::path> UsualFolders() {
  std::vector<fs::path> folders;
  const char* const sFolder = ::getenv("TMPDIR");
  if (sFolder != nullptr && *sFolder == '/') folders.emplace_back(sFolder);
  folders.emplace_back("/var/tmp");
  folders.emplace_back("/tmp");
  return folders;
}

// What lies in memory anyway saves none.
bool IsOnDisk(const fs::path& folder) {
  constexpr long kTmpfs = 0x01021994;
  constexpr long kRamfs = 0x858458F6;
  struct statfs system {};
  if (::statfs(folder.c_str(), &system) != 0) return false;
  const auto type = static_cast<long>(system.f_type);
  return type != kTmpfs && type != kRamfs;
}

}  // namespace

SpillFile::SpillFile(std::span<const fs::path> folders) {
  std::vector<fs::path> all(folders.begin(), folders.end());
  if (all.empty()) all = UsualFolders();
  std::stable_partition(all.begin(), all.end(), IsOnDisk);
  for (const fs::path& folder : all) {
    if (OpenIn(folder)) return;
  }
  throw platform::Failure(platform::failure::kStorage,
                          "There is no memory left for rows, and no temporary file can be made in "
                          "\"" +
                              all.front().string() + "\": make room there, or set a row limit.");
}

SpillFile::~SpillFile() {
  for (const Extent& extent : m_extents) ::munmap(extent.address, extent.size);
}

bool SpillFile::OpenIn(const fs::path& folder) {
  int iFile = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC | O_EXCL, 0600);
  if (iFile < 0) {
    std::string sName = (folder / "orvane-rows-XXXXXX").string();
    iFile = ::mkostemp(sName.data(), O_CLOEXEC);
    if (iFile >= 0) ::unlink(sName.c_str());
  }
  if (iFile < 0) return false;
  m_file = files::Descriptor(iFile);
  m_folder = folder;
  return true;
}

// The room is taken before it is written, so that no disk finds out later that there was none: what
// is mapped can then always be read.
void SpillFile::AddExtent(std::size_t needed) {
  std::size_t size = std::max(kExtent, RoundedUp(needed, kPage));
  int nError = files::Reserve(m_file, m_size, size);
  if (nError != 0 && size > RoundedUp(needed, kPage)) {
    // The last rows for which there is room.
    size = RoundedUp(needed, kPage);
    nError = files::Reserve(m_file, m_size, size);
  }
  if (nError != 0) Fail(nError);
  m_extents.reserve(m_extents.size() + 1);
  void* const address =
      ::mmap(nullptr, size, PROT_READ, MAP_SHARED, m_file.Get(), static_cast<off_t>(m_size));
  if (address == MAP_FAILED) throw std::bad_alloc();
  m_extents.push_back({static_cast<std::byte*>(address), size});
  m_size += size;
  m_used = 0;
}

const std::byte* SpillFile::Write(std::span<const std::byte> bytes) {
  const std::size_t needed = RoundedUp(bytes.size(), kAlignment);
  if (m_extents.empty() || m_extents.back().size - m_used < needed) AddExtent(needed);
  const Extent& extent = m_extents.back();
  const int nError = files::WriteAt(m_file, m_size - extent.size + m_used,
                                    {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (nError != 0) Fail(nError);
  const std::byte* const written = extent.address + m_used;
  m_used += needed;
  return written;
}

void SpillFile::Fail(int nError) const {
  const bool bFull = nError == ENOSPC || nError == EDQUOT || nError == EFBIG;
  throw platform::Failure(
      platform::failure::kStorage,
      bFull ? "The disk of \"" + m_folder.string() +
                  "\" has no room left for more rows: make room there, or set a row limit."
            : "The temporary file for rows in \"" + m_folder.string() + "\" cannot be written (" +
                  std::strerror(nError) + "): check the disk.");
}

}  // namespace orvane::ado
