// A file that is written whole or not at all: it has no name until it is finished, so that nothing
// is left of one that is not, and what stood under its name stays until then.
// Used by exports, which may be long; one thread at a time.
#pragma once

#include <filesystem>
#include <optional>
#include <stop_token>
#include <string_view>

#include "files/successor.h"

namespace orvane::exports {

class ExportFile {
 public:
  /// For the file behind the name, which may be a symbolic link. Fails with failure::kStorage when
  /// nothing can be written into its folder, or when what is there cannot be replaced by a file of
  /// the same owner, group, mode, access list and extended attributes.
  explicit ExportFile(const std::filesystem::path& path);
  ExportFile(const ExportFile&) = delete;
  ExportFile& operator=(const ExportFile&) = delete;

  /// Fails with failure::kStorage when the disk is full or cannot be written.
  void Write(std::string_view sBytes);
  std::uint64_t Bytes() const { return m_bytes; }
  /// Gives the file its name; what stood under it is gone then, but for its owner, group, mode,
  /// access list and extended attributes. The disk has the bytes before, which may take its time: a
  /// stop until then fails with failure::kCancelled. Fails with failure::kStorage, what stood there
  /// being whole.
  void Finish(const std::stop_token& stop = {});
  /// The same under another name in the same folder: that of the path with the mark behind its
  /// stem, and a number when that is taken. Whoever may use a file of the wanted name may use this
  /// one. Gives the name's path.
  std::filesystem::path FinishMarked(const platform::Text& sMark, const std::stop_token& stop = {});

 private:
  /// Becomes like the file that is there, if there is one.
  void TakeOver() const;
  [[noreturn]] void Fail(int nError) const;

  std::filesystem::path m_path;
  std::optional<files::Successor> m_successor;
  std::uint64_t m_bytes = 0;
};

}  // namespace orvane::exports
