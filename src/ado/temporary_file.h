// A temporary file without a name, for what the memory budget does not hold. It goes with the
// process, however that ends.
// Owned by SpillFile and SpillingMemory; one thread at a time.
#pragma once

#include <filesystem>
#include <span>

#include "files/descriptor.h"

namespace orvane::ado {

class TemporaryFile {
 public:
  /// In one of these folders, none of them meaning $TMPDIR, /var/tmp and /tmp: the first that can
  /// be written and is on a disk, or else the first that can be written. Fails with
  /// failure::kStorage.
  explicit TemporaryFile(std::span<const std::filesystem::path> folders = {});

  const files::Descriptor& Get() const { return m_file; }
  const std::filesystem::path& Folder() const { return m_folder; }
  /// Fails with failure::kStorage and a sentence for the number of an error.
  [[noreturn]] void Fail(int nError) const;

 private:
  bool OpenIn(const std::filesystem::path& folder);

  files::Descriptor m_file;
  std::filesystem::path m_folder;
};

}  // namespace orvane::ado
