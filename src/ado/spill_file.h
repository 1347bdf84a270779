// A temporary file without a name, for rows beyond the memory budget: written from its beginning to
// its end, read through a mapping. It goes with the process, however that ends.
// Owned by FetchedRows; written by one thread, what was written is read by any.
#pragma once

#include <filesystem>
#include <span>
#include <vector>

#include "ado/temporary_file.h"

namespace orvane::ado {

class SpillFile {
 public:
  /// In one of these folders, none of them meaning $TMPDIR, /var/tmp and /tmp: the first that can
  /// be written and is on a disk, or else the first that can be written. Fails with
  /// failure::kStorage.
  explicit SpillFile(std::span<const std::filesystem::path> folders = {});
  SpillFile(const SpillFile&) = delete;
  SpillFile& operator=(const SpillFile&) = delete;
  ~SpillFile();

  /// Where the bytes lie, aligned to a page's part of 64, until the file goes. Fails with
  /// failure::kStorage when the disk has no room for them or fails; then what was written stays.
  const std::byte* Write(std::span<const std::byte> bytes);

  const std::filesystem::path& Folder() const { return m_file.Folder(); }
  /// Room on the disk.
  std::size_t Bytes() const { return m_size; }

 private:
  struct Extent {
    std::byte* address;
    std::size_t size;
  };

  void AddExtent(std::size_t needed);

  TemporaryFile m_file;
  std::vector<Extent> m_extents;
  std::size_t m_size = 0;  // of the file
  std::size_t m_used = 0;  // of the last extent
};

}  // namespace orvane::ado
