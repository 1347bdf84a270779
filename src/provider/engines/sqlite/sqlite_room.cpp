#include "provider/engines/sqlite/sqlite_room.h"

#include <fmt/format.h>
#include <sys/statvfs.h>

#include <filesystem>

#include "provider/engines/sqlite/sqlite_files.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

bool IsDiskFirst(const Catalog& catalog) {
  struct statvfs disk = {};
  if (::statvfs(catalog.sPlace.c_str(), &disk) != 0) return false;
  std::error_code error;
  const std::uint64_t size = std::filesystem::file_size(catalog.sPlace, error);
  const std::uint64_t limit = static_cast<std::uint64_t>(catalog.llMaxKilobytes) * 1024;
  const std::uint64_t growth = error || size >= limit ? 0 : limit - size;
  // What was being written is gone again by now. Some pages go into the file's journal.
  constexpr std::uint64_t kJournal = std::uint64_t{64} * 1024;
  return std::uint64_t{disk.f_bavail} * disk.f_frsize < growth + kJournal;
}

void FailWithoutRoom(const Failure& failed, std::span<const Catalog> catalogs, bool bReads) {
  if (bReads) {
    throw Failure(
        failure::kStorage,
        "The disk of temporary files has no room left for the statement: make room there, "
        "or narrow the statement down.",
        failed.Source(), failed.NativeError(), failed.SqlText());
  }
  for (const Catalog& catalog : catalogs) {
    if (!catalog.bReadOnly && catalog.llMaxKilobytes != 0 && !IsDiskFirst(catalog)) {
      throw LimitReached(catalog, failed);
    }
  }
  throw failed;
}

Failure LimitReached(const Catalog& catalog, const Failure& failed) {
  return Failure(failure::kStorage,
                 fmt::format("{} has reached its limit of {} kilobytes, so nothing was written: "
                             "delete rows or use another catalog.",
                             SubjectOf(catalog), catalog.llMaxKilobytes),
                 failed.Source(), failed.NativeError(), failed.SqlText());
}

}  // namespace orvane::provider::engines
