// One recorder at a time is at work on a catalog: the lock that says so, on a file beside the
// catalog's own. Taken by the recorder while it works and by whoever takes the catalog away; the
// system lets go of it when the process ends.
#pragma once

#include <filesystem>

#include "files/descriptor.h"

namespace orvane::provider::historian {

class RecorderLock {
 public:
  enum class File { Made, Found };

  /// Opens the lock's file beside the catalog's. Made makes it when it is not there, for everyone
  /// who may write the catalog, and fails with failure::kNoRights when it cannot; Found takes one
  /// that is not there for one that nobody holds, and one that cannot be opened for held.
  explicit RecorderLock(const std::filesystem::path& catalogFile, File file = File::Made);
  RecorderLock(const RecorderLock&) = delete;
  RecorderLock& operator=(const RecorderLock&) = delete;

  /// False while another one holds the catalog.
  bool Take() const;
  /// False when the catalog was dropped, and perhaps made anew, since the file was opened.
  bool IsOfCatalog() const;

 private:
  [[noreturn]] void Fail(int nError) const;

  std::filesystem::path m_file;
  files::Descriptor m_descriptor;
  bool m_bHidden = false;  // it is there, and this user may not open it
};

}  // namespace orvane::provider::historian
