// A file that is written whole or not at all: it has no name until it is finished, so that nothing
// is left of one that is not, and what stood under its name stays until then.
// Used by exports, which may be long; one thread at a time.
#pragma once

#include <filesystem>
#include <string_view>

#include "files/descriptor.h"

namespace orvane::exports {

class ExportFile {
 public:
  /// Fails with failure::kStorage, naming the folder, when nothing can be written there.
  explicit ExportFile(std::filesystem::path path);
  ExportFile(const ExportFile&) = delete;
  ExportFile& operator=(const ExportFile&) = delete;
  /// Takes what was written away unless it was finished.
  ~ExportFile();

  /// Fails with failure::kStorage when the disk is full or cannot be written.
  void Write(std::string_view sBytes);
  std::uint64_t Bytes() const { return m_bytes; }
  /// Gives the file its name; what stood under it is gone then. Fails with failure::kStorage, what
  /// stood there being whole.
  void Finish();
  /// The same under another name in the same folder: that of the path with the mark behind its
  /// stem, and a number when that is taken. Gives the name's path.
  std::filesystem::path FinishMarked(const platform::Text& sMark);

 private:
  void Settle();
  [[noreturn]] void Fail(int nError) const;

  std::filesystem::path m_path;
  std::filesystem::path m_temporary;  ///< empty for a file without a name
  files::Descriptor m_file;
  std::uint64_t m_bytes = 0;
};

}  // namespace orvane::exports
